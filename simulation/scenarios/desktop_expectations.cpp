// What can be seen on the desktop, and lies on its disk.
#include <algorithm>

#include "audio/audio_input_device.h"
#include "base/text.h"
#include "shell/status/dictation_hud_view.h"
#include "simulation/scenarios/findings.h"
#include "simulation/scenarios/scenario_world.h"

namespace quillo::sim {
namespace {

using simulated::VirtualPanel;

// --- Applications and clipboard ---

void editor(Findings& findings, const JsonCursor& cursor) {
  for (const auto& [name, text] : cursor.members()) {
    simulated::SimulatedApplication* application = nullptr;
    for (simulated::SimulatedApplication* each : findings.world.applications())
      if (each->identity().localizedName == name) application = each;
    if (!application) text.refuse("there is no application \"" + name + "\"");
    findings.same(text, application->editor().text());
  }
}

void clipboard(Findings& findings, const JsonCursor& cursor) {
  const ClipboardContents found = contentsOf(findings.world.desktop().pasteboard().offered());
  const Json text = found.text ? Json(*found.text) : Json(nullptr);
  if (!cursor.json().is_object() || isPattern(cursor)) return findings.same(cursor, text);
  findings.members(cursor, {{"types", found.types}, {"text", text}});
}

void front(Findings& findings, const JsonCursor& cursor) {
  findings.same(cursor, findings.world.frontName());
}

// --- Panels ---

Json buttonsOf(const VirtualPanel& panel) {
  Json names = Json::array();
  for (const Control& control : panel.content().controls())
    if (!control.name.empty() && control.isEnabled) names.push_back(control.name.english());
  return names;
}

Json describePanel(const VirtualPanel& panel) {
  Json described = {{"texts", english(panel.content().texts())},
                    {"buttons", buttonsOf(panel)},
                    {"takesClicks", panel.takesClicks()},
                    {"icon", nullptr},
                    {"color", nullptr},
                    {"meter", false}};
  if (const auto* hud = dynamic_cast<const MacDictationHUDView*>(&panel.content())) {
    constexpr const char* colors[] = {"red", "orange", "accent"};
    described["icon"] = hud->content().symbol;
    described["color"] = colors[static_cast<std::size_t>(hud->content().color)];
    described["meter"] = hud->content().showsMeter;
  }
  return described;
}

// The one that shows a text, or else the front most.
const VirtualPanel* chosenPanel(Findings& findings, const JsonCursor& cursor) {
  const simulated::VirtualPanels& panels = findings.world.desktop().panels();
  if (const auto text = cursor.find("shows")) return panels.showing(text->text());
  return panels.visible().empty() ? nullptr : panels.visible().front();
}

// Texts, each of which some panel shows, or an object that tells of one panel.
void panel(Findings& findings, const JsonCursor& cursor) {
  if (cursor.json().is_array()) {
    for (const JsonCursor& text : cursor.elements())
      if (!findings.world.desktop().panels().showing(text.text()))
        findings.differ(text, "a panel with " + encodeJson(text.json()), "none");
    return;
  }
  cursor.allowOnly(
      {"shows", "texts", "without", "buttons", "takesClicks", "icon", "color", "meter"});
  const VirtualPanel* shown = chosenPanel(findings, cursor);
  if (!shown) return findings.differ(cursor, encodeJson(cursor.json()), "no such panel");
  const Json found = describePanel(*shown);
  for (const auto& [key, value] : cursor.members())
    if (key != "shows" && key != "without") findings.same(value, found.at(key));
  if (const auto without = cursor.find("without")) {
    for (const JsonCursor& text : without->elements())
      if (shown->shows(text.text())) findings.differ(text, "a panel without it", "it");
  }
}

void noPanel(Findings& findings, const JsonCursor& cursor) {
  findings.same(cursor, findings.world.desktop().panels().visible().empty());
}

// Everything that the user can press in panels, front most first.
void buttons(Findings& findings, const JsonCursor& cursor) {
  Json names = Json::array();
  for (const VirtualPanel* each : findings.world.desktop().panels().visible()) {
    if (!each->takesClicks()) continue;
    for (const Json& name : buttonsOf(*each)) names.push_back(name);
  }
  findings.same(cursor, names);
}

// The question that waits for its answer; null when there is none.
void question(Findings& findings, const JsonCursor& cursor) {
  const simulated::ScriptedAlerts& alerts = findings.world.desktop().alerts();
  if (alerts.open() == 0) return findings.part(cursor, nullptr);
  const Alerts::Alert& asked = alerts.shown().back();
  findings.part(cursor, {{"title", asked.messageText.english()},
                         {"text", asked.informativeText.english()},
                         {"buttons", english(asked.buttons)}});
}

// --- Menu and Dock ---

// A title with true (it can be chosen), false (it is there) or null (it is not there).
void menu(Findings& findings, const JsonCursor& cursor) {
  for (const auto& [title, state] : cursor.members()) {
    const MenuItem* item = findings.world.desktop().statusItem().item(title);
    findings.same(state, item ? Json(item->isEnabled) : Json(nullptr));
  }
}

// The titles from top to bottom, "-" for a separator.
void menuTitles(Findings& findings, const JsonCursor& cursor) {
  Json titles = Json::array();
  for (const MenuItem& item : findings.world.desktop().statusItem().menu())
    titles.push_back(item.isSeparator() ? "-" : item.title.english());
  findings.same(cursor, titles);
}

void menuIcon(Findings& findings, const JsonCursor& cursor) {
  findings.same(cursor, findings.world.desktop().statusItem().icon());
}

void dockIcon(Findings& findings, const JsonCursor& cursor) {
  findings.same(cursor, findings.world.desktop().application().activationPolicy() ==
                            ActivationPolicy::regular);
}

void windowsShown(Findings& findings, const JsonCursor& cursor) {
  findings.same(cursor, findings.world.desktop().windows().visible().size());
}

void window(Findings& findings, const JsonCursor& cursor) {
  for (const JsonCursor& text : cursor.elements())
    if (!findings.world.desktop().windows().showing(text.text()))
      findings.differ(text, "a window with " + encodeJson(text.json()), "none");
}

// --- Sound ---

void microphoneOpen(Findings& findings, const JsonCursor& cursor) {
  findings.same(cursor, findings.world.desktop().audioSystem().runningEngines() > 0);
}

// What the user can choose from, by name.
void microphones(Findings& findings, const JsonCursor& cursor) {
  Json names = Json::array();
  for (const auto& each :
       MacAudioInputDevice::availableDevices(findings.world.desktop().audioDevices()))
    names.push_back(each.name);
  findings.same(cursor, names);
}

// What records now.
void recordsFrom(Findings& findings, const JsonCursor& cursor) {
  const auto open = findings.world.desktop().audioSystem().openInputs();
  if (open.empty()) return findings.same(cursor, nullptr);
  const auto& input = open.front();
  findings.part(cursor, {{"microphone", input.microphone->description().name.value_or("")},
                         {"voiceProcessing", input.isVoiceProcessed}});
}

// --- Disk ---

void recordings(Findings& findings, const JsonCursor& cursor) {
  const auto files = findings.world.desktop().files().allFiles();
  findings.same(cursor, std::ranges::count_if(files, [](const FilePath& path) {
                  return path.extension() == ".m4a";
                }));
}

// A path with true or false (whether it is there), or with its contents.
void files(Findings& findings, const JsonCursor& cursor) {
  for (const auto& [path, expected] : cursor.members()) {
    const auto found =
        findings.world.desktop().files().read(requirePath(findings.world, expected, path));
    if (expected.json().is_boolean()) {
      findings.same(expected, found.has_value());
    } else {
      findings.same(expected, found ? parseJson(*found).value_or(Json(*found)) : Json(nullptr));
    }
  }
}

void diagnosticsFile(Findings& findings, const JsonCursor& cursor) {
  const auto contents =
      findings.world.desktop().files().read(findings.world.diagnosticsLog().file());
  findings.linesOf(cursor, split(contents.value_or(""), '\n'));
}

// The files that the user was shown, in order.
void openedFiles(Findings& findings, const JsonCursor& cursor) {
  const auto& found = findings.world.desktop().opener().files();
  const std::vector<JsonCursor> expected = cursor.elements();
  Json names = Json::array();
  for (const FilePath& path : found) names.push_back(path.string());
  const auto isExpected = [&](const JsonCursor& each, const FilePath& path) {
    return requirePath(findings.world, each, each.text()) == path;
  };
  if (!std::ranges::equal(expected, found, isExpected)) findings.differ(cursor, names);
}

constexpr Expectation expectations[] = {
    {"editor", editor},
    {"clipboard", clipboard},
    {"front", front},
    {"panel", panel},
    {"noPanel", noPanel},
    {"buttons", buttons},
    {"question", question},
    {"menu", menu},
    {"menuTitles", menuTitles},
    {"menuIcon", menuIcon},
    {"dockIcon", dockIcon},
    {"windowsShown", windowsShown},
    {"window", window},
    {"microphoneOpen", microphoneOpen},
    {"microphones", microphones},
    {"recordsFrom", recordsFrom},
    {"recordings", recordings},
    {"files", files},
    {"diagnosticsFile", diagnosticsFile},
    {"openedFiles", openedFiles},
};

}  // namespace

std::span<const Expectation> expectationsOfDesktop() {
  return expectations;
}

}  // namespace quillo::sim
