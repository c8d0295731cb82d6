// What every desktop's event monitors keep.
#pragma once

#include <gmock/gmock.h>

#include "contracts/support/keyboard_host.h"

namespace quillo::contracts {

class EventMonitorsContract : public PortContract<KeyboardHost> {
 protected:
  std::shared_ptr<void> watch(KeyEvent::Type type, std::vector<KeyEvent>& seen) {
    auto monitor = host().eventMonitors().addGlobalMonitor(
        type, [&seen](const KeyEvent& event) { seen.push_back(event); });
    EXPECT_TRUE(monitor);
    return monitor.value_or(nullptr);
  }
  bool runUntilCount(const std::vector<KeyEvent>& seen, std::size_t count) {
    return host().runUntil([&] { return seen.size() >= count; });
  }
};

TEST_P(EventMonitorsContract, GlobalMonitorsSeeKeysWithTheirFlagsAndPlainCharacters) {
  std::vector<KeyEvent> downs;
  std::vector<KeyEvent> ups;
  const auto watchDowns = watch(KeyEvent::Type::keyDown, downs);
  const auto watchUps = watch(KeyEvent::Type::keyUp, ups);
  host().tap({Key::control, Key::g});
  host().tap({Key::option, Key::command, Key::semicolon});
  host().tap({Key::shift, Key::a});
  host().tap({Key::capsLock});
  host().tap({Key::j});
  host().tap({Key::capsLock});
  host().tap({Key::space});
  ASSERT_TRUE(runUntilCount(ups, 5));

  struct Expected {
    std::int64_t keyCode;
    std::uint64_t flags;
    std::string characters;
  };
  const std::vector<Expected> expected = {
      {codeOf(Key::g), event_flags::control, "g"},
      {codeOf(Key::semicolon), event_flags::option | event_flags::command, ";"},
      {codeOf(Key::a), event_flags::shift, "a"},
      {codeOf(Key::j), event_flags::capsLock, "j"},
      {codeOf(Key::space), 0, " "}};
  constexpr std::uint64_t mask = event_flags::chordMask | event_flags::capsLock;
  for (const std::vector<KeyEvent>* events : {&downs, &ups}) {
    ASSERT_EQ(events->size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
      const KeyEvent& event = (*events)[i];
      EXPECT_EQ(event.keyCode, expected[i].keyCode);
      EXPECT_EQ(event.flags & mask, expected[i].flags) << event.keyCode;
      EXPECT_EQ(event.charactersIgnoringModifiers, expected[i].characters);
      EXPECT_EQ(event.userData, 0);
    }
  }
}

TEST_P(EventMonitorsContract, ModifiersAreChangesOfTheFlagsWithTheirOwnKeyCodes) {
  std::vector<KeyEvent> downs;
  std::vector<KeyEvent> changes;
  const auto watchDowns = watch(KeyEvent::Type::keyDown, downs);
  const auto watchChanges = watch(KeyEvent::Type::flagsChanged, changes);
  host().tap({Key::control, Key::option});
  host().tap({Key::rightOption});
  host().tap({Key::function});
  ASSERT_TRUE(runUntilCount(changes, 8));

  using Change = std::pair<std::int64_t, std::uint64_t>;
  std::vector<Change> seen;
  for (const KeyEvent& event : changes) {
    seen.emplace_back(event.keyCode,
                      event.flags & (event_flags::chordMask | event_flags::function));
  }
  EXPECT_THAT(
      seen,
      testing::ElementsAre(
          Change{codeOf(Key::control), event_flags::control},
          Change{codeOf(Key::option), event_flags::control | event_flags::option},
          Change{codeOf(Key::option), event_flags::control}, Change{codeOf(Key::control), 0},
          Change{codeOf(Key::rightOption), event_flags::option},
          Change{codeOf(Key::rightOption), 0}, Change{codeOf(Key::function), event_flags::function},
          Change{codeOf(Key::function), 0}));
  EXPECT_TRUE(downs.empty());
}

TEST_P(EventMonitorsContract, AKeyThatIsHeldIsToldAgain) {
  std::vector<KeyEvent> downs;
  const auto watchDowns = watch(KeyEvent::Type::keyDown, downs);
  host().press(Key::shift);
  host().press(Key::j);
  host().runFor(KeyboardHost::longPress);
  host().release(Key::shift);
  host().release(Key::j);
  ASSERT_TRUE(runUntilCount(downs, 2));
  EXPECT_FALSE(downs.front().isAutorepeat);
  EXPECT_TRUE(downs.back().isAutorepeat);
  EXPECT_EQ(downs.back().keyCode, codeOf(Key::j));
  EXPECT_EQ(downs.back().flags & event_flags::chordMask, event_flags::shift);
}

TEST_P(EventMonitorsContract, KeysToThisProgramGoToLocalMonitorsThatMaySwallowThem) {
  std::vector<KeyEvent> elsewhere;
  std::vector<KeyEvent> here;
  auto global = watch(KeyEvent::Type::keyDown, elsewhere);
  std::shared_ptr<void> local = *host().eventMonitors().addLocalMonitor(
      KeyEvent::Type::keyDown, [&here](const KeyEvent& event) {
        here.push_back(event);
        return event.keyCode == codeOf(Key::g) ? TapVerdict::swallow : TapVerdict::pass;
      });

  host().focusOwnWindow();
  host().tap({Key::control, Key::g});
  host().tap({Key::a});
  ASSERT_TRUE(runUntilCount(here, 2));
  EXPECT_EQ(here[0].keyCode, codeOf(Key::g));
  EXPECT_EQ(here[0].flags & event_flags::chordMask, event_flags::control);
  EXPECT_EQ(here[1].keyCode, codeOf(Key::a));
  ASSERT_TRUE(host().runUntil([&] { return host().ownKeyDowns() >= 1; }));
  EXPECT_EQ(host().ownKeyDowns(), 1) << "the swallowed key arrived";

  host().focusEditor();
  host().tap({Key::b});
  ASSERT_TRUE(runUntilCount(elsewhere, 1));
  EXPECT_EQ(elsewhere[0].keyCode, codeOf(Key::b)) << "a key of this program was seen as another's";
  EXPECT_EQ(here.size(), 2u);

  global.reset();
  local.reset();
  std::vector<KeyEvent> later;
  const auto other = watch(KeyEvent::Type::keyDown, later);
  host().tap({Key::j});
  ASSERT_TRUE(runUntilCount(later, 1));
  EXPECT_EQ(elsewhere.size(), 1u) << "a dropped monitor still sees keys";
}

}  // namespace quillo::contracts
