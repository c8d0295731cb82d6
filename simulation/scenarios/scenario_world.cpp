#include "simulation/scenarios/scenario_world.h"

#include <memory>

#include "base/iso8601.h"
#include "simulation/scenarios/scenario_windows.h"
#include "simulation/scenarios/setting_values.h"

namespace quillo::sim {
namespace {

using namespace std::chrono_literals;
using simulated::Microphone;
using simulated::SwitchedPermissions;

constexpr std::pair<std::string_view, SwitchedPermissions::Decision> decisions[] = {
    {"allowed", SwitchedPermissions::Decision::allowed},
    {"denied", SwitchedPermissions::Decision::denied},
    {"undecided", SwitchedPermissions::Decision::undecided},
};
constexpr std::pair<std::string_view, simulated::Program::Activation> activations[] = {
    {"obeyed", simulated::Program::Activation::obeyed},
    {"refused", simulated::Program::Activation::refused},
    {"ignored", simulated::Program::Activation::ignored},
};
constexpr std::pair<std::string_view, AudioTransport> transports[] = {
    {"builtIn", AudioTransport::builtIn},       {"usb", AudioTransport::usb},
    {"bluetooth", AudioTransport::bluetooth},   {"aggregate", AudioTransport::aggregate},
    {"virtual", AudioTransport::virtualDevice},
};
constexpr std::pair<std::string_view, URLErrorCode> failures[] = {
    {"timedOut", URLErrorCode::timedOut},
    {"cannotFindHost", URLErrorCode::cannotFindHost},
    {"cannotConnectToHost", URLErrorCode::cannotConnectToHost},
    {"networkConnectionLost", URLErrorCode::networkConnectionLost},
    {"notConnectedToInternet", URLErrorCode::notConnectedToInternet},
    {"badServerResponse", URLErrorCode::badServerResponse},
    {"dataNotAllowed", URLErrorCode::dataNotAllowed},
    {"secureConnectionFailed", URLErrorCode::secureConnectionFailed},
};
constexpr std::pair<std::string_view, UserDirectory> directories[] = {
    {"caches", UserDirectory::caches},
    {"applicationSupport", UserDirectory::applicationSupport},
    {"library", UserDirectory::library},
};

template <class Use>
void ifPresent(const Place& place, std::string_view key, Use use) {
  if (const auto found = place.find(key)) use(*found);
}

// Each character as the one byte of its number, so that any bytes can be told.
Bytes latin1(const Place& place) {
  Bytes bytes;
  const std::string text = place.text();
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto lead = static_cast<unsigned char>(text[i]);
    if (lead > 0xC3) place.refuse("a character above U+00FF is no byte");
    bytes += lead < 0x80 ? text[i] : static_cast<char>((lead << 6) | (text[++i] & 0x3F));
  }
  return bytes;
}

// A text, {"latin1": text}, or any other JSON.
Bytes bodyOf(const Place& place) {
  if (place.json().is_string()) return place.text();
  if (place.json().is_object() && place.json().size() == 1)
    if (const auto bytes = place.find("latin1")) return latin1(*bytes);
  return encodeJson(place.json());
}

// --- Answers of the service ---

enum class AnswerKind { text, usual, status, fails, stalls, notHTTP };

constexpr std::pair<std::string_view, AnswerKind> answerKinds[] = {
    {"text", AnswerKind::text},   {"usual", AnswerKind::usual},   {"status", AnswerKind::status},
    {"fails", AnswerKind::fails}, {"stalls", AnswerKind::stalls}, {"notHTTP", AnswerKind::notHTTP},
};

AnswerKind kindOf(const Place& place) {
  std::optional<AnswerKind> found;
  for (const auto& [key, kind] : answerKinds) {
    if (!place.find(key)) continue;
    if (found) place.refuse("an answer is of one kind, and this is of two");
    found = kind;
  }
  if (!found) place.refuse("an answer needs one of: text, usual, status, fails, stalls, notHTTP");
  return *found;
}

struct Manner {
  Duration delay = 150ms;
  Duration transfer{};
  bool isTruncated = false;
};

simulated::Answer inManner(simulated::Reply reply, const Manner& manner) {
  reply.delay = manner.delay;
  reply.transfer = manner.transfer;
  if (manner.isTruncated) return simulated::Truncated{std::move(reply)};
  return reply;
}

simulated::Reply replyWithText(Endpoint endpoint, const std::string& text, const Place& place) {
  if (endpoint == Endpoint::transcribe) return HostedService::transcription(text);
  if (endpoint == Endpoint::transform) return HostedService::transformation(text);
  place.refuse("only transcribe and transform answer with a text");
}

void requireTrue(const Place& place) {
  if (!place.boolean()) place.refuse("only true makes sense here");
}

HostedService::MakeAnswer answerOf(World& world, Endpoint endpoint, const Place& place) {
  Manner manner;
  ifPresent(place, "after", [&](const Place& after) { manner.delay = after.duration(); });
  ifPresent(place, "transfer", [&](const Place& time) { manner.transfer = time.duration(); });
  ifPresent(place, "truncated", [&](const Place& cut) { manner.isTruncated = cut.boolean(); });

  const auto always = [](simulated::Answer answer) {
    return [answer = std::move(answer)](const HostedService::Request&) { return answer; };
  };
  switch (kindOf(place)) {
    case AnswerKind::text:
      place.allowOnly({"text", "after", "transfer", "truncated", "times"});
      return always(inManner(replyWithText(endpoint, place.at("text").text(), place), manner));
    case AnswerKind::usual:
      place.allowOnly({"usual", "after", "transfer", "truncated", "times"});
      requireTrue(place.at("usual"));
      return [&world, endpoint, manner](const HostedService::Request& request) {
        return inManner(world.service().usualAnswer(endpoint, request), manner);
      };
    case AnswerKind::status: {
      place.allowOnly({"status", "body", "after", "transfer", "truncated", "times"});
      simulated::Reply reply{.status = static_cast<int>(place.at("status").integer())};
      ifPresent(place, "body", [&](const Place& body) { reply.body = bodyOf(body); });
      return always(inManner(std::move(reply), manner));
    }
    case AnswerKind::fails:
      place.allowOnly({"fails", "after", "times"});
      return always(simulated::Failure{place.at("fails").choice(failures), manner.delay});
    case AnswerKind::stalls:
      place.allowOnly({"stalls", "times"});
      requireTrue(place.at("stalls"));
      return always(simulated::Stall{});
    case AnswerKind::notHTTP:
      place.allowOnly({"notHTTP", "after", "times"});
      requireTrue(place.at("notHTTP"));
      return always(simulated::NotHTTP{manner.delay});
  }
}

// --- The rest of the world ---

void describeAccount(World& world, const Place& place) {
  if (place.json().is_object()) {
    place.allowOnly({"expiresIn"});
    return world.signIn(place.at("expiresIn").duration());
  }
  constexpr std::pair<std::string_view, std::optional<Duration>> sessions[] = {
      {"signedIn", 1h}, {"expired", -1h}, {"signedOut", std::nullopt}};
  if (const auto expiresIn = place.choice(sessions)) world.signIn(*expiresIn);
}

void describeMicrophone(Microphone& microphone, const Place& place) {
  ifPresent(place, "dead", [&](const Place& dead) { microphone.setDead(dead.boolean()); });
  ifPresent(place, "muted", [&](const Place& muted) { microphone.setMuted(muted.boolean()); });
  ifPresent(place, "firstSoundAfter",
            [&](const Place& delay) { microphone.setFirstBufferDelay(delay.duration()); });
  ifPresent(place, "refusesStarts", [&](const Place& times) {
    microphone.refuseStart("the device is busy", static_cast<int>(times.integer()));
  });
}

void describeFiles(World& world, const Place& place) {
  for (const auto& [path, contents] : place.members()) {
    const FilePath file = requirePath(world, contents, path);
    simulated::MemoryFileManager& files = world.desktop().files();
    files.createDirectory(file.parent_path());
    files.writeAtomically(file, bodyOf(contents));
  }
}

void describeDisk(World& world, const Place& place) {
  place.allowOnly({"free"});
  world.desktop().files().setFreeBytes(place.at("free").integer());
}

simulated::OfferedData offeredData(const Place& place) {
  place.allowOnly({"type", "text", "size", "makingTime", "promised"});
  simulated::OfferedData data{.type = place.at("type").text()};
  if (place.find("text").has_value() == place.find("size").has_value())
    place.refuse("either \"text\" or \"size\" says what the data are");
  ifPresent(place, "text", [&](const Place& text) { data.bytes = text.text(); });
  ifPresent(place, "size", [&](const Place& size) {
    data.bytes = Bytes(static_cast<std::size_t>(size.integer()), 'x');
  });
  ifPresent(place, "makingTime", [&](const Place& time) { data.makingTime = time.duration(); });
  ifPresent(place, "promised", [&](const Place& is) { data.isPromised = is.boolean(); });
  return data;
}

std::vector<simulated::OfferedItem> offeredItems(const Place& place) {
  std::vector<simulated::OfferedItem> items;
  for (const Place& element : place.elements()) {
    simulated::OfferedItem item;
    for (const Place& data : element.elements()) item.push_back(offeredData(data));
    items.push_back(std::move(item));
  }
  return items;
}

enum class OwnerManner { willing, hung, gone };
constexpr std::pair<std::string_view, OwnerManner> ownerManners[] = {
    {"willing", OwnerManner::willing}, {"hung", OwnerManner::hung}, {"gone", OwnerManner::gone}};

}  // namespace

