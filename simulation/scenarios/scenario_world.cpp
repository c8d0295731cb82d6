#include "simulation/scenarios/scenario_world.h"

#include <memory>

#include "base/iso8601.h"
#include "simulation/faults/fault.h"
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
constexpr std::pair<std::string_view, simulated::SimulatedApplication::Activation> activations[] = {
    {"obeyed", simulated::SimulatedApplication::Activation::obeyed},
    {"refused", simulated::SimulatedApplication::Activation::refused},
    {"ignored", simulated::SimulatedApplication::Activation::ignored},
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
void ifPresent(const JsonCursor& cursor, std::string_view key, Use use) {
  if (const auto found = cursor.find(key)) use(*found);
}

// Each character as the one byte of its number, so that any bytes can be told.
Bytes latin1(const JsonCursor& cursor) {
  Bytes bytes;
  const std::string text = cursor.text();
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto lead = static_cast<unsigned char>(text[i]);
    if (lead > 0xC3) cursor.refuse("a character above U+00FF is no byte");
    bytes += lead < 0x80 ? text[i] : static_cast<char>((lead << 6) | (text[++i] & 0x3F));
  }
  return bytes;
}

// A text, {"latin1": text}, or any other JSON.
Bytes bodyOf(const JsonCursor& cursor) {
  if (cursor.json().is_string()) return cursor.text();
  if (cursor.json().is_object() && cursor.json().size() == 1)
    if (const auto bytes = cursor.find("latin1")) return latin1(*bytes);
  return encodeJson(cursor.json());
}

// --- Answers of the service ---

enum class AnswerKind { text, usual, status, fails, stalls, notHTTP };

constexpr std::pair<std::string_view, AnswerKind> answerKinds[] = {
    {"text", AnswerKind::text},   {"usual", AnswerKind::usual},   {"status", AnswerKind::status},
    {"fails", AnswerKind::fails}, {"stalls", AnswerKind::stalls}, {"notHTTP", AnswerKind::notHTTP},
};

