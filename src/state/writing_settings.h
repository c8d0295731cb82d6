// How texts are written: languages and style, instructions, profiles, and the user's own words.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "api/records.h"
#include "base/words.h"
#include "platform/machine.h"
#include "platform/random.h"
#include "state/language_labels.h"
#include "state/prompt_instruction.h"
#include "state/setting_group.h"
#include "state/writing_profile.h"

namespace quillo {

// Main thread only.
class WritingSettings : private SettingGroup {
 public:
  WritingSettings(SettingRegistry& registry, const Machine& machine, Random& random);

 private:
  Random& random_;  // before the lists, whose records it may have to name

 public:
  Setting<std::string> inputLanguage;
  Setting<std::string> outputLanguage = text("outputLanguage", defaultLanguage);
  Setting<std::string> transformMode = text("transformMode", "auto");
  Setting<std::string> tone = text("tone", "neutral");
  Setting<std::string> formatStyle = text("formatStyle", "auto");
  ListSetting<PromptInstruction> promptInstructions{
      registry_, "mac.promptInstructions",
      loadInstructions(defaults(), "mac.promptInstructions", random_)};
  DictionaryList savedLanguagePairs = dictionaries("mac.savedLanguagePairs");  // "input", "output"
  ListSetting<WritingProfile> writingProfiles{
      registry_, "mac.writingProfiles",
      loadProfiles(defaults(), "mac.writingProfiles", savedLanguagePairs, currentProfile(),
                   random_)};
  DictionaryList dictionaryReplacements = dictionaries("dictionaryReplacements");  // "from", "to"
  ListSetting<std::string> dictionaryVocabulary = texts("dictionaryVocabulary");
  DictionaryList dictionaryGlossary = dictionaries("dictionaryGlossary");  // "from", "to", "lang"
  DictionaryList snippets = dictionaries("snippets");                      // "cue", "text"

  // --- Instructions ---

  bool needsTransform() const;
  std::optional<StylePrompt> stylePrompt(PromptUse use) const;
  std::vector<PromptInstruction> savedPrompts() const;
  void addStyleInstruction();
  void addSavedPrompt();

  // --- Profiles and languages ---

  // The five settings of writing, without id and name.
  WritingProfile currentProfile() const;
  void saveCurrentProfile(std::string_view name);
  void applyProfile(WritingProfile profile);
  void renameProfile(std::string_view id, std::string name);
  void removeProfile(std::size_t index);
  // The next profile, else the next language pair, else input and output exchanged.
  void cycleLanguagePair();
  void swapLanguages();

  // --- Dictionary. Each trims its texts, and ignores blank ones. ---

  void addReplacementRule(std::string_view from, std::string_view to);
  void addVocabularyTerm(std::string_view term);
  void addGlossaryEntry(std::string_view term, std::string_view translation);
  void addSnippet(std::string_view cue, std::string_view text);
  std::vector<GlossaryEntry> glossaryForOutput() const;

  // One line to the user that goes away by itself.
  using Toast = std::function<void(Words text)>;
  void setToast(Toast toast) { toast_ = std::move(toast); }

 protected:
  void showToast(Words text) const;

 private:
  void rememberLanguagePair(const std::string& input, const std::string& output);
  void setLanguages(std::string input, std::string output);

  Toast toast_;
};

}  // namespace quillo