FilePath requirePath(World& world, const Place& place, const std::string& path) {
  for (const auto& [name, directory] : directories) {
    if (path.starts_with(std::string(name) + "/"))
      return *world.desktop().files().directory(directory) / path.substr(name.size() + 1);
  }
  place.refuse("a path begins with caches/, applicationSupport/ or library/");
}

void describeApplication(simulated::Program& program, const Place& place) {
  place.allowOnly({"name", "bundleIdentifier", "text", "activation", "activationTime",
                   "ignoresPaste", "ignoresCopy", "reactionTime", "windows", "answersAfter", "hung",
                   "selection", "frames", "rebuildsAfterCalls", "buildsOnRequest"});
  describeWindows(program, place);
  ifPresent(place, "text", [&](const Place& text) { program.editor().setText(text.text()); });
  ifPresent(place, "activation",
            [&](const Place& how) { program.setActivation(how.choice(activations)); });
  ifPresent(place, "activationTime",
            [&](const Place& time) { program.setActivationTime(time.duration()); });
  ifPresent(place, "ignoresPaste",
            [&](const Place& ignores) { program.setIgnoresPaste(ignores.boolean()); });
  ifPresent(place, "ignoresCopy",
            [&](const Place& ignores) { program.setIgnoresCopy(ignores.boolean()); });
  ifPresent(place, "reactionTime",
            [&](const Place& time) { program.setReactionTime(time.duration()); });
}

