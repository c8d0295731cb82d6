// What the program sees of the text in other applications.
#include "simulation/scenarios/findings.h"
#include "simulation/scenarios/scenario_windows.h"
#include "simulation/scenarios/scenario_world.h"

namespace quillo::sim {
namespace {

// Application → element → what may be offered there when it has the focus, and why.
void fields(Findings& findings, const Place& place) {
  World& world = findings.world;
  for (const auto& [application, elements] : place.members()) {
    const Json applicationName = application;
    simulated::Program& program =
        requireApplication(world, Place(applicationName, elements.path()));
    world.desktop().workspace().focus(program);
    for (const auto& [name, verdict] : elements.members()) {
      const Json elementName = name;
      simulated::TreeElement& element = requireElement(program, Place(elementName, verdict.path()));
      program.tree().focus(&element);
      findings.same(verdict, world.textInPlace().verdictOn(element.handle()));
    }
  }
}

// Application → what is selected in the text that has the focus there.
void selected(Findings& findings, const Place& place) {
  for (const auto& [application, text] : place.members()) {
    const Json name = application;
    findings.same(
        text, requireApplication(findings.world, Place(name, text.path())).editor().selectedText());
  }
}

// Null for nothing, the text, or some of its fields.
void captured(Findings& findings, const Place& place) {
  const CapturedSelection& captured = findings.world.textInPlace().bubble().captured();
  if (!place.json().is_object())
    return findings.same(place, captured.text.empty() ? Json(nullptr) : Json(captured.text));
  findings.members(place, {{"text", captured.text},
                           {"app", captured.app.value_or("")},
                           {"viaClipboard", captured.viaClipboard}});
}

void bubbleShown(Findings& findings, const Place& place) {
  findings.same(place, findings.world.textInPlace().isShown());
}

constexpr Expectation expectations[] = {
    {"fields", fields},
    {"selected", selected},
    {"captured", captured},
    {"bubbleShown", bubbleShown},
};

}  // namespace

std::span<const Expectation> expectationsOfText() {
  return expectations;
}

}  // namespace quillo::sim
