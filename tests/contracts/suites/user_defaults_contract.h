// What every settings store keeps.
#pragma once

#include <gmock/gmock.h>

#include <limits>

#include "contracts/support/contract_host.h"
#include "platform/user_defaults.h"

namespace quillo::contracts {

class UserDefaultsHost : public ContractHost {
 public:
  virtual UserDefaults& store() = 0;
  // The program ends and starts again: store() is another one, over what was stored.
  virtual void restart() = 0;
};

class UserDefaultsContract : public PortContract<UserDefaultsHost> {
 protected:
  UserDefaults& store() { return host().store(); }
};

TEST_P(UserDefaultsContract, AbsentAndFalseAndZeroAndEmptyAreDifferentThings) {
  EXPECT_FALSE(store().contains("mac.autoPaste"));
  EXPECT_EQ(store().boolean("mac.autoPaste"), std::nullopt);
  store().setText("mac.autoPaste", "the last write stays, of whatever type");
  store().setBoolean("mac.autoPaste", false);
  store().setInteger("mac.historyRetentionDays", 0);
  store().setText("mac.microphoneUID", "");
  store().setTexts("mac.bubbleMutedContexts", {});
  store().setData("mac.writingProfiles", "");
  for (int run = 0; run < 2; ++run, host().restart()) {
    EXPECT_EQ(store().boolean("mac.autoPaste"), false);
    EXPECT_EQ(store().integer("mac.historyRetentionDays"), 0);
    EXPECT_EQ(store().text("mac.microphoneUID"), "");
    EXPECT_EQ(store().texts("mac.bubbleMutedContexts"), std::vector<std::string>{});
    EXPECT_EQ(store().data("mac.writingProfiles"), Bytes());
    EXPECT_TRUE(store().contains("mac.microphoneUID"));
  }
  store().remove("mac.microphoneUID");
  store().remove("was never there");
  for (int run = 0; run < 2; ++run, host().restart()) {
    EXPECT_FALSE(store().contains("mac.microphoneUID"));
    EXPECT_EQ(store().text("mac.microphoneUID"), std::nullopt);
  }
}

TEST_P(UserDefaultsContract, ValuesOfEveryTypeComeBackAfterARestart) {
  const std::vector<TextDictionary> rules = {{{"from", "gpt"}, {"to", "GPT"}}, {}};
  Bytes everyByte;
  for (int i = 0; i < 256; ++i) everyByte += static_cast<char>(i);
  store().setText("text", "Grüße 👩‍👩‍👧\n\"quoted\" \\ and a tab\t");
  store().setInteger("largest", std::numeric_limits<std::int64_t>::max());
  store().setInteger("smallest", std::numeric_limits<std::int64_t>::min());
  store().setNumber("third", 1.0 / 3);
  store().setNumber("expiry", 1'772'615'702.25);
  store().setData("data", everyByte);
  store().setTexts("texts", {"b", "", "a"});
  store().setDictionaries("dictionaries", rules);
  for (int run = 0; run < 2; ++run, host().restart()) {
    EXPECT_EQ(store().text("text"), "Grüße 👩‍👩‍👧\n\"quoted\" \\ and a tab\t");
    EXPECT_EQ(store().integer("largest"), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(store().integer("smallest"), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(store().number("third"), 1.0 / 3);
    EXPECT_EQ(store().number("expiry"), 1'772'615'702.25);
    EXPECT_EQ(store().data("data"), everyByte);
    EXPECT_THAT(store().texts("texts"), testing::Optional(testing::ElementsAre("b", "", "a")));
    EXPECT_EQ(store().dictionaries("dictionaries"), rules);
  }
}

TEST_P(UserDefaultsContract, AnotherTypeThanTheStoredOneReadsAsNothing) {
  store().setText("text", "1");
  store().setBoolean("boolean", true);
  store().setInteger("integer", 1);
  store().setNumber("number", 1.0);
  store().setData("data", "1");
  store().setTexts("texts", {"1"});
  store().setDictionaries("dictionaries", {{{"$data", "MQ=="}}});
  for (int run = 0; run < 2; ++run, host().restart()) {
    for (const std::string key :
         {"text", "boolean", "integer", "number", "data", "texts", "dictionaries"}) {
      EXPECT_EQ(store().text(key).has_value(), key == "text") << key;
      EXPECT_EQ(store().boolean(key).has_value(), key == "boolean") << key;
      EXPECT_EQ(store().integer(key).has_value(), key == "integer") << key;
      EXPECT_EQ(store().number(key).has_value(), key == "number" || key == "integer") << key;
      EXPECT_EQ(store().data(key).has_value(), key == "data") << key;
      EXPECT_EQ(store().texts(key).has_value(), key == "texts") << key;
      EXPECT_EQ(store().dictionaries(key).has_value(), key == "dictionaries") << key;
    }
    EXPECT_EQ(store().number("integer"), 1.0) << "an integer is a number as well";
    EXPECT_EQ(store().number("number"), 1.0);
  }
}

}  // namespace quillo::contracts