AnswerKind kindOf(const JsonCursor& cursor) {
  std::optional<AnswerKind> found;
  for (const auto& [key, kind] : answerKinds) {
    if (!cursor.find(key)) continue;
    if (found) cursor.refuse("an answer is of one kind, and this is of two");
    found = kind;
  }
  if (!found) cursor.refuse("an answer needs one of: text, usual, status, fails, stalls, notHTTP");
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

simulated::Reply replyWithText(Endpoint endpoint, const std::string& text,
                               const JsonCursor& cursor) {
  if (endpoint == Endpoint::transcribe) return HostedService::transcription(text);
  if (endpoint == Endpoint::transform) return HostedService::transformation(text);
  cursor.refuse("only transcribe and transform answer with a text");
}

void requireTrue(const JsonCursor& cursor) {
  if (!cursor.boolean()) cursor.refuse("only true makes sense here");
}

HostedService::MakeAnswer answerOf(World& world, Endpoint endpoint, const JsonCursor& cursor) {
  Manner manner;
  ifPresent(cursor, "after", [&](const JsonCursor& after) { manner.delay = after.duration(); });
  ifPresent(cursor, "transfer", [&](const JsonCursor& time) { manner.transfer = time.duration(); });
  ifPresent(cursor, "truncated",
            [&](const JsonCursor& cut) { manner.isTruncated = cut.boolean(); });

  const auto always = [](simulated::Answer answer) {
    return [answer = std::move(answer)](const HostedService::Request&) { return answer; };
  };
  switch (kindOf(cursor)) {
    case AnswerKind::text:
      cursor.allowOnly({"text", "after", "transfer", "truncated", "times"});
      return always(inManner(replyWithText(endpoint, cursor.at("text").text(), cursor), manner));
    case AnswerKind::usual:
      cursor.allowOnly({"usual", "after", "transfer", "truncated", "times"});
      requireTrue(cursor.at("usual"));
      return [&world, endpoint, manner](const HostedService::Request& request) {
        return inManner(world.service().usualAnswer(endpoint, request), manner);
      };
    case AnswerKind::status: {
      cursor.allowOnly({"status", "body", "after", "transfer", "truncated", "times"});
      simulated::Reply reply{.status = static_cast<int>(cursor.at("status").integer())};
      ifPresent(cursor, "body", [&](const JsonCursor& body) { reply.body = bodyOf(body); });
      return always(inManner(std::move(reply), manner));
    }
    case AnswerKind::fails:
      cursor.allowOnly({"fails", "after", "times"});
      return always(simulated::Failure{cursor.at("fails").choice(failures), manner.delay});
    case AnswerKind::stalls:
      cursor.allowOnly({"stalls", "times"});
      requireTrue(cursor.at("stalls"));
      return always(simulated::Stall{});
    case AnswerKind::notHTTP:
      cursor.allowOnly({"notHTTP", "after", "times"});
      requireTrue(cursor.at("notHTTP"));
      return always(simulated::NotHTTP{manner.delay});
  }
}

// --- The rest of the world ---

void describeAccount(World& world, const JsonCursor& cursor) {
  if (cursor.json().is_object()) {
    cursor.allowOnly({"expiresIn"});
    return world.signIn(cursor.at("expiresIn").duration());
  }
  constexpr std::pair<std::string_view, std::optional<Duration>> sessions[] = {
      {"signedIn", 1h}, {"expired", -1h}, {"signedOut", std::nullopt}};
  if (const auto expiresIn = cursor.choice(sessions)) world.signIn(*expiresIn);
}

void describeMicrophone(Microphone& microphone, const JsonCursor& cursor) {
  ifPresent(cursor, "dead", [&](const JsonCursor& dead) { microphone.setDead(dead.boolean()); });
  ifPresent(cursor, "muted",
            [&](const JsonCursor& muted) { microphone.setMuted(muted.boolean()); });
  ifPresent(cursor, "firstSoundAfter",
            [&](const JsonCursor& delay) { microphone.setFirstBufferDelay(delay.duration()); });
  ifPresent(cursor, "refusesStarts", [&](const JsonCursor& times) {
    microphone.refuseStart("the device is busy", static_cast<int>(times.integer()));
  });
}

void describeFiles(World& world, const JsonCursor& cursor) {
  for (const auto& [path, contents] : cursor.members()) {
    const FilePath file = requirePath(world, contents, path);
    simulated::MemoryFileManager& files = world.desktop().files();
    files.createDirectory(file.parent_path());
    files.writeAtomically(file, bodyOf(contents));
  }
}

void describeDisk(World& world, const JsonCursor& cursor) {
  cursor.allowOnly({"free"});
  world.desktop().files().setFreeBytes(cursor.at("free").integer());
}

simulated::OfferedData offeredData(const JsonCursor& cursor) {
  cursor.allowOnly({"type", "text", "size", "makingTime", "promised"});
  simulated::OfferedData data{.type = cursor.at("type").text()};
  if (cursor.find("text").has_value() == cursor.find("size").has_value())
    cursor.refuse("either \"text\" or \"size\" says what the data are");
  ifPresent(cursor, "text", [&](const JsonCursor& text) { data.bytes = text.text(); });
  ifPresent(cursor, "size", [&](const JsonCursor& size) {
    data.bytes = Bytes(static_cast<std::size_t>(size.integer()), 'x');
  });
  ifPresent(cursor, "makingTime",
            [&](const JsonCursor& time) { data.makingTime = time.duration(); });
  ifPresent(cursor, "promised", [&](const JsonCursor& is) { data.isPromised = is.boolean(); });
  return data;
}

std::vector<simulated::OfferedItem> offeredItems(const JsonCursor& cursor) {
  std::vector<simulated::OfferedItem> items;
  for (const JsonCursor& element : cursor.elements()) {
    simulated::OfferedItem item;
    for (const JsonCursor& data : element.elements()) item.push_back(offeredData(data));
    items.push_back(std::move(item));
  }
  return items;
}

enum class OwnerManner { willing, hung, gone };
constexpr std::pair<std::string_view, OwnerManner> ownerManners[] = {
    {"willing", OwnerManner::willing}, {"hung", OwnerManner::hung}, {"gone", OwnerManner::gone}};

}  // namespace

