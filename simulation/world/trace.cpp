#include "simulation/world/trace.h"

#include <concepts>
#include <ostream>

#include "simulation/world/form_parts.h"

namespace quillo::sim {
namespace {

// --- As JSON ---

Json asJson(const auto& value) {
  return value;
}
Json asJson(const std::optional<std::string>& text) {
  return text ? Json(*text) : Json(nullptr);
}
Json asJson(KeyDirection direction) {
  return direction == KeyDirection::down ? "down" : "up";
}
Json asJson(const ControlValue& value) {
  if (const bool* isOn = std::get_if<bool>(&value)) return *isOn;
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  return nullptr;
}
Json asJson(const HeaderFields& headers) {
  Json fields = Json::object();
  for (const auto& [name, value] : headers) fields[name] = value;
  return fields;
}
Json asJson(const events::Parts& parts) {
  return partsOf(*parts.request);
}
Json asJson(const events::ReplyBody& body) {
  return parseJson(*body.bytes).value_or(Json(*body.bytes));
}

// --- As a digest ---

// Each value is followed by something that no text holds, so that none runs into the next.
class Digest {
 public:
  explicit Digest(std::uint64_t before) : sum_(before) {}
  std::uint64_t sum() const { return sum_; }

  void add(const std::string& text) { add(std::string_view(text)); }
  void add(std::string_view text) {
    for (const char character : text) addByte(static_cast<unsigned char>(character));
    addByte(0xFF);
  }
  void add(std::integral auto number) {
    for (auto rest = static_cast<std::uint64_t>(number); rest != 0; rest >>= 8)
      addByte(static_cast<unsigned char>(rest));
    addByte(0xFF);
  }
  void add(KeyDirection direction) { add(direction == KeyDirection::down); }
  void add(const std::optional<std::string>& text) {
    add(text.has_value());
    if (text) add(*text);
  }
  void add(const std::vector<std::string>& texts) {
    for (const std::string& text : texts) add(text);
  }
  void add(const HeaderFields& headers) {
    for (const auto& [name, value] : headers) {
      add(name);
      add(value);
    }
  }
  void add(const events::Parts& parts) { add(parts.request->body); }
  void add(const events::ReplyBody& body) { add(*body.bytes); }
  void add(const ControlValue& value) { add(encodeJson(asJson(value))); }
  void add(const Json& value) { add(encodeJson(value)); }

 private:
  void addByte(unsigned char byte) { sum_ = (sum_ ^ byte) * 0x100000001b3; }

  std::uint64_t sum_;
};

}  // namespace

Json Event::fields() const {
  Json all = Json::object();
  std::visit(
      [&](const auto& event) {
        event.fields([&](std::string_view name, const auto& value) {
          all[std::string(name)] = asJson(value);
        });
      },
      happening);
  return all;
}

std::string Event::line() const {
  Json line = {{"t", toSeconds(time.sinceStart)}};
  std::visit([&](const auto& event) { line["what"] = event.what; }, happening);
  line.update(fields());
  return encodeJson(line);
}

void Trace::tell(Happening happening) {
  const Event event{now_(), std::move(happening)};
  Digest digest(digest_);
  digest.add(event.time.sinceStart.count());
  digest.add(event.happening.index());
  std::visit(
      [&](const auto& each) {
        each.fields([&](std::string_view, const auto& value) { digest.add(value); });
      },
      event.happening);
  digest_ = digest.sum();
  ++count_;
  if (stream_) *stream_ << event.line() << '\n';
  for (const Watcher& watcher : watchers_) watcher(event);
}

}  // namespace quillo::sim
