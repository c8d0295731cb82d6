// What can be seen of the program from outside, and what the user and the world around it do. Each
// kind bears its name in the trace, and tells its fields there in their order: see(name, value).
// docs/scenarios.md lists them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "base/json.h"
#include "insertion/classification/selection_trigger.h"
#include "platform/content.h"
#include "platform/key_event.h"
#include "platform/url_session.h"
#include "simulation/world/clipboard_contents.h"
#include "simulation/world/fault_kind.h"
#include "simulation/world/user_acts.h"

namespace quillo::sim::events {

// --- What the program publishes ---

struct Status {
  static constexpr std::string_view what = "status";
  std::string text;
  void fields(const auto& see) const { see("text", text); }
};

struct Error {
  static constexpr std::string_view what = "error";
  std::optional<std::string> text;
  void fields(const auto& see) const { see("text", text); }
};

enum class Flag { isRecording, isProcessing, canRetryLast, isLoggedIn, isRewriting };
constexpr std::string_view nameOf(Flag flag) {
  constexpr std::string_view names[] = {"isRecording", "isProcessing", "canRetryLast", "isLoggedIn",
                                        "isRewriting"};
  return names[static_cast<std::size_t>(flag)];
}
struct State {
  static constexpr std::string_view what = "state";
  Flag flag = Flag::isRecording;
  bool value = false;
  void fields(const auto& see) const { see(nameOf(flag), value); }
};

struct History {
  static constexpr std::string_view what = "history";
  std::size_t count = 0;
  std::optional<std::string> newest;
  void fields(const auto& see) const {
    see("count", count);
    if (newest) see("newest", *newest);
  }
};

// The shortcuts as the settings have them.
struct Shortcuts {
  static constexpr std::string_view what = "shortcuts";
  std::string activationMode;
  std::string toggleShortcut;
  std::string holdShortcut;
  std::int64_t cycleKeyCode = 0;
  std::uint32_t cycleModifiers = 0;  // as hot keys are registered
  bool rebinds = false;              // the detectors were set up anew
  void fields(const auto& see) const {
    see("activationMode", activationMode);
    see("toggleShortcut", toggleShortcut);
    see("holdShortcut", holdShortcut);
    see("cycleKeyCode", cycleKeyCode);
    see("cycleModifiers", cycleModifiers);
    see("rebinds", rebinds);
  }
};

struct Language {
  static constexpr std::string_view what = "language";
  std::string input;
  void fields(const auto& see) const { see("input", input); }
};

struct Account {
  static constexpr std::string_view what = "account";
  std::string operation;
  std::string_view outcome;
  std::string text;
  void fields(const auto& see) const {
    see("operation", operation);
    see("outcome", outcome);
    see("text", text);
  }
};

// --- What it asks of the service ---

// The parts of the form by name (the file by its own), or the JSON body.
struct Parts {
  const URLRequest* request;
};
struct Request {
  static constexpr std::string_view what = "request";
  int number = 0;
  std::string path;
  const URLRequest* request = nullptr;  // while it is told
  bool isWarmUp() const { return request->method == "OPTIONS"; }
  void fields(const auto& see) const {
    see("number", number);
    see("method", request->method);
    see("path", path);
    see("headers", request->headers);
    see("parts", Parts{request});
  }
};

struct ReplyBody {
  const Bytes* bytes;
};
struct Reply {
  static constexpr std::string_view what = "reply";
  int number = 0;
  std::string path;
  const HTTPResponse* response = nullptr;  // while it is told; null when there is none
  std::optional<int> code{};               // of a failure of the transport
  std::string error{};
  void fields(const auto& see) const {
    see("number", number);
    see("path", path);
    if (code) see("code", *code);
    if (!response) return see("error", error);
    see("status", response->status);
    see("body", ReplyBody{&response->body});
  }
};

// --- What it does on the desktop ---

struct Key {
  static constexpr std::string_view what = "key";
  std::int64_t keyCode = 0;
  KeyDirection direction = KeyDirection::down;
  std::uint64_t flags = 0;
  std::string front;      // the application
  std::string clipboard;  // the plain text there
  bool posted = false;    // or the system refused it
  void fields(const auto& see) const {
    see("keyCode", keyCode);
    see("direction", direction);
    see("flags", flags);
    see("front", front);
    see("clipboard", clipboard);
    see("posted", posted);
  }
};

// By the program, or by another.
struct Clipboard {
  static constexpr std::string_view what = "clipboard";
  std::string by;  // "Quillo", an application, or nothing
  ClipboardContents contents;
  bool done = true;
  bool isByProgram() const { return by == "Quillo"; }
  void fields(const auto& see) const {
    see("by", by);
    see("types", contents.types);
    see("text", contents.text);
    if (!done) see("done", done);
  }
};

struct Activate {
  static constexpr std::string_view what = "activate";
  std::string application;
  bool accepted = false;
  void fields(const auto& see) const {
    see("application", application);
    see("accepted", accepted);
  }
};

struct Alert {
  static constexpr std::string_view what = "alert";
  std::string title;
  std::string text;
  std::vector<std::string> buttons;
  void fields(const auto& see) const {
    see("title", title);
    see("text", text);
    see("buttons", buttons);
  }
};

struct AlertAnswered {
  static constexpr std::string_view what = "alertAnswered";
  std::size_t button = 0;
  void fields(const auto& see) const { see("button", button); }
};

struct Sound {
  static constexpr std::string_view what = "sound";
  std::string name;
  void fields(const auto& see) const { see("name", name); }
};

struct Log {
  static constexpr std::string_view what = "log";
  std::string category;
  std::string message;
  void fields(const auto& see) const {
    see("category", category);
    see("message", message);
  }
};

struct SystemLog {
  static constexpr std::string_view what = "systemLog";
  std::string line;
  void fields(const auto& see) const { see("line", line); }
};

struct StandardOutput {
  static constexpr std::string_view what = "standardOutput";
  std::string line;
  void fields(const auto& see) const { see("line", line); }
};

// --- What it does on the disk ---

struct RecordingOpened {
  static constexpr std::string_view what = "recordingOpened";
  std::string file;
  void fields(const auto& see) const { see("file", file); }
};

struct RecordingClosed {
  static constexpr std::string_view what = "recordingClosed";
  std::string file;
  std::string words;  // that can be heard in it
  void fields(const auto& see) const {
    see("file", file);
    see("words", words);
  }
};

struct FileWritten {
  static constexpr std::string_view what = "fileWritten";
  std::string path;
  std::size_t bytes = 0;
  bool done = false;
  void fields(const auto& see) const {
    see("path", path);
    see("bytes", bytes);
    see("done", done);
  }
};

struct FileMoved {
  static constexpr std::string_view what = "fileMoved";
  std::string path;
  std::string to;
  bool done = false;
  void fields(const auto& see) const {
    see("path", path);
    see("to", to);
    see("done", done);
  }
};

struct FileRemoved {
  static constexpr std::string_view what = "fileRemoved";
  std::string path;
  std::string file;  // the last part of the path
  bool done = false;
  void fields(const auto& see) const {
    see("path", path);
    see("file", file);
    see("done", done);
  }
};

// --- What it does with the text of other applications ---

struct Bubble {
  static constexpr std::string_view what = "bubble";
  bool shown = false;
  void fields(const auto& see) const { see("shown", shown); }
};

struct Captured {
  static constexpr std::string_view what = "captured";
  std::string text;
  std::string app;
  bool viaClipboard = false;
  void fields(const auto& see) const {
    see("text", text);
    see("app", app);
    see("viaClipboard", viaClipboard);
  }
};

// The text of a field that is protected was asked for.
struct ProtectedRead {
  static constexpr std::string_view what = "protectedRead";
  std::string element;
  std::string attribute;
  void fields(const auto& see) const {
    see("element", element);
    see("attribute", attribute);
  }
};

// --- What a look at the desktop shows ---

struct Front {
  static constexpr std::string_view what = "front";
  std::string application;
  bool isProgram() const { return application == "Quillo"; }
  void fields(const auto& see) const { see("application", application); }
};

struct Microphone {
  static constexpr std::string_view what = "microphone";
  int open = 0;
  void fields(const auto& see) const { see("open", open); }
};

struct Editor {
  static constexpr std::string_view what = "editor";
  std::string application;
  std::string text;
  void fields(const auto& see) const {
    see("application", application);
    see("text", text);
  }
};

struct Panels {
  static constexpr std::string_view what = "panels";
  std::vector<std::string> texts;
  void fields(const auto& see) const { see("texts", texts); }
};

struct StatusPanel {
  static constexpr std::string_view what = "statusPanel";
  bool visible = false;
  void fields(const auto& see) const { see("visible", visible); }
};

// --- The user ---

struct UserKey {
  static constexpr std::string_view what = "userKey";
  std::int64_t keyCode = 0;
  KeyDirection direction = KeyDirection::down;
  std::optional<std::string> types;  // alone
  void fields(const auto& see) const {
    see("keyCode", keyCode);
    see("direction", direction);
    if (types) see("types", *types);
  }
};

struct User {
  static constexpr std::string_view what = "user";
  Act act = Act::speaks;
  std::string object{};  // what it is done to, for acts that have that
  ControlValue value{};  // what becomes of it, for acts that have that
  void fields(const auto& see) const {
    const ActRow& row = rowOf(act);
    see("act", row.name);
    if (!row.object.empty()) see(row.object, object);
    if (!row.value.empty()) see(row.value, value);
  }
};

// A selection that the user makes, or asks for help with.
struct UserLooks {
  static constexpr std::string_view what = "user";
  SelectionTrigger trigger = SelectionTrigger::mouse;
  std::string app;  // the identifier of the one in front
  void fields(const auto& see) const {
    see("act", std::string_view("looks"));
    see("trigger", nameOf(trigger));
    see("app", app);
  }
};

// Settings as a scenario has them.
struct UserSets {
  static constexpr std::string_view what = "user";
  Json settings;
  void fields(const auto& see) const {
    see("act", std::string_view("sets"));
    see("settings", settings);
  }
};

// --- Faults, and the phases of explored days ---

struct FaultBegan {
  static constexpr std::string_view what = "fault";
  FaultIdentity fault;
  void fields(const auto& see) const { see("kind", fault.name); }
};

struct FaultHealed {
  static constexpr std::string_view what = "healed";
  FaultIdentity fault;
  void fields(const auto& see) const { see("kind", fault.name); }
};

// The last fault is over.
struct QuietPhase {
  static constexpr std::string_view what = "quietPhase";
  void fields(const auto&) const {}
};

struct AtRest {
  static constexpr std::string_view what = "atRest";
  void fields(const auto&) const {}
};

// The words of the dictation that must work then.
struct Probe {
  static constexpr std::string_view what = "probe";
  std::string words;
  void fields(const auto& see) const { see("words", words); }
};

}  // namespace quillo::sim::events