FilePath requirePath(World& world, const JsonCursor& cursor, const std::string& path) {
  for (const auto& [name, directory] : directories) {
    if (path.starts_with(std::string(name) + "/"))
      return *world.desktop().files().directory(directory) / path.substr(name.size() + 1);
  }
  cursor.refuse("a path begins with caches/, applicationSupport/ or library/");
}

void describeApplication(simulated::SimulatedApplication& application, const JsonCursor& cursor) {
  cursor.allowOnly({"name", "bundleIdentifier", "text", "activation", "activationTime",
                    "ignoresPaste", "ignoresCopy", "reactionTime", "windows", "answersAfter",
                    "hung", "selection", "frames", "rebuildsAfterCalls", "buildsOnRequest"});
  describeWindows(application, cursor);
  ifPresent(cursor, "text",
            [&](const JsonCursor& text) { application.editor().setText(text.text()); });
  ifPresent(cursor, "activation",
            [&](const JsonCursor& how) { application.setActivation(how.choice(activations)); });
  ifPresent(cursor, "activationTime",
            [&](const JsonCursor& time) { application.setActivationTime(time.duration()); });
  ifPresent(cursor, "ignoresPaste",
            [&](const JsonCursor& ignores) { application.setIgnoresPaste(ignores.boolean()); });
  ifPresent(cursor, "ignoresCopy",
            [&](const JsonCursor& ignores) { application.setIgnoresCopy(ignores.boolean()); });
  ifPresent(cursor, "reactionTime",
            [&](const JsonCursor& time) { application.setReactionTime(time.duration()); });
}

void launchDescribed(World& world, const JsonCursor& cursor) {
  const std::string name = cursor.at("name").text();
  if (world.application(name)) cursor.refuse("\"" + name + "\" runs already");
  std::optional<std::string> bundleIdentifier = "org.example." + name;
  ifPresent(cursor, "bundleIdentifier", [&](const JsonCursor& identifier) {
    bundleIdentifier =
        identifier.json().is_null() ? std::nullopt : std::optional(identifier.text());
  });
  describeApplication(world.launchApplication({bundleIdentifier, name}), cursor);
}

simulated::SimulatedApplication& requireApplication(World& world, const JsonCursor& name) {
  if (simulated::SimulatedApplication* application = world.application(name.text()))
    return *application;
  name.refuse("no application \"" + name.text() + "\" runs");
}

void setPermissions(World& world, const JsonCursor& cursor) {
  cursor.allowOnly({"microphone", "microphoneAnswer", "accessibility", "listenEvents"});
  SwitchedPermissions& permissions = world.desktop().permissions();
  ifPresent(cursor, "microphone",
            [&](const JsonCursor& to) { permissions.setMicrophone(to.choice(decisions)); });
  ifPresent(cursor, "microphoneAnswer", [&](const JsonCursor& to) {
    permissions.answerMicrophoneQuestion(to.choice(decisions), 1s);
  });
  ifPresent(cursor, "accessibility", [&](const JsonCursor& to) {
    tellFault(world, FaultKind::accessibilityDenied, !to.boolean());
    permissions.setAccessibilityTrusted(to.boolean());
  });
  ifPresent(cursor, "listenEvents", [&](const JsonCursor& to) {
    tellFault(world, FaultKind::listenEventsDenied, !to.boolean());
    permissions.setListenEventAccess(to.boolean());
  });
}

