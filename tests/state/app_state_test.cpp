#include "state/app_state.h"

#include "api/api_error.h"
#include "base/iso8601.h"
#include "state/key_labels.h"
#include "state/plan_label.h"
#include "state_fixture.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;

using AppStateTest = StateTest;

// --- Launch ---

TEST_F(AppStateTest, TheSpokenLanguageFollowsTheSystemUntilItIsChosen) {
  const std::vector<std::pair<std::string, std::string>> expected = {{"pt-PT", "pt-BR"},
                                                                     {"zh-Hant-TW", "zh-CN"},
                                                                     {"ur-PK", "en-US"},
                                                                     {"fr-CA", "fr"},
                                                                     {"EN-gb", "en-US"}};
  for (const auto& [system, language] : expected) {
    desktop_.machine().setPreferredLanguages({system, "it-IT"});
    EXPECT_EQ(launch().inputLanguage.get(), language) << system;
  }
  desktop_.machine().setPreferredLanguages({});
  EXPECT_EQ(launch().inputLanguage.get(), "en-US");
  EXPECT_THAT(stored().keys(), ElementsAre("transformMode"));  // nothing else is written
  state_->inputLanguage = "ja";
  EXPECT_EQ(launch().inputLanguage.get(), "ja");
}

TEST_F(AppStateTest, WhatOlderVersionsAndTheSystemLeftIsCorrectedInTheStore) {
  stored().setText("transformMode", "polish");
  stored().setText("mac.microphoneUID", "x-CADefaultDeviceAggregate-4711-0");
  stored().setInteger("mac.cycleHotKeyKeyCode", 5);
  stored().setInteger("mac.cycleHotKeyModifiers", 2048);
  EXPECT_EQ(launch().transformMode.get(), "improve");
  EXPECT_EQ(stored().text("transformMode"), "improve");
  EXPECT_EQ(stored().text("mac.microphoneUID"), "");
  EXPECT_EQ(stored().integer("mac.cycleHotKeyModifiers"), 4096);

  stored().setText("transformMode", "shakespeare");
  stored().setInteger("mac.cycleHotKeyKeyCode", 38);
  EXPECT_EQ(launch().transformMode.get(), "auto");
  EXPECT_EQ(state_->cycleHotKeyKeyCode.get(), 38);
}

// --- Write-through ---

using StoredValue =
    std::tuple<std::optional<std::string>, std::optional<bool>, std::optional<std::int64_t>,
               std::optional<Bytes>, std::optional<std::vector<std::string>>,
               std::optional<std::vector<TextDictionary>>>;

StoredValue valueIn(const UserDefaults& store, const char* key) {
  return {store.text(key), store.boolean(key), store.integer(key),
          store.data(key), store.texts(key),   store.dictionaries(key)};
}

// Another value of the same type.
void change(UserDefaults& store, const char* key) {
  if (const auto text = store.text(key)) store.setText(key, "other " + *text);
  if (const auto boolean = store.boolean(key)) store.setBoolean(key, !*boolean);
  if (const auto integer = store.integer(key)) store.setInteger(key, *integer + 1);
}

TEST_F(AppStateTest, EverySettingIsFoundByItsKeyTakesAValueAndKeepsIt) {
  MacAppState& first = launch();
  first.addStyleInstruction();
  first.promptInstructions.edit(0, [](PromptInstruction& style) { style.text = "Be brief. ✂︎"; });
  first.saveCurrentProfile("Home");
  first.addVocabularyTerm("Quillo");
  first.addReplacementRule("quilo", "Quillo");
  first.addGlossaryEntry("invoice", "Rechnung");
  first.addSnippet("sig", "Best regards");
  simulated::MemoryUserDefaults chosen;
  for (const StoredSetting* each : first.settings()) {
    each->writeTo(chosen);
    change(chosen, each->key());
  }
  chosen.setText("transformMode", "improve");  // of these only some last
  chosen.setInteger("mac.cycleHotKeyKeyCode", 38);
  chosen.setInteger("mac.cycleHotKeyModifiers", 4096);
  stored() = {};
  for (const StoredSetting* each : launch().settings())
    EXPECT_TRUE(state_->setting(each->key())->takeFrom(chosen)) << each->key();

  simulated::MemoryUserDefaults kept;
  for (StoredSetting* each : launch().settings()) {
    each->writeTo(kept);
    EXPECT_EQ(valueIn(kept, each->key()), valueIn(chosen, each->key())) << each->key();
    kept.setForeignValue(each->key());
    EXPECT_FALSE(each->takeFrom(kept)) << each->key();
  }
  EXPECT_EQ(kept.keys().size(), state_->settings().size());  // each has a key of its own
  EXPECT_EQ(state_->setting("mac.nonsense"), nullptr);
}

TEST_F(AppStateTest, WhatIsAssignedIsStoredBeforeItIsPublished) {
  MacAppState& first = launch();
  first.transformMode = "polish";  // as given: only a launch corrects it
  std::string seen;                // by an observer, who finds the value stored already
  const Subscription watching = first.tone.observe(
      [&](const std::string& tone) { seen = tone + "/" + *stored().text("tone"); });
  first.tone = "friendly";
  EXPECT_EQ(seen, "friendly/friendly");
  first.showPreview = false;

  MacAppState& second = launch();
  EXPECT_EQ(second.transformMode.get(), "improve");
  EXPECT_TRUE(second.showPreview);  // this one is only ever read
}

// --- Identity ---

