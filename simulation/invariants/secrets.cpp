// 5. No token, and no text of the user, in a log line that does not name it.
#include <algorithm>

#include "simulation/invariants/invariants.h"
#include "simulation/world/event_reading.h"

namespace quillo::sim {
namespace {

// Shorter texts may be in a line by chance.
constexpr std::size_t leastTelling = 12;

class TheLogKeepsSecrets final : public Invariant {
 public:
  explicit TheLogKeepsSecrets(Secrets secrets) : secrets_(std::move(secrets)) {
    texts_.push_back(secrets_.tokenMarker);
    if (secrets_.wordMarker) texts_.push_back(*secrets_.wordMarker);
  }
  std::string_view name() const override { return "the log keeps secrets"; }

  void see(const Event& event) override {
    if (!secrets_.wordMarker) {
      if (event.what == "user") learn(textOf(event, "words"));
      if (event.what == "clipboard") learn(textOf(event, "text"));
    }
    if (event.what == "log") look(event, textOf(event, "message"));
    if (event.what == "systemLog" || event.what == "standardOutput")
      look(event, textOf(event, "line"));
  }

 private:
  void learn(const std::string& text) {
    if (text.size() >= leastTelling && std::ranges::find(texts_, text) == texts_.end())
      texts_.push_back(text);
  }

  void look(const Event& event, const std::string& line) {
    // It names the reply that it quotes.
    if (line.find(". Body: ") != std::string::npos) return;
    for (const std::string& text : texts_) {
      if (line.find(text) != std::string::npos)
        return breaks(event.time, "\"" + text + "\" is in the line: " + line);
    }
  }

  Secrets secrets_;
  std::vector<std::string> texts_;
};

}  // namespace

std::unique_ptr<Invariant> theLogKeepsSecrets(Secrets secrets) {
  return std::make_unique<TheLogKeepsSecrets>(std::move(secrets));
}

}  // namespace quillo::sim
