#include "state/app_state.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/text.h"
#include "state/device_identity.h"
#include "state/glossary.h"
#include "state/key_labels.h"
#include "state/writing_material.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;

constexpr Duration shortestVisibleRefresh = 600ms;

constexpr const char* apiKeyKey = "mac.apiKey";
constexpr const char* userIdKey = "mac.userId";
constexpr const char* maximumRecordingKey = "plan.maxRecordingSeconds";

// Devices that the system makes for itself. They come and go, and are nobody's choice.
constexpr auto systemAggregateDevices =
    std::to_array<std::string_view>({"CADefaultDeviceAggregate", "VPAUAggregateAudioDevice"});

bool isSystemAggregateDevice(std::string_view uid) {
  return std::ranges::any_of(systemAggregateDevices, [&](std::string_view name) {
    return uid.find(name) != std::string_view::npos;
  });
}

bool isPair(const TextDictionary& pair, std::string_view input, std::string_view output) {
  return pair.contains("input") && pair.contains("output") &&
         textEquals(textUnder(pair, "input"), input) &&
         textEquals(textUnder(pair, "output"), output);
}

bool hasLanguages(const WritingProfile& profile, std::string_view input, std::string_view output) {
  return textEquals(profile.inputLanguage, input) && textEquals(profile.outputLanguage, output);
}

// Behind the current one, round to the first; the first when none is current.
std::size_t nextInCycle(std::optional<std::size_t> current, std::size_t count) {
  return current ? (*current + 1) % count : 0;
}

std::string spokenLanguage(const std::string& language) {
  return language == automaticLanguage ? defaultLanguage : language;
}

}  // namespace

// --- Launch ---

MacAppState::MacAppState(MainThread& mainThread, UserDefaults& defaults, Clock& clock,
                         Random& random, Machine& machine, LoginItem& loginItem,
                         Application& application, Log& log)
    : mainThread_(mainThread),
      defaults_(defaults),
      clock_(clock),
      random_(random),
      loginItem_(loginItem),
      application_(application),
      log_(log),
      inputLanguage(text("inputLanguage", initialInputLanguage(machine.preferredLanguages()))) {
  correctStoredSettings();

  const auto registerAgain = [this](std::int64_t) { registerCycleHotKey(); };
  ownEffects_.push_back(showInDock.observe([this](bool) { applyActivationPolicy(); }));
  ownEffects_.push_back(appearance.observe([this](const auto&) { applyAppearance(); }));
  ownEffects_.push_back(cycleHotKeyKeyCode.observe(registerAgain));
  ownEffects_.push_back(cycleHotKeyModifiers.observe(registerAgain));
}

// Values that older versions or the system left behind.
void MacAppState::correctStoredSettings() {
  transformMode = normalizedMode(transformMode);
  if (isSystemAggregateDevice(microphoneUID.get())) microphoneUID = "";
  if (!isCycleHotKeyPreset(cycleHotKeyKeyCode, cycleHotKeyModifiers)) {
    cycleHotKeyKeyCode = defaultCycleHotKey.keyCode;
    cycleHotKeyModifiers = defaultCycleHotKey.modifiers;
  }
}

// --- Identity and account ---

std::string MacAppState::deviceId() {
  return deviceIdentity(defaults_, clock_, random_);
}

std::string MacAppState::apiKey() {
  const std::string stored = defaults_.text(apiKeyKey).value_or("");
  return stored.empty() ? "mx_" + deviceId() : stored;
}

ClientIdentity MacAppState::identity() {
  return {.apiKey = apiKey(), .deviceId = deviceId()};
}

void MacAppState::clearAccountState() {
  defaults_.remove(userIdKey);
  defaults_.remove(apiKeyKey);
  plan = "free";
  usage = std::nullopt;
  accountCleared_ = std::monostate();
}

Subscription MacAppState::observeAccountCleared(std::function<void()> observer) {
  return accountCleared_.observe([observer = std::move(observer)](std::monostate) { observer(); });
}

// --- Usage ---

