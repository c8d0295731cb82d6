// 5. No token, and no text of the user, in a log line that does not name it.
//
// Not checked: texts of less than twelve bytes, where no marker tells the user's words apart; lines
// that quote the reply of the service; and what stands in files other than the logs.
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
      if (const std::string* words = objectOf(event, Act::speaks)) learn(*words);
      if (const auto* clipboard = event.as<events::Clipboard>())
        learn(clipboard->contents.text.value_or(""));
    }
    if (const auto* log = event.as<events::Log>()) look(event.time, log->message);
    if (const auto* log = event.as<events::SystemLog>()) look(event.time, log->line);
    if (const auto* output = event.as<events::StandardOutput>()) look(event.time, output->line);
  }

 private:
  void learn(const std::string& text) {
    if (text.size() >= leastTelling && std::ranges::find(texts_, text) == texts_.end())
      texts_.push_back(text);
  }

  void look(MonotonicTime now, const std::string& line) {
    // It names the reply that it quotes.
    if (line.find(". Body: ") != std::string::npos) return;
    for (const std::string& text : texts_) {
      if (line.find(text) != std::string::npos)
        return breaks(now, "\"" + text + "\" is in the line: " + line);
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
