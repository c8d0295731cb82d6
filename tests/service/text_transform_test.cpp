#include "service/text_transform.h"

#include <gtest/gtest.h>

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

TEST(TextTransform, DictationBecomesWrittenTextAndSlipsAreFixed) {
  const Workshop workshop;
  for (const auto& [before, after] : {
           Case{"i think we should meet on tuesday in london",
                "I think we should meet on Tuesday in London."},
           Case{"where did you put the usb stick", "Where did you put the USB stick?"},
           Case{"dear ada new paragraph thank you exclamation mark new line see you soon",
                "Dear Ada.\n\nThank you!\nSee you soon."},
           Case{"it costs 10.50 at 5 p.m. on example.com",
                "It costs 10.50 at 5 p.m. on example.com."},
       })
    EXPECT_EQ(workshop(dictated(before)), after);

  for (const auto& [before, after] : {
           Case{"teh weather is realy nice today ,dont you thnk so ?",
                "The weather is really nice today, don't you think so?"},
           // The sentence decides between "which", "witch" and "winch".
           Case{"wich one do you want", "Which one do you want?"},
           Case{"I recieved a apple and an university letter an hour ago. he is an European",
                "I received an apple and a university letter an hour ago. He is a European."},
           Case{"- buy milk\n- call ada\n\nthanks for  everything",
                "- Buy milk\n- Call Ada\n\nThanks for everything."},
           // Too short to be a sentence for certain.
           Case{"their house", "Their house"},
           // No prose, and no language that the service knows.
           Case{"Run `teh comand` in /usr/locl/bin with snake_case and iPhoen.",
                "Run `teh comand` in /usr/locl/bin with snake_case and iPhoen."},
           Case{"你好，世界", "你好，世界"},
           Case{"das ist ein kleines haus mit garten und ich wohne dort",
                "Das ist ein kleines haus mit garten und ich wohne dort."},
       })
    EXPECT_EQ(workshop(typed(before)), after);
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
  EXPECT_EQ(improved("do you know him and I know that that is very very good", Tone::neutral),
            "Do you know him and I know that that is very very good?");
  EXPECT_EQ(improved("hey, we're gonna be late and I don't mind", Tone::professional),
            "Hello, we are going to be late and I do not mind.");
  EXPECT_EQ(improved("We are ready and do not worry about who I am", Tone::friendly),
            "We're ready and don't worry about who I am.");
  // The automatic mode leaves alone what is not hesitant.
  TransformRequest automatic = dictated("we don't know that", TransformMode::automatic);
  automatic.tone = Tone::professional;
  EXPECT_EQ(workshop(automatic), "We don't know that.");
  automatic.text = "uh we don't know that";
  EXPECT_EQ(workshop(automatic), "We do not know that.");
}

TEST(TextTransform, TermsStandAsTheyAreWrittenInTheLayoutThatIsWanted) {
  const Workshop workshop;
  TransformRequest request = typed("please find my adress below: Ada  Byron\n12 st james sq");
  request.terms = {preserved("Ada  Byron\n12 st james sq")};
  EXPECT_EQ(workshop(request), "Please find my address below: Ada  Byron\n12 st james sq.");
  request = typed("The enviroment is ready to run");
  request.terms = {{"run", "RUN(1)"}, preserved("enviroment"), preserved("  ")};
  EXPECT_EQ(workshop(request), "The enviroment is ready to RUN(1).");

  request = typed("First we go home. Then we eat. Is it late? The end is near.");
  request.layout = Layout::paragraphs;
  EXPECT_EQ(workshop(request), "First we go home. Then we eat. Is it late?\n\nThe end is near.");
  request.layout = Layout::bullets;
  EXPECT_EQ(workshop(request),
            "- First we go home\n- Then we eat\n- Is it late?\n- The end is near");
}

TEST(TextTransform, TranslatesBothWaysAndSaysWhatItCannot) {
  const Workshop workshop;
  TransformRequest request = typed("I will send the Quillo report to Maria tomorrow.");
  request.targetLanguage = "es";
  request.terms = {preserved("Quillo report"), {"Maria", "María"}};
  EXPECT_EQ(workshop(request), "Enviaré el Quillo report a María mañana.");
  EXPECT_EQ(workshop(typed("La casa es muy grande.")), "The house is very big.");

  const auto refused = [&] {
    try {
      return workshop(request);
    } catch (const ServiceError& error) {
      EXPECT_EQ(error.reply().status, 422);
      return error.reply().body.value("message", std::string());
    }
  };
  request = dictated("the house is big");
  request.targetLanguage = "de";
  EXPECT_EQ(refused(), "The development service cannot translate from English to German.");
  request = typed("hello there my friend");
  request.promptUse = PromptUse::alone;
  request.prompt = "Make it rhyme";
  EXPECT_NE(refused().find("follows only prompts"), std::string::npos);
  request.prompt = "Write it in CAPITAL LETTERS, please";
  EXPECT_EQ(workshop(request), "HELLO THERE MY FRIEND");
  // Beside a mode, what is not understood changes nothing.
  request.promptUse = PromptUse::augment;
  request.prompt = "Make it rhyme";
  EXPECT_EQ(workshop(request), "Hello there my friend.");
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