Task<> MacAppState::refreshUsage() {
  isRefreshingUsage = true;
  usageError = std::nullopt;
  const MonotonicTime began = mainThread_.now();
  const std::optional<std::string> user = defaults_.text(userIdKey);
  try {
    UsageData reply = co_await usageSource_();
    // After a sign-out, or for another user, it tells of somebody else's plan.
    if (defaults_.text(userIdKey) == user) takeUsage(std::move(reply));
  } catch (...) {
    log_.log("usage", "refresh failed: " + describe(std::current_exception()));
    usageError = "Usage could not be refreshed.";
  }
  const Duration taken = mainThread_.now() - began;
  // Cancelled or not, the refresh is over when the wait is.
  if (taken < shortestVisibleRefresh) co_await sleepFor(shortestVisibleRefresh - taken);
  isRefreshingUsage = false;
}

void MacAppState::takeUsage(UsageData reply) {
  plan = reply.plan;
  const std::int64_t seconds = reply.limits.maxRecordingSeconds.value_or(0);
  if (seconds >= 1) defaults_.setInteger(maximumRecordingKey, seconds);
  usage = std::move(reply);
}

// --- The program on the desktop ---

void MacAppState::applyActivationPolicy() {
  application_.setActivationPolicy(showInDock ? ActivationPolicy::regular
                                              : ActivationPolicy::accessory);
  if (showInDock) application_.activateIgnoringOtherApps();
}

void MacAppState::applyAppearance() {
  if (appearance.get() == "light") return application_.setAppearance(Appearance::light);
  if (appearance.get() == "dark") return application_.setAppearance(Appearance::dark);
  application_.setAppearance(Appearance::system);
}

void MacAppState::setLaunchAtLogin(bool enabled) {
  if (loginItem_.isEnabled() == enabled) return;
  const auto failure = enabled ? loginItem_.registerItem() : loginItem_.unregisterItem();
  if (failure) log_.log("settings", "launch-at-login change failed: " + *failure);
}

void MacAppState::registerCycleHotKey() {
  if (!bindCyclePair_) return;
  const auto cycle = [this] { start(mainThread_, cycleInLaterTurn()); };
  const bool isBound =
      bindCyclePair_(cycleHotKeyKeyCode, keyLabel(cycleHotKeyKeyCode), cycleHotKeyModifiers, cycle);
  if (isBound) return;
  showToast(hotKeyLabel(cycleHotKeyKeyCode, cycleHotKeyModifiers) +
            " is already in use — pick another in Settings");
}

Task<> MacAppState::cycleInLaterTurn() {
  cycleLanguagePair();
  co_return;
}

void MacAppState::showToast(std::string_view text) const {
  if (toast_) toast_(text);
}

// --- Instructions ---

bool MacAppState::needsTransform() const {
  // A normalised mode is never empty, so this is always true: the service also corrects what needs
  // no other change.
  if (stylePrompt(PromptUse::dictation) || !normalizedMode(transformMode).empty()) return true;
  return !textEquals(inputLanguage.get(), outputLanguage.get());
}

std::optional<StylePrompt> MacAppState::stylePrompt(PromptUse use) const {
  return joinedStyles(promptInstructions, use);
}

std::vector<PromptInstruction> MacAppState::savedPrompts() const {
  return savedPromptsAmong(promptInstructions);
}

void MacAppState::addStyleInstruction() {
  promptInstructions.append(newStyleInstruction(random_));
}
void MacAppState::addSavedPrompt() {
  promptInstructions.append(newSavedPrompt(random_));
}

// --- Profiles and languages ---

WritingProfile MacAppState::currentProfile() const {
  return {
      .inputLanguage = inputLanguage,
      .outputLanguage = outputLanguage,
      .transformMode = normalizedMode(transformMode),
      .tone = tone,
      .formatStyle = formatStyle,
  };
}

void MacAppState::saveCurrentProfile(std::string_view name) {
  WritingProfile profile = currentProfile();
  profile.id = random_.newUuid();
  profile.name = trimmed(name);

  if (const auto same = indexOfSameSetting(writingProfiles, profile); !same) {
    writingProfiles.append(profile);
  } else if (!profile.name.empty()) {
    writingProfiles.edit(*same, [&](WritingProfile& existing) { existing.name = profile.name; });
  }
  rememberLanguagePair(inputLanguage, outputLanguage);
}

void MacAppState::rememberLanguagePair(const std::string& input, const std::string& output) {
  const auto isKnown = [&](const TextDictionary& pair) { return isPair(pair, input, output); };
  if (std::ranges::any_of(savedLanguagePairs.get(), isKnown)) return;
  savedLanguagePairs.append({{"input", input}, {"output", output}});
}

