#include "service/text_transform.h"

#include <gtest/gtest.h>

#include "service/languages.h"
#include "service/sentence_rules.h"
#include "service/service_error.h"
#include "service/subprocess.h"

namespace quillo::service {
namespace {

struct Workshop {
  Dictionaries dictionaries;
  Pronunciation pronunciation;
  Translator translator;
  TextTransform transform{dictionaries, pronunciation, translator};

  std::string operator()(const TransformRequest& request) const {
    return transform.transformed(request);
  }
};

TransformRequest typed(const std::string& text, TransformMode mode = TransformMode::direct) {
  return {.text = text, .mode = mode, .targetLanguage = "en"};
}

TransformRequest dictated(const std::string& text, TransformMode mode = TransformMode::direct) {
  return {.text = text,
          .mode = mode,
          .targetLanguage = "en",
          .sourceLanguage = "en",
          .origin = TextOrigin::spoken};
}

struct Case {
  const char* before;
  const char* after;
};

TEST(TextTransform, DictationBecomesWrittenText) {
  const Workshop workshop;
  for (const auto& [before, after] : {
           Case{"i think we should meet on tuesday in london",
                "I think we should meet on Tuesday in London."},
           Case{"where did you put the usb stick", "Where did you put the USB stick?"},
           Case{"what time is it", "What time is it?"},
           Case{"when you are ready call me", "When you are ready call me."},
           Case{"yes", "Yes."},
           Case{"dear ada new paragraph thank you exclamation mark new line see you soon",
                "Dear Ada.\n\nThank you!\nSee you soon."},
           // Unknown names are left as they were heard.
           Case{"mister dashwuud came", "Mister dashwuud came."},
           Case{"it costs 10.50 at 5 p.m. on example.com",
                "It costs 10.50 at 5 p.m. on example.com."},
           Case{"read more on https://example.com/a", "Read more on https://example.com/a"},
           Case{"is it done?", "Is it done?"},
       })
    EXPECT_EQ(workshop(dictated(before)), after);
}

TEST(TextTransform, FixCorrectsSlipsAndKeepsTheWording) {
  const Workshop workshop;
  for (const auto& [before, after] : {
           Case{"teh weather is realy nice today ,dont you thnk so ?",
                "The weather is really nice today, don't you think so?"},
           Case{"i saw alot of people,they were hapy", "I saw a lot of people, they were happy."},
           // The sentence decides between "which", "witch" and "winch".
           Case{"wich one do you want", "Which one do you want?"},
           Case{"I recieved a apple and an university letter an hour ago. he is an European",
                "I received an apple and a university letter an hour ago. He is a European."},
           Case{"i'm sure that it wont rain and he cant come",
                "I'm sure that it won't rain and he can't come."},
           Case{"um the the report is ready", "Um the the report is ready."},
           // Too short to be a sentence for certain.
           Case{"their house", "Their house"},
           Case{"line one ends here\nand goes on there", "Line one ends here\nand goes on there."},
           Case{"- buy milk\n- call ada\n\nthanks for  everything",
                "- Buy milk\n- Call Ada\n\nThanks for everything."},
           Case{"call Dr. smith, e.g. at 10 a.m. today", "Call Dr. smith, e.g. at 10 a.m. today."},
       })
    EXPECT_EQ(workshop(typed(before)), after);
}

TEST(TextTransform, FixLeavesAloneWhatIsNotProse) {
  const Workshop workshop;
  for (const char* text : {
           "See https://exmaple.com/teh?q=wrod and mail teh@exmaple.com about main.cpp.",
           "Run `teh comand` in /usr/locl/bin with snake_case and camelCase.",
           "McAndrew and iPhoen stay as they are.",
           "你好，世界",
           "مرحبا بالعالم كيف حالك اليوم",
       })
    EXPECT_EQ(workshop(typed(text)), text);
  // Another language than the target's is recognised as unknown, not corrected into English.
  EXPECT_EQ(workshop(typed("das ist ein kleines haus mit garten und ich wohne dort")),
            "Das ist ein kleines haus mit garten und ich wohne dort.");
}

TEST(TextTransform, ImproveDropsHesitationsAndSetsTheTone) {
  const Workshop workshop;
  const auto improved = [&](const char* text, Tone tone) {
    TransformRequest request = typed(text, TransformMode::improve);
    request.tone = tone;
    return workshop(request);
  };
  EXPECT_EQ(improved("so, um, i mean we we should you know try again", Tone::neutral),
            "So, we should try again.");
  EXPECT_EQ(improved("do you know him and you know what i mean", Tone::neutral),
            "Do you know him and you know what I mean?");
  EXPECT_EQ(improved("I know that that is very very good", Tone::neutral),
            "I know that that is very very good.");
  EXPECT_EQ(improved("hey, we're gonna be late and I don't mind", Tone::professional),
            "Hello, we are going to be late and I do not mind.");
  EXPECT_EQ(improved("We are ready and do not worry about who I am", Tone::friendly),
            "We're ready and don't worry about who I am.");
}

TEST(TextTransform, AutomaticImprovesOnlyWhatIsHesitant) {
  const Workshop workshop;
  TransformRequest clean = dictated("we don't know that", TransformMode::automatic);
  clean.tone = Tone::professional;
  EXPECT_EQ(workshop(clean), "We don't know that.");
  TransformRequest hesitant = dictated("uh we don't know that", TransformMode::automatic);
  hesitant.tone = Tone::professional;
  EXPECT_EQ(workshop(hesitant), "We do not know that.");
}

TEST(TextTransform, TermsStandAsTheyAreWritten) {
  const Workshop workshop;
  TransformRequest request = dictated("quillo and new teh thing are it's best friend said it");
  request.terms = {preserved("Quillo"), preserved("new TEH thing"), preserved("IT"),
                   preserved("  "), preserved("thing")};
  EXPECT_EQ(workshop(request), "Quillo and new TEH thing are it's best friend said it.");

  // A snippet keeps its own lines, blanks and marks.
  request = typed("please find my adress below: Ada  Byron\n12 st james sq");
  request.terms = {preserved("Ada  Byron\n12 st james sq")};
  EXPECT_EQ(workshop(request), "Please find my address below: Ada  Byron\n12 st james sq.");

  request = typed("The enviroment is ready to run");
  request.terms = {{"run", "RUN(1)"}, preserved("enviroment")};
  EXPECT_EQ(workshop(request), "The enviroment is ready to RUN(1).");
}

TEST(TextTransform, LayoutFollowsTheFormat) {
  const Workshop workshop;
  const auto laid = [&](const char* text, Layout layout) {
    TransformRequest request = typed(text);
    request.layout = layout;
    return workshop(request);
  };
  const char* story = "First we go home. Then we eat. Is it late? The end is near.";
  EXPECT_EQ(laid(story, Layout::asItIs), story);
  EXPECT_EQ(laid(story, Layout::paragraphs),
            "First we go home. Then we eat. Is it late?\n\nThe end is near.");
  EXPECT_EQ(laid(story, Layout::bullets),
            "- First we go home\n- Then we eat\n- Is it late?\n- The end is near");
  EXPECT_EQ(laid("One line.\n\nAnother line here.", Layout::oneBlock),
            "One line. Another line here.");
  EXPECT_EQ(laid("- One thing\n\nAnd another. (And more.)", Layout::bullets),
            "- One thing\n- And another\n- (And more.)");
}

TEST(TextTransform, TranslatesBothWaysWithTermsUntouched) {
  const Workshop workshop;
  TransformRequest request = dictated("the house is very big");
  request.targetLanguage = "es";
  EXPECT_EQ(workshop(request), "La casa es muy grande.");

  request = typed("I will send the Quillo report to Maria tomorrow.");
  request.targetLanguage = "es";
  request.terms = {preserved("Quillo report"), {"Maria", "María"}};
  EXPECT_EQ(workshop(request), "Enviaré el Quillo report a María mañana.");

  request = typed("La casa es muy grande.");
  EXPECT_EQ(workshop(request), "The house is very big.");

  // Spanish stays Spanish, with its accents and opening marks.
  request = typed("la reunion es mañana en la estacion. donde esta tu casa?");
  request.targetLanguage = "es";
  EXPECT_EQ(workshop(request), "La reunión es mañana en la estación. ¿Donde esta tu casa?");
}

TEST(TextTransform, SaysWhatItCannotDo) {
  const Workshop workshop;
  const auto refusal = [&](const TransformRequest& request) {
    try {
      return workshop(request);
    } catch (const ServiceError& error) {
      EXPECT_EQ(error.reply().status, 422);
      return error.reply().body.value("message", std::string());
    }
  };
  TransformRequest german = dictated("the house is big");
  german.targetLanguage = "de";
  EXPECT_EQ(refusal(german), "The development service cannot translate from English to German.");

  TransformRequest prompt = typed("hello there my friend");
  prompt.promptUse = PromptUse::alone;
  prompt.prompt = "Make it rhyme";
  EXPECT_NE(refusal(prompt).find("follows only prompts"), std::string::npos);
  prompt.prompt = "Write it in CAPITAL LETTERS, please";
  EXPECT_EQ(refusal(prompt), "HELLO THERE MY FRIEND");
  prompt.prompt = "Translate this into Spanish";
  EXPECT_EQ(refusal(prompt), "Hola Allí mi amigo.");
  prompt.text = "We go. We eat.";
  prompt.prompt = "Use bullet points";
  EXPECT_EQ(refusal(prompt), "- We go\n- We eat");
  // Beside a mode, what is not understood changes nothing.
  prompt.promptUse = PromptUse::augment;
  prompt.prompt = "Make it rhyme";
  EXPECT_EQ(refusal(prompt), "We go. We eat.");
}

TEST(Languages, AreNamedByCodeOrInEnglish) {
  for (const auto& [name, code] : {std::pair{"en-US", "en"},
                                   {"EN", "en"},
                                   {"English (United States)", "en"},
                                   {"Spanish", "es"},
                                   {"pt-BR", "pt"},
                                   {"Portuguese (Brazil)", "pt"},
                                   {"zh-CN", "zh"},
                                   {"Chinese (Simplified)", "zh"},
                                   {"ckb", "ckb"},
                                   {"Kurdish (Kurmanji)", "ku"},
                                   {" german ", "de"}})
    EXPECT_EQ(languageFrom(name), code) << name;
  for (const char* nothing : {"", "qq", "Klingonese", "12", "en'; DROP", "(English)"})
    EXPECT_EQ(languageFrom(nothing), std::nullopt) << nothing;

  const Dictionaries dictionaries;
  const auto detected = [&](const char* text) { return languageOf(piecesOf(text), dictionaries); };
  EXPECT_EQ(detected("The house is very big"), "en");
  EXPECT_EQ(detected("La casa es muy grande"), "es");
  EXPECT_EQ(detected("no"), std::nullopt);
  EXPECT_EQ(detected("das kleine Haus wurde gestern verkauft"), std::nullopt);
  EXPECT_EQ(detected("42 :-)"), std::nullopt);
}

TEST(Subprocess, GivesTheOutputOrSaysWhyNot) {
  using std::chrono::milliseconds;
  const std::string large(300'000, 'x');
  EXPECT_EQ(outputOf({"cat"}, large, milliseconds(20'000)), large);
  EXPECT_THROW(outputOf({"false"}, "", milliseconds(20'000)), std::runtime_error);
  EXPECT_THROW(outputOf({"no-such-program-here"}, "", milliseconds(20'000)), std::runtime_error);
  EXPECT_THROW(outputOf({"sleep", "60"}, "", milliseconds(1)), std::runtime_error);
}

}  // namespace
}  // namespace quillo::service