void launchDescribed(World& world, const Place& place) {
  const std::string name = place.at("name").text();
  if (world.application(name)) place.refuse("\"" + name + "\" runs already");
  std::optional<std::string> bundleIdentifier = "org.example." + name;
  ifPresent(place, "bundleIdentifier", [&](const Place& identifier) {
    bundleIdentifier =
        identifier.json().is_null() ? std::nullopt : std::optional(identifier.text());
  });
  describeApplication(world.launchApplication({bundleIdentifier, name}), place);
}

simulated::Program& requireApplication(World& world, const Place& name) {
  if (simulated::Program* program = world.application(name.text())) return *program;
  name.refuse("no application \"" + name.text() + "\" runs");
}

void setPermissions(World& world, const Place& place) {
  place.allowOnly({"microphone", "microphoneAnswer", "accessibility", "listenEvents"});
  SwitchedPermissions& permissions = world.desktop().permissions();
  ifPresent(place, "microphone",
            [&](const Place& to) { permissions.setMicrophone(to.choice(decisions)); });
  ifPresent(place, "microphoneAnswer", [&](const Place& to) {
    permissions.answerMicrophoneQuestion(to.choice(decisions), 1s);
  });
  if (place.find("accessibility") || place.find("listenEvents"))
    world.trace().tell("fault", {{"kind", "keyPermissions"}});
  ifPresent(place, "accessibility",
            [&](const Place& to) { permissions.setAccessibilityTrusted(to.boolean()); });
  ifPresent(place, "listenEvents",
            [&](const Place& to) { permissions.setListenEventAccess(to.boolean()); });
}

