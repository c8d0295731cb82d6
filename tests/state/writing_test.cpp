// The user's writing material: what is loaded, how it is edited, how the cycle walks it.
#include "state/writing_material.h"
#include "state_fixture.h"

namespace quillo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class WritingTest : public StateTest {
 protected:
  void setLanguages(const std::string& input, const std::string& output) {
    state_->inputLanguage = input;
    state_->outputLanguage = output;
  }
  std::string cycle() {
    state_->cycleLanguagePair();
    return state_->inputLanguage.get() + ">" + state_->outputLanguage.get();
  }
  std::vector<std::string> profileNames() {
    std::vector<std::string> names;
    for (const auto& profile : state_->writingProfiles.get()) names.push_back(profile.name);
    return names;
  }
};

TEST_F(WritingTest, ModesOfEveryVersionBecomeOneOfThree) {
  EXPECT_EQ(normalizedMode(std::nullopt), "auto");
  EXPECT_EQ(normalizedMode(" polish\n"), "improve");
  EXPECT_EQ(normalizedMode("POLISH"), "auto");
  EXPECT_EQ(normalizedMode("keep_words"), "direct");
}

// --- Instructions ---

TEST_F(WritingTest, StoredInstructionsAreReadFieldByField) {
  stored().setData("mac.promptInstructions", R"([
      {"id": "6f9619ff-8b86-d011-b42d-00c04fc964ff", "bubble": true, "promptOnly": true,
       "name": "  ", "text": "no name, so a style"},
      {"bubble": true, "promptOnly": true, "name": "Pirate", "text": "Arr", "voice": "yes"},
      {"kind": "style", "text": 7, "extra": {}}])");
  const auto& loaded = launch().promptInstructions.get();
  ASSERT_THAT(loaded, SizeIs(3));
  EXPECT_EQ(loaded[0].id, "6F9619FF-8B86-D011-B42D-00C04FC964FF");
  EXPECT_EQ(loaded[0].kind, "style");
  EXPECT_EQ(loaded[1].kind, "saved");
  EXPECT_TRUE(loaded[1].voice);
  EXPECT_THAT(loaded[1].id, SizeIs(36));
  EXPECT_EQ(loaded[2].text, "");
}

TEST_F(WritingTest, TheOnePromptOfAnOlderVersionIsTakenOverUnlessThereIsAList) {
  stored().setText("customPrompt", "  Write like a pilot.\n");
  stored().setText("promptMode", "promptOnly");
  const auto& loaded = launch().promptInstructions.get();
  ASSERT_THAT(loaded, SizeIs(1));
  EXPECT_EQ(loaded[0].kind, "");
  EXPECT_TRUE(loaded[0].promptOnly);
  EXPECT_EQ(state_->stylePrompt(PromptUse::dictation)->text, "Write like a pilot.");
  EXPECT_FALSE(stored().contains("mac.promptInstructions"));

  stored().setData("mac.promptInstructions", "[1]");  // no list of records
  EXPECT_THAT(launch().promptInstructions.get(), SizeIs(1));
  stored().setData("mac.promptInstructions", "[]");
  EXPECT_THAT(launch().promptInstructions.get(), IsEmpty());
}

TEST_F(WritingTest, StylesAreJoinedForTheirUseAndSavedPromptsStandAlone) {
  MacAppState& state = launch();
  EXPECT_FALSE(state.stylePrompt(PromptUse::dictation));
  const auto write = [&](const char* text, bool bubble) {
    state.promptInstructions.edit(state.promptInstructions->size() - 1, [&](auto& each) {
      each.text = text;
      each.voice = true;
      each.bubble = bubble;
    });
  };
  for (const auto& [text, bubble] :
       {std::pair(" Be brief. ", true), {" \n", true}, {"No slang.", false}}) {
    state.addStyleInstruction();
    write(text, bubble);
  }
  state.addSavedPrompt();
  state.addSavedPrompt();
  write("Translate to Latin.", true);
  EXPECT_EQ(state.stylePrompt(PromptUse::dictation)->text, "Be brief.\nNo slang.");
  EXPECT_EQ(state.stylePrompt(PromptUse::bubble)->text, "Be brief.");
  EXPECT_EQ(state.stylePrompt(PromptUse::bubble)->promptMode, "augment");
  ASSERT_THAT(state.savedPrompts(), SizeIs(1));
  EXPECT_EQ(state.savedPrompts()[0].text, "Translate to Latin.");
}

// --- Profiles ---

TEST_F(WritingTest, StoredProfilesAreReadFieldByFieldAndSavedPairsBecomeProfiles) {
  stored().setText("transformMode", "raw");
  stored().setText("tone", "friendly");
  stored().setDictionaries("mac.savedLanguagePairs", {{{"input", "en-US"}, {"output", "de"}},
                                                      {{"input", "fr"}, {"output", ""}},
                                                      {{"output", "es"}}});
  const auto& made = launch().writingProfiles.get();
  ASSERT_THAT(made, SizeIs(1));
  EXPECT_EQ(profileSummary(made[0]), "Direct · Friendly · Smart");
  EXPECT_FALSE(stored().contains("mac.writingProfiles"));

  stored().setData("mac.writingProfiles", R"([
      {"name": "Mail", "outputLanguage": "de", "transformMode": "rephrase"}, {"tone": 1}])");
  const auto& loaded = launch().writingProfiles.get();
  ASSERT_THAT(loaded, SizeIs(2));
  EXPECT_EQ(profileSummary(loaded[0]), "English → German · Improve · Neutral · Smart");
  EXPECT_EQ(profileDisplayName(loaded[1]), "English → English");
  EXPECT_EQ(profileSummary(loaded[1]), "Auto · Neutral · Smart");
}