void MacAppState::applyProfile(WritingProfile profile) {
  inputLanguage = profile.inputLanguage;
  outputLanguage = profile.outputLanguage;
  transformMode = normalizedMode(profile.transformMode);
  tone = profile.tone;
  formatStyle = profile.formatStyle;
  showToast(profileDisplayName(profile) + " · " + modeLabel(profile.transformMode));
}

void MacAppState::renameProfile(std::string_view id, std::string name) {
  const auto found = std::ranges::find(writingProfiles.get(), id, &WritingProfile::id);
  writingProfiles.edit(static_cast<std::size_t>(found - writingProfiles->begin()),
                       [&](WritingProfile& profile) { profile.name = std::move(name); });
}

void MacAppState::removeProfile(std::size_t index) {
  if (index >= writingProfiles->size()) return;
  const WritingProfile removed = writingProfiles.get()[index];
  writingProfiles.removeEntry(index);

  const std::string& input = removed.inputLanguage;
  const std::string& output = removed.outputLanguage;
  const auto usesPair = [&](const WritingProfile& each) {
    return hasLanguages(each, input, output);
  };
  if (std::ranges::any_of(writingProfiles.get(), usesPair)) return;
  auto pairs = savedLanguagePairs.get();
  std::erase_if(pairs, [&](const TextDictionary& pair) { return isPair(pair, input, output); });
  savedLanguagePairs = std::move(pairs);
}

void MacAppState::cycleLanguagePair() {
  const auto& profiles = writingProfiles.get();
  const auto& pairs = savedLanguagePairs.get();
  if (profiles.size() >= 2) {
    const auto current = indexOfSameSetting(profiles, currentProfile());
    applyProfile(profiles[nextInCycle(current, profiles.size())]);
  } else if (pairs.size() >= 2) {
    const auto found = std::ranges::find_if(pairs, [this](const TextDictionary& pair) {
      return isPair(pair, inputLanguage.get(), outputLanguage.get());
    });
    std::optional<std::size_t> current;
    if (found != pairs.end()) current = static_cast<std::size_t>(found - pairs.begin());
    const TextDictionary next = pairs[nextInCycle(current, pairs.size())];
    setLanguages(next.contains("input") ? next.at("input") : inputLanguage.get(),
                 next.contains("output") ? next.at("output") : outputLanguage.get());
  } else {
    swapLanguages();
  }
}

void MacAppState::swapLanguages() {
  setLanguages(spokenLanguage(outputLanguage), spokenLanguage(inputLanguage));
}

void MacAppState::setLanguages(std::string input, std::string output) {
  inputLanguage = std::move(input);
  outputLanguage = std::move(output);
  showToast(languagePairLabel(inputLanguage.get(), outputLanguage.get()));
}

// --- Dictionary ---

void MacAppState::addReplacementRule(std::string_view from, std::string_view to) {
  if (isBlank(from) || isBlank(to)) return;
  dictionaryReplacements.append({{"from", trimmed(from)}, {"to", trimmed(to)}});
}

void MacAppState::addVocabularyTerm(std::string_view term) {
  std::string trimmedTerm = trimmed(term);
  const auto isTerm = [&](const std::string& known) { return textEquals(known, trimmedTerm); };
  if (trimmedTerm.empty() || std::ranges::any_of(dictionaryVocabulary.get(), isTerm)) return;
  dictionaryVocabulary.append(std::move(trimmedTerm));
}

void MacAppState::addGlossaryEntry(std::string_view term, std::string_view translation) {
  if (isBlank(term) || isBlank(translation)) return;
  dictionaryGlossary.append(
      {{"from", trimmed(term)}, {"to", trimmed(translation)}, {"lang", outputLanguage}});
}

void MacAppState::addSnippet(std::string_view cue, std::string_view text) {
  if (isBlank(cue) || isBlank(text)) return;
  snippets.append({{"cue", trimmed(cue)}, {"text", trimmed(text)}});
}

std::vector<GlossaryEntry> MacAppState::glossaryForOutput() const {
  return glossaryFor(outputLanguage.get(), dictionaryGlossary);
}

}  // namespace quillo
