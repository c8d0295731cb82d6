// What the program sees of the text in other applications.
#include "simulation/scenarios/findings.h"
#include "simulation/scenarios/scenario_windows.h"
#include "simulation/scenarios/scenario_world.h"

namespace quillo::sim {
namespace {

// Application → element → what may be offered there when it has the focus, and why.
void fields(Findings& findings, const JsonCursor& cursor) {
  World& world = findings.world;
  for (const auto& [applicationName, elements] : cursor.members()) {
    const Json named = applicationName;
    simulated::SimulatedApplication& application =
        requireApplication(world, JsonCursor(named, elements.path()));
    world.desktop().workspace().focus(application);
    for (const auto& [name, verdict] : elements.members()) {
      const Json elementName = name;
      simulated::TreeElement& element =
          requireElement(application, JsonCursor(elementName, verdict.path()));
      application.tree().focus(&element);
      findings.same(verdict, world.text().verdictOn(element.handle()));
    }
  }
}

// Application → what is selected in the text that has the focus there.
void selected(Findings& findings, const JsonCursor& cursor) {
  for (const auto& [application, text] : cursor.members()) {
    const Json name = application;
    findings.same(
        text,
        requireApplication(findings.world, JsonCursor(name, text.path())).editor().selectedText());
  }
}

// Null for nothing, the text, or some of its fields.
void captured(Findings& findings, const JsonCursor& cursor) {
  const CapturedSelection& captured = findings.world.text().captured();
  if (!cursor.json().is_object())
    return findings.same(cursor, captured.text.empty() ? Json(nullptr) : Json(captured.text));
  findings.members(cursor, {{"text", captured.text},
                            {"app", captured.app.value_or("")},
                            {"viaClipboard", captured.viaClipboard}});
}

void bubbleShown(Findings& findings, const JsonCursor& cursor) {
  findings.same(cursor, findings.world.text().isBubbleShown());
}

// Null, or its corner on the screen from the top left of the primary one.
void badge(Findings& findings, const JsonCursor& cursor) {
  const FieldBadgePanel& badge = findings.world.program().textInPlace().badgePanel();
  const Rect frame = badge.frame();
  const double height = findings.world.desktop().screens().screens().front().frame.size.height;
  findings.same(cursor,
                badge.isVisible() ? Json{frame.minX(), height - frame.maxY()} : Json(nullptr));
}

constexpr Expectation expectations[] = {
    {"fields", fields},           {"selected", selected}, {"captured", captured},
    {"bubbleShown", bubbleShown}, {"badge", badge},
};

}  // namespace

std::span<const Expectation> expectationsOfText() {
  return expectations;
}

}  // namespace quillo::sim