namespace {

void disturbKeyRoute(World& world, simulated::KeyRoute& route, const JsonCursor& cursor) {
  cursor.allowOnly({"refused", "latency", "loses", "doubles"});
  ifPresent(cursor, "refused", [&](const JsonCursor& is) {
    tellFault(world, FaultKind::keyRouteRefused, is.boolean());
    route.setRefused(is.boolean());
  });
  ifPresent(cursor, "latency", [&](const JsonCursor& time) {
    tellFault(world, FaultKind::keyRouteSlow, time.duration() > Duration::zero());
    route.setLatency(time.duration());
  });
  ifPresent(cursor, "loses", [&](const JsonCursor& all) {
    tellFault(world, FaultKind::keyRouteLossy, all.boolean());
    route.setLoss(all.boolean() ? 1 : 0);
  });
  ifPresent(cursor, "doubles", [&](const JsonCursor& all) {
    tellFault(world, FaultKind::keyRouteDoubled, all.boolean());
    route.setDuplication(all.boolean() ? 1 : 0);
  });
}

}  // namespace

void disturbKeyRoutes(World& world, const JsonCursor& cursor) {
  cursor.allowOnly({"tap", "hotKeys", "globalMonitors", "localMonitors", "keyboards"});
  simulated::SimulatedDesktop& desktop = world.desktop();
  const std::pair<std::string_view, simulated::KeyRoute*> routes[] = {
      {"tap", &desktop.eventTaps().route()},
      {"hotKeys", &desktop.hotKeys().route()},
      {"globalMonitors", &desktop.eventMonitors().globalRoute()},
      {"localMonitors", &desktop.eventMonitors().localRoute()},
      {"keyboards", &desktop.hidKeyboards().route()}};
  for (const auto& [name, route] : routes) {
    const auto described = cursor.find(name);
    if (!described) continue;
    disturbKeyRoute(world, *route, *described);
  }
}

void chooseLayout(World& world, const JsonCursor& cursor) {
  using simulated::KeyboardLayout;
  constexpr std::pair<std::string_view, KeyboardLayout> layouts[] = {
      {"us", KeyboardLayout::us},
      {"dvorak", KeyboardLayout::dvorak},
      {"russian", KeyboardLayout::russian}};
  world.desktop().keyboard().setLayout(cursor.choice(layouts));
}

// Chords that another program has registered.
void takeChords(World& world, const JsonCursor& cursor) {
  using namespace hot_key_modifiers;
  using Chord = std::pair<std::uint32_t, std::uint32_t>;
  constexpr std::pair<std::string_view, Chord> chords[] = {
      {"control+option+space", {49, control | option}},
      {"control+command+v", {9, control | command}},
      {"control+g", {5, control}},
      {"control+j", {38, control}},
      {"control+semicolon", {41, control}}};
  for (const JsonCursor& each : cursor.elements()) {
    const Chord chord = each.choice(chords);
    auto taken = world.desktop().hotKeys().takeByAnotherProgram(chord.first, chord.second);
    if (!taken) each.refuse("this chord is taken already");
    world.keep(std::move(taken));
  }
}

void scriptService(World& world, const JsonCursor& cursor) {
  for (const auto& [key, answers] : cursor.members()) {
    std::optional<Endpoint> endpoint;
    for (const auto& [known, value] : endpointNames)
      if (known == key) endpoint = value;
    if (!endpoint)
      answers.refuse("the service has: transcribe, transform, usage, session, profile, config");
    for (const JsonCursor& answer : answers.elements()) {
      int times = 1;
      ifPresent(answer, "times", [&](const JsonCursor& count) {
        times = static_cast<int>(count.integer());
        if (times < 1) count.refuse("at least 1 is expected");
      });
      world.service().script(*endpoint, answerOf(world, *endpoint, answer), times);
    }
  }
}

