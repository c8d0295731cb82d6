#include "simulation/scenarios/expectations.h"

#include <algorithm>

#include "simulation/scenarios/scenario_world.h"
#include "simulation/scenarios/setting_values.h"

namespace quillo::sim {
namespace {

std::string describe(const std::vector<Difference>& differences) {
  std::string text;
  for (const Difference& each : differences) {
    if (!text.empty()) text += '\n';
    text += each.place + ": expected " + each.expected + ", found " + each.found;
  }
  return text;
}

// Every key of `expected` is in `found` with the same value; objects inside are compared alike.
bool isPart(const Json& expected, const Json& found) {
  if (!expected.is_object()) return expected == found;
  if (!found.is_object()) return false;
  for (const auto& [key, value] : expected.items()) {
    if (!found.contains(key) || !isPart(value, found.at(key))) return false;
  }
  return true;
}

class Comparison {
 public:
  Comparison(World& world, const Memory& memory) : world_(world), memory_(memory) {}

  void compare(const Place& expected);
  void finish() {
    if (!differences_.empty()) throw UnmetExpectation(std::move(differences_));
  }

 private:
  using Compare = void (Comparison::*)(const Place&);
  static const std::pair<std::string_view, Compare> kinds[];

  void equal(const Place& place, const Json& found) {
    if (place.json() != found) differ(place, encodeJson(place.json()), encodeJson(found));
  }
  void differ(const Place& place, std::string expected, std::string found) {
    differences_.push_back({place.path(), std::move(expected), std::move(found)});
  }
  void parts(const Place& place, const Json& found);

  // --- The program's state ---
  void status(const Place& place) { equal(place, world_.dictation().statusText.get()); }
  void error(const Place& place) {
    const auto& line = world_.dictation().lastError.get();
    equal(place, line ? Json(*line) : Json(nullptr));
  }
  void recording(const Place& place) { equal(place, world_.dictation().isRecording.get()); }
  void processing(const Place& place) { equal(place, world_.dictation().isProcessing.get()); }
  void canRetry(const Place& place) { equal(place, world_.dictation().canRetryLast.get()); }
  void signedIn(const Place& place) { equal(place, world_.program().auth().isLoggedIn()); }
  void history(const Place& place);
  void settings(const Place& place);

  // --- The desktop ---
  void editor(const Place& place);
  void clipboard(const Place& place);
  void front(const Place& place) { equal(place, world_.frontName()); }
  void panel(const Place& place);
  void noPanel(const Place& place) { equal(place, world_.desktop().panels().visible().empty()); }
  void menu(const Place& place);
  void microphoneOpen(const Place& place) {
    equal(place, world_.desktop().audioSystem().runningEngines() > 0);
  }
  void dockIcon(const Place& place) {
    equal(place, world_.desktop().application().activationPolicy() == ActivationPolicy::regular);
  }
  void windowsShown(const Place& place) {
    equal(place, world_.desktop().application().windowsOrderedFront());
  }
  void recordings(const Place& place);
  void files(const Place& place);

  // --- What has happened ---
  void statuses(const Place& place) { equal(place, memory_.statuses); }
  void sounds(const Place& place) { equal(place, memory_.sounds); }
  void requests(const Place& place);
  void request(const Place& place);
  void alerts(const Place& place) { parts(place, memory_.alerts); }
  void log(const Place& place);
  void notInLog(const Place& place);

  std::vector<Json> requestsTo(Endpoint endpoint) const;
  bool logHas(const std::string& text) const;