TEST_F(AppStateTest, TheDeviceIsNamedOnceAndKeepsItsName) {
  desktop_.clock().set(*dateFromIso8601("2026-03-04T09:15:02Z"));  // tbdb12 in base 36
  const std::string made = launch().deviceId();
  EXPECT_THAT(made, MatchesRegex("qd_tbdb12_[a-z0-9]{11}"));
  EXPECT_EQ(launch().deviceId(), made);

  stored().setText("mac.deviceId", "qm_abc_qm_def");
  EXPECT_EQ(state_->deviceId(), "qd_abc_qm_def");
  EXPECT_EQ(stored().text("mac.deviceId"), "qd_abc_qm_def");
}

TEST_F(AppStateTest, AGuestsKeyIsMadeOfTheDeviceAndNeverStored) {
  MacAppState& state = launch();
  EXPECT_EQ(state.apiKey(), "mx_" + state.deviceId());
  EXPECT_FALSE(stored().contains("mac.apiKey"));

  stored().setText("mac.apiKey", "token");
  stored().setText("mac.userId", "u1");
  state.plan = "pro";
  state.usage = UsageData{};
  state.tone = "friendly";
  EXPECT_EQ(state.identity().apiKey, "token");
  int cleared = 0;
  const Subscription watching = state.observeAccountCleared([&] { ++cleared; });
  state.clearAccountState();
  EXPECT_EQ(state.apiKey(), "mx_" + state.deviceId());
  EXPECT_FALSE(stored().contains("mac.userId"));
  EXPECT_EQ(stored().text("plan"), "free");
  EXPECT_FALSE(state.usage.get());
  EXPECT_EQ(state.tone.get(), "friendly");
  EXPECT_EQ(cleared, 1);
}

// --- Usage ---

class UsageTest : public StateTest {
 protected:
  // A service that answers after `delay` with a reply, or with nothing but an error.
  void answerAfter(Duration delay, std::optional<UsageData> reply) {
    state_->setUsageSource([this, delay, reply] { return answer(delay, reply); });
  }
  Task<UsageData> answer(Duration delay, std::optional<UsageData> reply) {
    co_await sleepFor(delay);
    if (!reply) throw APIError::serverError(503, R"({"message":"We are moving house."})");
    co_return *reply;
  }
  static UsageData usageOf(std::string plan, std::int64_t maximumSeconds) {
    UsageData usage{.plan = std::move(plan)};
    usage.limits.maxRecordingSeconds = maximumSeconds;
    return usage;
  }
  // How long the refresh can be seen.
  Duration refresh() {
    const MonotonicTime began = desktop_.now();
    const auto running = start(desktop_.mainThread(), state_->refreshUsage());
    desktop_.runFor(1ms);
    EXPECT_TRUE(state_->isRefreshingUsage);
    EXPECT_TRUE(desktop_.runUntil([&] { return !state_->isRefreshingUsage; }));
    return desktop_.now() - began;
  }
};

TEST_F(UsageTest, AReplyIsKeptThroughFailuresAndItsPlanThroughTheRun) {
  launch();
  answerAfter(2s, usageOf("premium", 0));
  EXPECT_EQ(refresh(), 2s);  // long enough to be seen by itself
  answerAfter(100ms, usageOf("pro", 1800));
  EXPECT_EQ(refresh(), 600ms);
  answerAfter(100ms, usageOf("pro", 0));
  EXPECT_EQ(refresh(), 600ms);
  EXPECT_EQ(stored().integer("plan.maxRecordingSeconds"), 1800);
  answerAfter(100ms, std::nullopt);
  EXPECT_EQ(refresh(), 600ms);
  EXPECT_EQ(state_->usage.get()->plan, "pro");
  EXPECT_EQ(state_->usageError.get(), "Usage could not be refreshed.");
  EXPECT_THAT(desktop_.log().lines(), ElementsAre("[usage] refresh failed: We are moving house."));

  EXPECT_EQ(launch().plan.get(), "pro");

  stored().setText("mac.userId", "u1");
  answerAfter(500ms, usageOf("pro", 0));
  desktop_.after(300ms, [this] { state_->clearAccountState(); });
  refresh();
  EXPECT_EQ(state_->plan.get(), "free");
  EXPECT_FALSE(state_->usage.get());
}

// --- The program on the desktop ---

TEST_F(AppStateTest, DockAndAppearanceFollowTheirSettingsAtOnce) {
  MacAppState& state = launch();
  state.showInDock = false;
  state.showInDock = true;
  EXPECT_EQ(desktop_.application().activations(), 1);
  for (const auto& [setting, shown] : {std::pair("dark", Appearance::dark),
                                       {"light", Appearance::light},
                                       {"sepia", Appearance::system}}) {
    state.appearance = setting;
    EXPECT_EQ(desktop_.application().appearance(), shown);
  }
}

TEST_F(AppStateTest, LaunchAtLoginIsTheSystemsToKeep) {
  launch().setLaunchAtLogin(true);
  EXPECT_TRUE(launch().launchAtLogin);
  desktop_.loginItem().refuse("Operation not permitted");
  state_->setLaunchAtLogin(true);  // is so already: nothing is asked of the system
  state_->launchAtLogin = false;
  state_->setLaunchAtLogin(false);
  EXPECT_FALSE(state_->launchAtLogin);
  EXPECT_THAT(desktop_.log().lines(),
              ElementsAre("[settings] launch-at-login change failed: Operation not permitted"));
}

TEST(Labels, KeysPlansAndLanguagesAsTheUserReadsThem) {
  EXPECT_EQ(keyLabel(126), "↑");
  EXPECT_EQ(keyLabel(10), "Key 10");
  EXPECT_EQ(hotKeyLabel(49, 0x1B00), "⌃⌥⇧⌘Space");
  EXPECT_EQ(planLabel("team gold"), "Team Gold");
  EXPECT_EQ(planLabel(""), "Free");
  EXPECT_EQ(languageLabel("de-AT"), "German");
  EXPECT_EQ(languageLabel("klingonish"), "klingonish");
}

}  // namespace
}  // namespace quillo
