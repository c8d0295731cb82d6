// What every desktop's key state of the hardware keeps.
#pragma once

#include <gmock/gmock.h>

#include <utility>

#include "contracts/support/keyboard_host.h"

namespace quillo::contracts {

class HIDKeyboardsContract : public PortContract<KeyboardHost> {
 protected:
  using Value = std::tuple<std::uint32_t, std::uint32_t, bool>;  // page, usage, down

  HIDKeyboards::OpenResult open(std::vector<Value>& values) {
    auto opened = host().hidKeyboards().open([&values](const HIDValue& value) {
      values.emplace_back(value.usagePage, value.usage, value.value != 0);
    });
    EXPECT_EQ(opened.result, 0);
    EXPECT_TRUE(opened.manager);
    return opened;
  }
};

TEST_P(HIDKeyboardsContract, KeysAreKnownByTheirUsageAndSideAndDoNotRepeat) {
  std::vector<Value> values;
  std::vector<Value> others;
  auto other = open(others);
  const auto opened = open(values);
  struct Key {
    std::int64_t keyCode;
    std::uint32_t page;
    std::uint32_t usage;
  };
  const Key expected[] = {{keys::control, 7, 224},
                          {keys::shift, 7, 225},
                          {keys::option, 7, 226},
                          {keys::command, 7, 227},
                          {keys::rightControl, 7, 228},
                          {keys::rightShift, 7, 229},
                          {keys::rightOption, 7, 230},
                          {keys::rightCommand, 7, 231},
                          {keys::function, 255, 3},
                          {keys::g, 7, 10},
                          {keys::v, 7, 25},
                          {keys::semicolon, 7, 51}};
  std::vector<Value> wanted;
  for (const Key& key : expected) {
    host().tap({key.keyCode});
    wanted.emplace_back(key.page, key.usage, true);
    wanted.emplace_back(key.page, key.usage, false);
  }
  host().press(keys::space);
  host().runFor(KeyboardHost::longPress);
  host().release(keys::space);
  wanted.emplace_back(7, 44, true);
  wanted.emplace_back(7, 44, false);
  const auto runUntilSeen = [&] {
    return host().runUntil([&] { return values.size() >= wanted.size(); });
  };
  ASSERT_TRUE(runUntilSeen());
  EXPECT_THAT(values, testing::ElementsAreArray(wanted));
  EXPECT_EQ(others, values) << "every manager sees all keys";

  other.manager.reset();
  host().tap({keys::b});
  wanted.resize(wanted.size() + 2);
  ASSERT_TRUE(runUntilSeen());
  EXPECT_EQ(others.size() + 2, values.size());
}

}  // namespace quillo::contracts