void disturbKeyRoutes(World& world, const Place& place) {
  place.allowOnly({"tap", "hotKeys", "globalMonitors", "localMonitors", "keyboards"});
  simulated::SimulatedDesktop& desktop = world.desktop();
  const std::pair<std::string_view, simulated::KeyRoute*> routes[] = {
      {"tap", &desktop.eventTaps().route()},
      {"hotKeys", &desktop.hotKeys().route()},
      {"globalMonitors", &desktop.eventMonitors().globalRoute()},
      {"localMonitors", &desktop.eventMonitors().localRoute()},
      {"keyboards", &desktop.hidKeyboards().route()}};
  for (const auto& [name, route] : routes) {
    const auto described = place.find(name);
    if (!described) continue;
    described->allowOnly({"refused", "latency", "loses", "doubles"});
    world.trace().tell("fault", {{"kind", "keyPermissions"}});
    simulated::KeyRoute& changed = *route;
    ifPresent(*described, "refused", [&](const Place& is) { changed.setRefused(is.boolean()); });
    ifPresent(*described, "latency",
              [&](const Place& time) { changed.setLatency(time.duration()); });
    ifPresent(*described, "loses",
              [&](const Place& all) { changed.setLoss(all.boolean() ? 1 : 0); });
    ifPresent(*described, "doubles",
              [&](const Place& all) { changed.setDuplication(all.boolean() ? 1 : 0); });
  }
}

void chooseLayout(World& world, const Place& place) {
  using simulated::KeyboardLayout;
  constexpr std::pair<std::string_view, KeyboardLayout> layouts[] = {
      {"us", KeyboardLayout::us},
      {"dvorak", KeyboardLayout::dvorak},
      {"russian", KeyboardLayout::russian}};
  world.desktop().keyboard().setLayout(place.choice(layouts));
}

// Chords that another program has registered.
void takeChords(World& world, const Place& place) {
  using namespace hot_key_modifiers;
  using Chord = std::pair<std::uint32_t, std::uint32_t>;
  constexpr std::pair<std::string_view, Chord> chords[] = {
      {"control+option+space", {49, control | option}},
      {"control+command+v", {9, control | command}},
      {"control+g", {5, control}},
      {"control+j", {38, control}},
      {"control+semicolon", {41, control}}};
  for (const Place& each : place.elements()) {
    const Chord chord = each.choice(chords);
    auto taken = world.desktop().hotKeys().takeByAnotherProgram(chord.first, chord.second);
    if (!taken) each.refuse("this chord is taken already");
    world.keep(std::move(taken));
  }
}

void scriptService(World& world, const Place& place) {
  for (const auto& [key, answers] : place.members()) {
    std::optional<Endpoint> endpoint;
    for (const auto& [known, value] : endpointNames)
      if (known == key) endpoint = value;
    if (!endpoint)
      answers.refuse("the service has: transcribe, transform, usage, session, profile, config");
    for (const Place& answer : answers.elements()) {
      int times = 1;
      ifPresent(answer, "times", [&](const Place& count) {
        times = static_cast<int>(count.integer());
        if (times < 1) count.refuse("at least 1 is expected");
      });
      world.service().script(*endpoint, answerOf(world, *endpoint, answer), times);
    }
  }
}

