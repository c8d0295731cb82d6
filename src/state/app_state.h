// Every setting of the user, and the last known usage.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "api/client_identity.h"
#include "api/records.h"
#include "base/log.h"
#include "base/published.h"
#include "base/task.h"
#include "platform/application.h"
#include "platform/clock.h"
#include "platform/login_item.h"
#include "platform/machine.h"
#include "platform/random.h"
#include "platform/user_defaults.h"
#include "state/cycle_hot_key_preset.h"
#include "state/language_labels.h"
#include "state/list_setting.h"
#include "state/prompt_instruction.h"
#include "state/setting.h"
#include "state/writing_profile.h"

namespace quillo {

// Main thread only. Settings are shared by all accounts on this machine; they outlive a sign-out.
class MacAppState {
 public:
  MacAppState(MainThread& mainThread, UserDefaults& defaults, Clock& clock, Random& random,
              Machine& machine, LoginItem& loginItem, Application& application, Log& log);
  MacAppState(const MacAppState&) = delete;
  MacAppState& operator=(const MacAppState&) = delete;

 private:
  // Before the settings, which are read from them.
  MainThread& mainThread_;
  UserDefaults& defaults_;
  Clock& clock_;
  Random& random_;
  LoginItem& loginItem_;
  Application& application_;
  Log& log_;

 public:
  // --- Usage, in memory only ---

  Published<std::optional<UsageData>> usage;
  Published<bool> isRefreshingUsage;
  Published<std::optional<std::string>> usageError;

  // --- Settings. Each is written as it is assigned. ---

  Setting<std::string> inputLanguage;
  Setting<std::string> outputLanguage = text("outputLanguage", defaultLanguage);
  Setting<std::string> transformMode = text("transformMode", "auto");
  Setting<std::string> tone = text("tone", "neutral");
  Setting<std::string> formatStyle = text("formatStyle", "auto");
  ListSetting<PromptInstruction> promptInstructions{
      defaults_, "mac.promptInstructions",
      loadInstructions(defaults_, "mac.promptInstructions", random_)};
  Setting<bool> autoPaste = boolean("mac.autoPaste", true);
  Setting<std::string> toggleShortcut = text("mac.toggleShortcut", "ctrl_opt_space");
  Setting<std::string> activationMode = text("mac.activationMode", "toggle");  // or "hold"
  Setting<std::string> holdShortcut = text("mac.holdShortcut", "ctrl_opt");
  Setting<bool> escInserts = boolean("mac.escInserts", false);
  Setting<bool> noiseReduction = boolean("mac.noiseReduction", true);
  Setting<bool> discreetMode = boolean("mac.discreetMode", false);
  Published<bool> showPreview{storedOr(defaults_, "showPreview", true)};  // never written back
  Setting<bool> historyEnabled = boolean("mac.historyEnabled", true);
  // 0: for ever
  Setting<std::int64_t> historyRetentionDays = integer("mac.historyRetentionDays", 0);
  Published<bool> launchAtLogin{loginItem_.isEnabled()};  // the system is its store
  Setting<bool> showInDock = boolean("mac.showInDock", true);
  Setting<bool> soundsEnabled = boolean("mac.soundsEnabled", true);
  Setting<std::string> appearance = text("mac.appearance", "system");  // "light", "dark"
  Setting<std::string> microphoneUID = text("mac.microphoneUID", "");  // empty: the default one
  Setting<bool> validateTranslation = boolean("validateTranslation", false);
  Setting<bool> selectionBubbleEnabled = boolean("mac.selectionBubbleEnabled", false);
  Setting<bool> compactSelectionBubble = boolean("mac.compactSelectionBubble", true);
  Setting<bool> fieldBadgeEnabled = boolean("mac.fieldBadgeEnabled", true);
  Setting<bool> sawSelectionBubbleIntro = boolean("mac.sawSelectionBubbleIntro", false);
  ListSetting<std::string> bubbleMutedContexts = texts("mac.bubbleMutedContexts");
  DictionaryList dictionaryReplacements = dictionaries("dictionaryReplacements");  // "from", "to"
  DictionaryList savedLanguagePairs = dictionaries("mac.savedLanguagePairs");  // "input", "output"
  ListSetting<WritingProfile> writingProfiles{
      defaults_, "mac.writingProfiles",
      loadProfiles(defaults_, "mac.writingProfiles", savedLanguagePairs, currentProfile(),
                   random_)};
  Setting<std::int64_t> cycleHotKeyKeyCode =
      integer("mac.cycleHotKeyKeyCode", defaultCycleHotKey.keyCode);
  Setting<std::int64_t> cycleHotKeyModifiers =
      integer("mac.cycleHotKeyModifiers", defaultCycleHotKey.modifiers);
  ListSetting<std::string> dictionaryVocabulary = texts("dictionaryVocabulary");
  DictionaryList dictionaryGlossary = dictionaries("dictionaryGlossary");  // "from", "to", "lang"
  DictionaryList snippets = dictionaries("snippets");                      // "cue", "text"
  Setting<std::string> plan = text("plan", "free");