TEST_F(WritingTest, AProfileIsSavedOnceRenamedAndRemovedWithItsPair) {
  MacAppState& state = launch();
  setLanguages("en-US", "de");
  state.saveCurrentProfile(" Work ");
  state.saveCurrentProfile("  ");  // the same setting without a name changes nothing
  EXPECT_THAT(profileNames(), ElementsAre("Work"));
  state.saveCurrentProfile("Office");
  EXPECT_THAT(profileNames(), ElementsAre("Office"));
  state.tone = "friendly";
  state.saveCurrentProfile("");
  EXPECT_THAT(profileNames(), ElementsAre("Office", ""));
  EXPECT_THAT(state.savedLanguagePairs.get(), SizeIs(1));

  state.renameProfile("unknown", "x");
  state.renameProfile(std::string(state.writingProfiles->back().id), " Friends ");
  EXPECT_THAT(profileNames(), ElementsAre("Office", " Friends "));
  state.removeProfile(0);
  EXPECT_THAT(state.savedLanguagePairs.get(), SizeIs(1));  // still in use
  state.removeProfile(1);                                  // outside the list
  state.removeProfile(0);
  EXPECT_THAT(launch().savedLanguagePairs.get(), IsEmpty());
  EXPECT_THAT(state_->writingProfiles.get(), IsEmpty());
}

// --- The cycle ---

TEST_F(WritingTest, WithTwoProfilesTheCycleWalksThem) {
  MacAppState& state = launch();
  setLanguages("en-US", "de");
  state.transformMode = "improve";
  state.saveCurrentProfile("Work");
  setLanguages("fr", "fr");
  state.tone = "friendly";
  state.saveCurrentProfile("");
  EXPECT_EQ(cycle(), "en-US>de");
  EXPECT_EQ(state.tone.get(), "neutral");
  EXPECT_EQ(cycle(), "fr>fr");
  state.tone = "professional";  // no profile any more: begins at the first
  EXPECT_EQ(cycle(), "en-US>de");
  EXPECT_THAT(toasts_,
              ElementsAre("Work · Improve", "French → French · Improve", "Work · Improve"));
}

TEST_F(WritingTest, WithSomePairsTheCycleWalksThemAndOtherwiseSwapsTheLanguages) {
  launch();
  setLanguages("auto", "de");
  EXPECT_EQ(cycle(), "de>en-US");
  EXPECT_EQ(cycle(), "en-US>de");
  state_->saveCurrentProfile("Only");
  state_->savedLanguagePairs.append({{"input", "ja"}});
  toasts_.clear();
  EXPECT_EQ(cycle(), "ja>de");     // what the pair lacks stays
  EXPECT_EQ(cycle(), "en-US>de");  // which makes it no match: from the start
  EXPECT_THAT(toasts_, ElementsAre("Japanese → German", "English → German"));
}

// --- Dictionary ---

TEST_F(WritingTest, DictionaryRecordsAreTrimmedWhenAddedAndTakenAsTheyAreWhenEdited) {
  stored().setDictionaries("dictionaryReplacements", {{{"from", "a"}, {"enabled", "false"}}});
  MacAppState& state = launch();
  state.addReplacementRule(" gonna ", " going to\n");
  state.addReplacementRule("gonna", "going to");  // duplicates are the user's business
  state.addReplacementRule(" ", "x");
  state.addReplacementRule("x", "");
  EXPECT_THAT(state.dictionaryReplacements.get(), SizeIs(3));
  state.dictionaryReplacements.updateEntry(0, "to", " b ");
  state.dictionaryReplacements.updateEntry(7, "to", "nothing");
  state.dictionaryReplacements.removeEntry(2);
  EXPECT_THAT(launch().dictionaryReplacements.get(),
              ElementsAre(TextDictionary{{"from", "a"}, {"to", " b "}, {"enabled", "false"}},
                          TextDictionary{{"from", "gonna"}, {"to", "going to"}}));

  for (const char* term : {"lyft", " Lyft ", "Lyft", "", "Caf\u00e9", "Cafe\u0301"})
    state_->addVocabularyTerm(term);
  EXPECT_THAT(state_->dictionaryVocabulary.get(), ElementsAre("lyft", "Lyft", "Caf\u00e9"));
  state_->addSnippet("sig", " \n");
  state_->addSnippet(" sig ", " Best,\nAda ");
  EXPECT_THAT(state_->snippets.get(),
              ElementsAre(TextDictionary{{"cue", "sig"}, {"text", "Best,\nAda"}}));
}

TEST_F(WritingTest, TheGlossaryAppliesToALanguageInAllItsRegions) {
  MacAppState& state = launch();
  state.outputLanguage = "pt-BR";
  state.addGlossaryEntry(" invoice ", "fatura");
  state.addGlossaryEntry("bus", " ");
  state.dictionaryGlossary.append({{"from", "Quillo"}, {"to", " Quillo "}});
  state.dictionaryGlossary.append({{"from", "train"}, {"to", "Zug"}, {"lang", "DE-at"}});
  state.dictionaryGlossary.append({{"to", "no term"}, {"lang", ""}});
  state.outputLanguage = "PT-pt";
  EXPECT_THAT(state.glossaryForOutput(),
              ElementsAre(GlossaryEntry{"invoice", "fatura"}, GlossaryEntry{"Quillo", "Quillo"}));
  state.outputLanguage = "de";
  EXPECT_THAT(state.glossaryForOutput(),
              ElementsAre(GlossaryEntry{"Quillo", "Quillo"}, GlossaryEntry{"train", "Zug"}));
}

}  // namespace
}  // namespace quillo