  World& world_;
  const Memory& memory_;
  std::vector<Difference> differences_;
};

const std::pair<std::string_view, Comparison::Compare> Comparison::kinds[] = {
    {"status", &Comparison::status},
    {"error", &Comparison::error},
    {"recording", &Comparison::recording},
    {"processing", &Comparison::processing},
    {"canRetry", &Comparison::canRetry},
    {"signedIn", &Comparison::signedIn},
    {"history", &Comparison::history},
    {"settings", &Comparison::settings},
    {"editor", &Comparison::editor},
    {"clipboard", &Comparison::clipboard},
    {"front", &Comparison::front},
    {"panel", &Comparison::panel},
    {"noPanel", &Comparison::noPanel},
    {"menu", &Comparison::menu},
    {"microphoneOpen", &Comparison::microphoneOpen},
    {"dockIcon", &Comparison::dockIcon},
    {"windowsShown", &Comparison::windowsShown},
    {"recordings", &Comparison::recordings},
    {"files", &Comparison::files},
    {"statuses", &Comparison::statuses},
    {"sounds", &Comparison::sounds},
    {"requests", &Comparison::requests},
    {"request", &Comparison::request},
    {"alerts", &Comparison::alerts},
    {"log", &Comparison::log},
    {"notInLog", &Comparison::notInLog},
};

void Comparison::compare(const Place& expected) {
  for (const auto& [key, place] : expected.members()) {
    const auto found = std::ranges::find(kinds, key, [](const auto& named) { return named.first; });
    if (found == std::end(kinds)) {
      std::string known;
      for (const auto& [name, kind] : kinds)
        known += (known.empty() ? "" : ", ") + std::string(name);
      place.refuse("unknown key; known are: " + known);
    }
    (this->*found->second)(place);
  }
}

// Arrays of the same length, each element with at least the expected keys.
void Comparison::parts(const Place& place, const Json& found) {
  const std::vector<Place> elements = place.elements();
  if (elements.size() != found.size())
    return differ(place, encodeJson(place.json()), encodeJson(found));
  for (std::size_t i = 0; i < elements.size(); ++i) {
    if (!isPart(elements[i].json(), found[i]))
      differ(elements[i], encodeJson(elements[i].json()), encodeJson(found[i]));
  }
}

void Comparison::history(const Place& place) {
  const Bytes encoded = encodeHistory(world_.program().history().entries);
  parts(place, *parseJson(encoded));
}

void Comparison::settings(const Place& place) {
  for (const auto& [key, value] : place.members())
    equal(value, storedSetting(world_.desktop().userDefaults(), key));
}

void Comparison::editor(const Place& place) {
  for (const auto& [name, text] : place.members()) {
    simulated::Program* program = nullptr;
    for (simulated::Program* each : world_.applications())
      if (each->identity().localizedName == name) program = each;
    if (!program) text.refuse("there is no application \"" + name + "\"");
    equal(text, program->editor().text());
  }
}

void Comparison::clipboard(const Place& place) {
  const Json found = describeOffered(world_.desktop().pasteboard().offered());
  if (!place.json().is_object()) return equal(place, found.at("text"));
  place.allowOnly({"text", "types"});
  for (const auto& [key, value] : place.members()) equal(value, found.at(key));
}

void Comparison::panel(const Place& place) {
  for (const Place& text : place.elements()) {
    if (!world_.desktop().panels().showing(text.text()))
      differ(text, "a panel with " + encodeJson(text.json()), "none");
  }
}

// A title with true (it can be chosen), false (it is there) or null (it is not there).
void Comparison::menu(const Place& place) {
  for (const auto& [title, state] : place.members()) {
    const MenuItem* item = world_.desktop().statusItem().item(title);
    equal(state, item ? Json(item->isEnabled) : Json(nullptr));
  }
}

void Comparison::recordings(const Place& place) {
  std::int64_t count = 0;
  for (const FilePath& path : world_.desktop().files().allFiles())
    if (path.extension() == ".m4a") ++count;
  equal(place, count);
}

// A path with true or false (whether it is there), or with its contents.
void Comparison::files(const Place& place) {
  for (const auto& [path, expected] : place.members()) {
    const auto found = world_.desktop().files().read(requirePath(world_, expected, path));
    if (expected.json().is_boolean()) {
      equal(expected, found.has_value());
    } else {
      equal(expected, found ? parseJson(*found).value_or(Json(*found)) : Json(nullptr));
    }
  }
}

std::vector<Json> Comparison::requestsTo(Endpoint endpoint) const {
  std::vector<Json> requests;
  for (const Json& request : memory_.requests) {
    const std::string path = request.at("path");
    if (path.substr(0, path.find('?')).ends_with(pathOf(endpoint))) requests.push_back(request);
  }
  return requests;
}

// How many went to the named endpoints.
void Comparison::requests(const Place& place) {
  for (const auto& [name, count] : place.members()) {
    const Json key = name;
    equal(count, requestsTo(Place(key, count.path()).choice(endpointNames)).size());
  }
}

// One request, the last to its endpoint unless a number (from 1) says which.
void Comparison::request(const Place& place) {
  if (place.json().is_array()) {
    for (const Place& each : place.elements()) request(each);
    return;
  }
  place.allowOnly({"to", "number", "parts", "without", "headers"});
  const std::vector<Json> sent = requestsTo(place.at("to").choice(endpointNames));
  const auto number = place.find("number");
  const std::size_t index = number ? static_cast<std::size_t>(number->integer()) : sent.size();
  if (index < 1 || index > sent.size())
    return differ(place, "request " + std::to_string(index),
                  std::to_string(sent.size()) + " requests");
  const Json& found = sent[index - 1];
  for (const char* key : {"parts", "headers"}) {
    if (const auto expected = place.find(key)) {
      if (!isPart(expected->json(), found.at(key)))
        differ(*expected, encodeJson(expected->json()), encodeJson(found.at(key)));
    }
  }
  if (const auto without = place.find("without")) {
    for (const Place& key : without->elements()) {
      if (found.at("parts").contains(key.text()))
        differ(key, "no such part", encodeJson(found.at("parts").at(key.text())));
    }
  }
}

bool Comparison::logHas(const std::string& text) const {
  return std::ranges::any_of(
      memory_.log, [&](const std::string& line) { return line.find(text) != std::string::npos; });
}

void Comparison::log(const Place& place) {
  for (const Place& line : place.elements()) {
    if (logHas(line.text())) continue;
    std::string all;
    for (const std::string& each : memory_.log) all += "\n    " + each;
    differ(line, "the log line " + encodeJson(line.json()), "only:" + all);
  }
}

void Comparison::notInLog(const Place& place) {
  for (const Place& text : place.elements()) {
    if (logHas(text.text())) differ(text, "nothing of this in the log", "it");
  }
}

}  // namespace

UnmetExpectation::UnmetExpectation(std::vector<Difference> differences)
    : what_(describe(differences)) {}

void Memory::follow(Trace& trace) {
  trace.watch([this](const Event& event) { see(event); });
}

void Memory::see(const Event& event) {
  if (event.what == "status") statuses.push_back(event.fields.at("text"));
  if (event.what == "sound") sounds.push_back(event.fields.at("name"));
  if (event.what == "alert") alerts.push_back(event.fields);
  if (event.what == "request" && event.fields.at("method") != "OPTIONS")
    requests.push_back(event.fields);
  if (event.what == "log") {
    log.push_back("[" + event.fields.at("category").get<std::string>() + "] " +
                  event.fields.at("message").get<std::string>());
  }
  if (event.what == "systemLog") log.push_back(event.fields.at("line"));
}

void expect(World& world, const Memory& memory, const Place& expected) {
  Comparison comparison(world, memory);
  comparison.compare(expected);
  comparison.finish();
}

}  // namespace quillo::sim