void plugMicrophone(World& world, const Place& place) {
  place.allowOnly({"uid", "name", "transport", "hidden", "channels", "default", "dead", "muted",
                   "firstSoundAfter", "refusesStarts"});
  simulated::SimulatedAudioDevices& devices = world.desktop().audioDevices();
  Microphone::Description description{.uid = place.at("uid").text(),
                                      .name = place.at("uid").text()};
  ifPresent(place, "name", [&](const Place& name) { description.name = name.text(); });
  ifPresent(place, "transport",
            [&](const Place& how) { description.transport = how.choice(transports); });
  ifPresent(place, "hidden", [&](const Place& is) { description.isHidden = is.boolean(); });
  ifPresent(place, "channels", [&](const Place& count) {
    description.inputStreamChannels = std::vector{static_cast<int>(count.integer())};
  });
  const auto plugged = devices.devices().value();
  for (const AudioDeviceID id : plugged) {
    if (devices.uid(id) == description.uid) place.refuse("this device is plugged in already");
  }
  Microphone& microphone = devices.plug(std::move(description));
  describeMicrophone(microphone, place);
  ifPresent(place, "default", [&](const Place& isDefault) {
    if (isDefault.boolean()) devices.setDefault(microphone);
  });
}

Microphone& requireMicrophone(World& world, const Place& uid) {
  simulated::SimulatedAudioDevices& devices = world.desktop().audioDevices();
  if (uid.text() == "built-in") return devices.builtInMicrophone();
  const auto plugged = devices.devices().value();
  for (const AudioDeviceID id : plugged) {
    if (devices.uid(id) == uid.text()) return *devices.find(id);
  }
  uid.refuse("no microphone \"" + uid.text() + "\" is plugged in");
}

void copyDescribed(World& world, const Place& place) {
  if (place.json().is_string()) {
    return world.copy({{{.type = pasteboardTypeString, .bytes = place.text()}}}, "");
  }
  place.allowOnly({"text", "items", "by", "owner", "slowness"});
  if (place.find("text").has_value() == place.find("items").has_value())
    place.refuse("either \"text\" or \"items\" says what is copied");
  std::string by;
  ifPresent(place, "by", [&](const Place& name) {
    requireApplication(world, name);
    by = name.text();
  });
  ifPresent(place, "text", [&](const Place& text) {
    world.copy({{{.type = pasteboardTypeString, .bytes = text.text()}}}, by);
  });
  ifPresent(place, "items", [&](const Place& items) { world.copy(offeredItems(items), by); });
  simulated::SharedPasteboard& pasteboard = world.desktop().pasteboard();
  ifPresent(place, "slowness",
            [&](const Place& perAnswer) { pasteboard.slowOwner(perAnswer.duration()); });
  OwnerManner manner = OwnerManner::willing;
  ifPresent(place, "owner", [&](const Place& how) { manner = how.choice(ownerManners); });
  if (manner == OwnerManner::hung) pasteboard.hangOwner();
  if (manner == OwnerManner::gone) pasteboard.loseOwner();
  if (manner != OwnerManner::willing || place.find("slowness"))
    world.trace().tell("fault", {{"kind", "clipboardOwner"}});
}

void repeatKeys(World& world, const Place& place) {
  if (place.json().is_object()) {
    place.allowOnly({"after", "every"});
    return world.desktop().keyboard().setAutorepeat(place.at("after").duration(),
                                                    place.at("every").duration());
  }
  constexpr std::pair<std::string_view, Duration> never[] = {{"off", Duration::zero()}};
  world.desktop().keyboard().setAutorepeat(place.choice(never), Duration::zero());
}