void plugMicrophone(World& world, const JsonCursor& cursor) {
  cursor.allowOnly({"uid", "name", "transport", "hidden", "channels", "default", "dead", "muted",
                    "firstSoundAfter", "refusesStarts"});
  simulated::SimulatedAudioDevices& devices = world.desktop().audioDevices();
  Microphone::Description description{.uid = cursor.at("uid").text(),
                                      .name = cursor.at("uid").text()};
  ifPresent(cursor, "name", [&](const JsonCursor& name) { description.name = name.text(); });
  ifPresent(cursor, "transport",
            [&](const JsonCursor& how) { description.transport = how.choice(transports); });
  ifPresent(cursor, "hidden", [&](const JsonCursor& is) { description.isHidden = is.boolean(); });
  ifPresent(cursor, "channels", [&](const JsonCursor& count) {
    description.inputStreamChannels = std::vector{static_cast<int>(count.integer())};
  });
  const auto plugged = *devices.devices();
  for (const AudioDeviceID id : plugged) {
    if (devices.uid(id) == description.uid) cursor.refuse("this device is plugged in already");
  }
  Microphone& microphone = devices.plug(std::move(description));
  describeMicrophone(microphone, cursor);
  ifPresent(cursor, "default", [&](const JsonCursor& isDefault) {
    if (isDefault.boolean()) devices.setDefault(microphone);
  });
}

Microphone& requireMicrophone(World& world, const JsonCursor& uid) {
  simulated::SimulatedAudioDevices& devices = world.desktop().audioDevices();
  if (uid.text() == "built-in") return devices.builtInMicrophone();
  const auto plugged = *devices.devices();
  for (const AudioDeviceID id : plugged) {
    if (devices.uid(id) == uid.text()) return *devices.find(id);
  }
  uid.refuse("no microphone \"" + uid.text() + "\" is plugged in");
}

void copyDescribed(World& world, const JsonCursor& cursor) {
  if (cursor.json().is_string()) {
    return world.copy({{{.type = pasteboardTypeString, .bytes = cursor.text()}}}, "");
  }
  cursor.allowOnly({"text", "items", "by", "owner", "slowness"});
  if (cursor.find("text").has_value() == cursor.find("items").has_value())
    cursor.refuse("either \"text\" or \"items\" says what is copied");
  std::string by;
  ifPresent(cursor, "by", [&](const JsonCursor& name) {
    requireApplication(world, name);
    by = name.text();
  });
  ifPresent(cursor, "text", [&](const JsonCursor& text) {
    world.copy({{{.type = pasteboardTypeString, .bytes = text.text()}}}, by);
  });
  ifPresent(cursor, "items", [&](const JsonCursor& items) { world.copy(offeredItems(items), by); });
  simulated::SharedPasteboard& pasteboard = world.desktop().pasteboard();
  ifPresent(cursor, "slowness", [&](const JsonCursor& perAnswer) {
    tellFault(world, FaultKind::clipboardSlow);
    pasteboard.slowOwner(perAnswer.duration());
  });
  OwnerManner manner = OwnerManner::willing;
  ifPresent(cursor, "owner", [&](const JsonCursor& how) { manner = how.choice(ownerManners); });
  if (manner == OwnerManner::willing) return;
  const bool isHung = manner == OwnerManner::hung;
  tellFault(world, isHung ? FaultKind::clipboardHung : FaultKind::clipboardGone);
  isHung ? pasteboard.hangOwner() : pasteboard.loseOwner();
}

void repeatKeys(World& world, const JsonCursor& cursor) {
  if (cursor.json().is_object()) {
    cursor.allowOnly({"after", "every"});
    return world.desktop().keyboard().setAutorepeat(cursor.at("after").duration(),
                                                    cursor.at("every").duration());
  }
  constexpr std::pair<std::string_view, Duration> never[] = {{"off", Duration::zero()}};
  world.desktop().keyboard().setAutorepeat(cursor.choice(never), Duration::zero());
}

void breakVoiceProcessing(World& world, const JsonCursor& cursor) {
  const auto reason = cursor.json().is_null() ? std::nullopt : std::optional(cursor.text());
  world.desktop().audioSystem().refuseVoiceProcessing(reason);
}