  // --- Identity and account ---

  // Made at the first call, and stored.
  std::string deviceId();
  // The signed-in user's key, else one made of the device's identity.
  std::string apiKey();
  ClientIdentity identity();
  // Forgets the user, as sign-out does. Settings and writing material stay.
  void clearAccountState();
  // Runs after each clearAccountState().
  [[nodiscard]] Subscription observeAccountCleared(std::function<void()> observer);

  // --- Usage ---

  // Asks the service for the usage of identity().
  using UsageSource = std::function<Task<UsageData>()>;
  void setUsageSource(UsageSource source) { usageSource_ = std::move(source); }
  // Never throws: a failure becomes `usageError`. Lasts at least 0.6 s, so that it can be seen,
  // unless the task is cancelled. Needs a usage source.
  Task<> refreshUsage();

  // --- The program on the desktop ---

  void applyActivationPolicy();
  void applyAppearance();
  // `launchAtLogin` keeps its value when the system refuses.
  void setLaunchAtLogin(bool enabled);

  // One line to the user that goes away by itself.
  using Toast = std::function<void(std::string_view text)>;
  void setToast(Toast toast) { toast_ = std::move(toast); }

  // Binds `action` to the chord by every route there is, in place of an earlier one. False when no
  // route took it.
  using CyclePairBinding =
      std::function<bool(std::int64_t keyCode, std::string character, std::int64_t modifiers,
                         std::function<void()> action)>;
  void setCyclePairBinding(CyclePairBinding bind) { bindCyclePair_ = std::move(bind); }
  // At launch, and by itself whenever the chord changes. Without a binding nothing happens.
  void registerCycleHotKey();

  // --- Writing ---

  bool needsTransform() const;
  std::optional<StylePrompt> stylePrompt(PromptUse use) const;
  std::vector<PromptInstruction> savedPrompts() const;
  void addStyleInstruction();
  void addSavedPrompt();

  // The five settings of writing, without id and name.
  WritingProfile currentProfile() const;
  void saveCurrentProfile(std::string_view name);
  void applyProfile(WritingProfile profile);
  void renameProfile(std::string_view id, std::string name);
  void removeProfile(std::size_t index);
  // The next profile, else the next language pair, else input and output exchanged.
  void cycleLanguagePair();
  void swapLanguages();

  // Each trims its texts, and ignores blank ones.
  void addReplacementRule(std::string_view from, std::string_view to);
  void addVocabularyTerm(std::string_view term);
  void addGlossaryEntry(std::string_view term, std::string_view translation);
  void addSnippet(std::string_view cue, std::string_view text);
  std::vector<GlossaryEntry> glossaryForOutput() const;

 private:
  Setting<std::string> text(const char* key, std::string fallback) {
    return Setting<std::string>::stored(defaults_, key, std::move(fallback));
  }
  Setting<bool> boolean(const char* key, bool fallback) {
    return Setting<bool>::stored(defaults_, key, fallback);
  }
  Setting<std::int64_t> integer(const char* key, std::int64_t fallback) {
    return Setting<std::int64_t>::stored(defaults_, key, fallback);
  }
  ListSetting<std::string> texts(const char* key) {
    return ListSetting<std::string>::stored(defaults_, key);
  }
  DictionaryList dictionaries(const char* key) { return DictionaryList::stored(defaults_, key); }

  void correctStoredSettings();
  void takeUsage(UsageData reply);
  void rememberLanguagePair(const std::string& input, const std::string& output);
  void setLanguages(std::string input, std::string output);
  Task<> cycleInLaterTurn();
  void showToast(std::string_view text) const;

  UsageSource usageSource_;
  Toast toast_;
  CyclePairBinding bindCyclePair_;
  Published<std::monostate> accountCleared_;
  std::vector<Subscription> ownEffects_;
};

}  // namespace quillo
