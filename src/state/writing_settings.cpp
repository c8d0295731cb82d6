#include "state/writing_settings.h"

#include <algorithm>
#include <utility>

#include "base/text.h"
#include "state/glossary.h"
#include "state/writing_material.h"

namespace quillo {
namespace {

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

WritingSettings::WritingSettings(SettingRegistry& registry, const Machine& machine, Random& random)
    : SettingGroup(registry),
      random_(random),
      inputLanguage(text("inputLanguage", initialInputLanguage(machine.preferredLanguages()))) {
  transformMode = normalizedMode(transformMode);  // older versions had other names
}

// --- Instructions ---

bool WritingSettings::needsTransform() const {
  // A normalised mode is never empty, so this is always true: the service also corrects what needs
  // no other change.
  if (stylePrompt(PromptUse::dictation) || !normalizedMode(transformMode).empty()) return true;
  return !textEquals(inputLanguage.get(), outputLanguage.get());
}

std::optional<StylePrompt> WritingSettings::stylePrompt(PromptUse use) const {
  return joinedStyles(promptInstructions, use);
}

std::vector<PromptInstruction> WritingSettings::savedPrompts() const {
  return savedPromptsAmong(promptInstructions);
}

void WritingSettings::addStyleInstruction() {
  promptInstructions.append(newStyleInstruction(random_));
}
void WritingSettings::addSavedPrompt() {
  promptInstructions.append(newSavedPrompt(random_));
}

// --- Profiles and languages ---

WritingProfile WritingSettings::currentProfile() const {
  return {
      .inputLanguage = inputLanguage,
      .outputLanguage = outputLanguage,
      .transformMode = normalizedMode(transformMode),
      .tone = tone,
      .formatStyle = formatStyle,
  };
}

void WritingSettings::saveCurrentProfile(std::string_view name) {
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

void WritingSettings::rememberLanguagePair(const std::string& input, const std::string& output) {
  const auto isKnown = [&](const TextDictionary& pair) { return isPair(pair, input, output); };
  if (std::ranges::any_of(savedLanguagePairs.get(), isKnown)) return;
  savedLanguagePairs.append({{"input", input}, {"output", output}});
}

void WritingSettings::applyProfile(WritingProfile profile) {
  inputLanguage = profile.inputLanguage;
  outputLanguage = profile.outputLanguage;
  transformMode = normalizedMode(profile.transformMode);
  tone = profile.tone;
  formatStyle = profile.formatStyle;
  showToast(words("{profile} · {mode}", {{"profile", profileDisplayName(profile)},
                                         {"mode", modeLabel(profile.transformMode)}}));
}

void WritingSettings::renameProfile(std::string_view id, std::string name) {
  const auto found = std::ranges::find(writingProfiles.get(), id, &WritingProfile::id);
  writingProfiles.edit(static_cast<std::size_t>(found - writingProfiles->begin()),
                       [&](WritingProfile& profile) { profile.name = std::move(name); });
}

void WritingSettings::removeProfile(std::size_t index) {
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

void WritingSettings::cycleLanguagePair() {
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

void WritingSettings::swapLanguages() {
  setLanguages(spokenLanguage(outputLanguage), spokenLanguage(inputLanguage));
}

void WritingSettings::setLanguages(std::string input, std::string output) {
  inputLanguage = std::move(input);
  outputLanguage = std::move(output);
  showToast(languagePairLabel(inputLanguage.get(), outputLanguage.get()));
}

// --- Dictionary ---

void WritingSettings::addReplacementRule(std::string_view from, std::string_view to) {
  if (isBlank(from) || isBlank(to)) return;
  dictionaryReplacements.append({{"from", trimmed(from)}, {"to", trimmed(to)}});
}

void WritingSettings::addVocabularyTerm(std::string_view term) {
  std::string trimmedTerm = trimmed(term);
  const auto isTerm = [&](const std::string& known) { return textEquals(known, trimmedTerm); };
  if (trimmedTerm.empty() || std::ranges::any_of(dictionaryVocabulary.get(), isTerm)) return;
  dictionaryVocabulary.append(std::move(trimmedTerm));
}

void WritingSettings::addGlossaryEntry(std::string_view term, std::string_view translation) {
  if (isBlank(term) || isBlank(translation)) return;
  dictionaryGlossary.append(
      {{"from", trimmed(term)}, {"to", trimmed(translation)}, {"lang", outputLanguage}});
}

void WritingSettings::addSnippet(std::string_view cue, std::string_view text) {
  if (isBlank(cue) || isBlank(text)) return;
  snippets.append({{"cue", trimmed(cue)}, {"text", trimmed(text)}});
}

std::vector<GlossaryEntry> WritingSettings::glossaryForOutput() const {
  return glossaryFor(outputLanguage.get(), dictionaryGlossary);
}

void WritingSettings::showToast(Words text) const {
  if (toast_) toast_(std::move(text));
}

}  // namespace quillo