void answerAlert(World& world, const JsonCursor& cursor, const PlaySteps& play) {
  cursor.allowOnly({"button", "after", "meanwhile"});
  Duration after = 1s;
  ifPresent(cursor, "after", [&](const JsonCursor& time) { after = time.duration(); });
  std::function<void()> meanwhile;
  ifPresent(cursor, "meanwhile", [&](const JsonCursor& steps) {
    meanwhile = [play, steps = steps.elements()] { play(steps); };
  });
  world.desktop().alerts().answer(static_cast<std::size_t>(cursor.at("button").integer()), after,
                                  std::move(meanwhile));
}

void furnish(World& world, const std::optional<JsonCursor>& cursor, const PlaySteps& play) {
  static const Json nothing = Json::object();
  const JsonCursor described = cursor.value_or(JsonCursor(nothing, "world"));
  described.allowOnly(
      {"seed",        "date",      "settings",     "account",         "permissions",
       "files",       "disk",      "applications", "microphones",     "builtInMicrophone",
       "clipboard",   "service",   "alerts",       "keyRoutes",       "layout",
       "takenChords", "languages", "keyRepeat",    "voiceProcessing", "limitation"});
  simulated::SimulatedDesktop& desktop = world.desktop();
  ifPresent(described, "date", [&](const JsonCursor& date) {
    const auto parsed = dateFromIso8601(date.text());
    if (!parsed) date.refuse("a date such as \"2026-03-04T09:00:00Z\" is expected");
    desktop.clock().set(*parsed);
  });
  ifPresent(described, "settings", [&](const JsonCursor& settings) {
    for (const auto& [key, value] : settings.members())
      storeSetting(desktop.userDefaults(), key, value);
  });
  if (const auto account = described.find("account")) {
    describeAccount(world, *account);
  } else {
    world.signIn();
  }
  ifPresent(described, "permissions", [&](const JsonCursor& to) { setPermissions(world, to); });
  ifPresent(described, "keyRoutes", [&](const JsonCursor& to) { disturbKeyRoutes(world, to); });
  ifPresent(described, "layout", [&](const JsonCursor& to) { chooseLayout(world, to); });
  ifPresent(described, "keyRepeat", [&](const JsonCursor& how) { repeatKeys(world, how); });
  ifPresent(described, "languages",
            [&](const JsonCursor& tags) { desktop.machine().setPreferredLanguages(tags.texts()); });
  ifPresent(described, "takenChords", [&](const JsonCursor& chords) { takeChords(world, chords); });
  ifPresent(described, "limitation", [&](const JsonCursor& sentence) {
    desktop.session().setLimitation(asItStands(sentence.text()));
  });
  ifPresent(described, "files", [&](const JsonCursor& files) { describeFiles(world, files); });
  ifPresent(described, "disk", [&](const JsonCursor& disk) { describeDisk(world, disk); });
  if (const auto applications = described.find("applications")) {
    for (const JsonCursor& application : applications->elements())
      launchDescribed(world, application);
  } else {
    world.launchApplication({"org.example.Notes", "Notes"});
  }
  ifPresent(described, "builtInMicrophone", [&](const JsonCursor& microphone) {
    microphone.allowOnly({"dead", "muted", "firstSoundAfter", "refusesStarts"});
    describeMicrophone(desktop.audioDevices().builtInMicrophone(), microphone);
  });
  ifPresent(described, "microphones", [&](const JsonCursor& microphones) {
    for (const JsonCursor& microphone : microphones.elements()) plugMicrophone(world, microphone);
  });
  ifPresent(described, "voiceProcessing",
            [&](const JsonCursor& reason) { breakVoiceProcessing(world, reason); });
  ifPresent(described, "clipboard",
            [&](const JsonCursor& copied) { copyDescribed(world, copied); });
  ifPresent(described, "service",
            [&](const JsonCursor& answers) { scriptService(world, answers); });
  ifPresent(described, "alerts", [&](const JsonCursor& answers) {
    for (const JsonCursor& answer : answers.elements()) answerAlert(world, answer, play);
  });
  world.launch();
}

}  // namespace quillo::sim
