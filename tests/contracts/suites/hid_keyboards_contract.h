// What every desktop's key state of the hardware keeps.
#pragma once

#include <gmock/gmock.h>

#include <utility>

#include "contracts/support/keyboard_host.h"

namespace quillo::contracts {

class HIDKeyboardsContract : public PortContract<KeyboardHost> {
 protected:
  using Value = std::tuple<std::uint32_t, std::uint32_t, bool>;  // page, usage, down

  std::unique_ptr<HIDKeyboards::Manager> open(std::vector<Value>& values) {
    auto opened = host().hidKeyboards().open([&values](const HIDValue& value) {
      values.emplace_back(value.usagePage, value.usage, value.value != 0);
    });
    EXPECT_TRUE(opened);
    return std::move(opened).value_or(nullptr);
  }
};

TEST_P(HIDKeyboardsContract, KeysAreKnownByTheirUsageAndSideAndDoNotRepeat) {
  std::vector<Value> values;
  std::vector<Value> others;
  auto other = open(others);
  const auto opened = open(values);
  struct Expected {
    Key key;
    std::uint32_t page;
    std::uint32_t usage;
  };
  const Expected expected[] = {{Key::control, 7, 224},
                               {Key::shift, 7, 225},
                               {Key::option, 7, 226},
                               {Key::command, 7, 227},
                               {Key::rightControl, 7, 228},
                               {Key::rightShift, 7, 229},
                               {Key::rightOption, 7, 230},
                               {Key::rightCommand, 7, 231},
                               {Key::function, 255, 3},
                               {Key::g, 7, 10},
                               {Key::v, 7, 25},
                               {Key::semicolon, 7, 51}};
  std::vector<Value> wanted;
  for (const auto& [key, page, usage] : expected) {
    host().tap({key});
    wanted.emplace_back(page, usage, true);
    wanted.emplace_back(page, usage, false);
  }
  host().press(Key::space);
  host().runFor(KeyboardHost::longPress);
  host().release(Key::space);
  wanted.emplace_back(7, 44, true);
  wanted.emplace_back(7, 44, false);
  const auto runUntilSeen = [&] {
    return host().runUntil([&] { return values.size() >= wanted.size(); });
  };
  ASSERT_TRUE(runUntilSeen());
  EXPECT_THAT(values, testing::ElementsAreArray(wanted));
  EXPECT_EQ(others, values) << "every manager sees all keys";

  other.reset();
  host().tap({Key::b});
  wanted.resize(wanted.size() + 2);
  ASSERT_TRUE(runUntilSeen());
  EXPECT_EQ(others.size() + 2, values.size());
}

}  // namespace quillo::contracts