void breakVoiceProcessing(World& world, const Place& place) {
  const auto reason = place.json().is_null() ? std::nullopt : std::optional(place.text());
  world.desktop().audioSystem().refuseVoiceProcessing(reason);
}

void answerAlert(World& world, const Place& place, const PlaySteps& play) {
  place.allowOnly({"button", "after", "meanwhile"});
  Duration after = 1s;
  ifPresent(place, "after", [&](const Place& time) { after = time.duration(); });
  std::function<void()> meanwhile;
  ifPresent(place, "meanwhile", [&](const Place& steps) {
    meanwhile = [play, steps = steps.elements()] { play(steps); };
  });
  world.desktop().alerts().answer(static_cast<std::size_t>(place.at("button").integer()), after,
                                  std::move(meanwhile));
}

void furnish(World& world, const std::optional<Place>& place, const PlaySteps& play) {
  static const Json nothing = Json::object();
  const Place described = place.value_or(Place(nothing, "world"));
  described.allowOnly(
      {"seed",        "date",      "settings",     "account",         "permissions",
       "files",       "disk",      "applications", "microphones",     "builtInMicrophone",
       "clipboard",   "service",   "alerts",       "keyRoutes",       "layout",
       "takenChords", "languages", "keyRepeat",    "voiceProcessing", "limitation"});
  simulated::SimulatedDesktop& desktop = world.desktop();
  ifPresent(described, "date", [&](const Place& date) {
    const auto parsed = dateFromIso8601(date.text());
    if (!parsed) date.refuse("a date such as \"2026-03-04T09:00:00Z\" is expected");
    desktop.clock().set(*parsed);
  });
  ifPresent(described, "settings", [&](const Place& settings) {
    for (const auto& [key, value] : settings.members())
      storeSetting(desktop.userDefaults(), key, value);
  });
  if (const auto account = described.find("account")) {
    describeAccount(world, *account);
  } else {
    world.signIn();
  }
  ifPresent(described, "permissions", [&](const Place& to) { setPermissions(world, to); });
  ifPresent(described, "keyRoutes", [&](const Place& to) { disturbKeyRoutes(world, to); });
  ifPresent(described, "layout", [&](const Place& to) { chooseLayout(world, to); });
  ifPresent(described, "keyRepeat", [&](const Place& how) { repeatKeys(world, how); });
  ifPresent(described, "languages",
            [&](const Place& tags) { desktop.machine().setPreferredLanguages(tags.texts()); });
  ifPresent(described, "takenChords", [&](const Place& chords) { takeChords(world, chords); });
  ifPresent(described, "limitation",
            [&](const Place& sentence) { desktop.session().setLimitation(sentence.text()); });
  ifPresent(described, "files", [&](const Place& files) { describeFiles(world, files); });
  ifPresent(described, "disk", [&](const Place& disk) { describeDisk(world, disk); });
  if (const auto applications = described.find("applications")) {
    for (const Place& application : applications->elements()) launchDescribed(world, application);
  } else {
    world.launchApplication({"org.example.Notes", "Notes"});
  }
  ifPresent(described, "builtInMicrophone", [&](const Place& microphone) {
    microphone.allowOnly({"dead", "muted", "firstSoundAfter", "refusesStarts"});
    describeMicrophone(desktop.audioDevices().builtInMicrophone(), microphone);
  });
  ifPresent(described, "microphones", [&](const Place& microphones) {
    for (const Place& microphone : microphones.elements()) plugMicrophone(world, microphone);
  });
  ifPresent(described, "voiceProcessing",
            [&](const Place& reason) { breakVoiceProcessing(world, reason); });
  ifPresent(described, "clipboard", [&](const Place& copied) { copyDescribed(world, copied); });
  ifPresent(described, "service", [&](const Place& answers) { scriptService(world, answers); });
  ifPresent(described, "alerts", [&](const Place& answers) {
    for (const Place& answer : answers.elements()) answerAlert(world, answer, play);
  });
  world.launch();
}

}  // namespace quillo::sim
