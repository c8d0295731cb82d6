// From the shortcut to the delivered text: what the scenarios under tests/scenarios cannot see.
#include "dictation_world.h"

namespace quillo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

// --- A dictation without trouble ---

TEST_F(DictationFlow, ThePanelStaysAShortWhileAndTheUsageIsAskedForAgain) {
  dictate("  hello there ada \n");
  EXPECT_EQ(dictation.lastRawTranscript.get(), "hello there ada");
  EXPECT_EQ(dictation.lastResult.get(), "hello there ada");
  EXPECT_THAT(panel.requests, ElementsAre("show", "show", "hide after 1.20"));
  EXPECT_THAT(formField(transcriptions().at(0), "durationMinutes").value(),
              testing::StartsWith("0.035"));
  settle();
  EXPECT_THAT(desktop.network().requestsTo("/get-usage"), SizeIs(2)) << "at launch, and after";
}

TEST_F(DictationFlow, InFrontOfThisProgramsOwnWindowTheLastOtherOneIsMeant) {
  auto& browser = desktop.workspace().launch({"com.example.browser", "Browser"});
  desktop.workspace().focus(desktop.workspace().self());
  desktop.runTurns();
  dictate("from the window");
  EXPECT_EQ(browser.editor().text(), "from the window");
}

// --- Starts ---

TEST(DictationStarts, TwoAtOnceBecomeOneRecording) {
  const struct {
    const char* name;
    void (*arrange)(simulated::SimulatedDesktop&);
    Duration apart;
  } starts[] = {
      {"both wait for the permission",
       [](simulated::SimulatedDesktop& desktop) {
         using Decision = simulated::SwitchedPermissions::Decision;
         desktop.permissions().setMicrophone(Decision::undecided);
         desktop.permissions().answerMicrophoneQuestion(Decision::allowed, 2s);
       },
       1s},
      {"both wait for sound", [](simulated::SimulatedDesktop&) {}, 60ms},
      {"the second overtakes the first",
       [](simulated::SimulatedDesktop& desktop) {
         desktop.audioDevices().builtInMicrophone().refuseStart("busy", 1);
       },
       60ms},
  };
  for (const auto& [name, arrange, apart] : starts) {
    SCOPED_TRACE(name);
    DictationWorld world;
    arrange(world.desktop);
    world.desktop.voice().speak(10s);
    world.toggle();
    world.desktop.runFor(apart);
    world.toggle();
    world.desktop.runFor(5s);
    EXPECT_TRUE(world.dictation.isRecording);
    EXPECT_EQ(world.desktop.audioSystem().runningEngines(), 1);
    EXPECT_THAT(world.recordings(), SizeIs(2)) << "a session file and its segment";
    EXPECT_THAT(world.desktop.sounds().names(), SizeIs(1)) << "nothing began anew";
    world.finish();
    EXPECT_EQ(world.editor.editor().text(), "hello there");
    EXPECT_THAT(world.recordings(), IsEmpty());
  }
}

TEST_F(DictationFlow, ASlowMicrophoneHas350Milliseconds) {
  auto& microphone = desktop.audioDevices().builtInMicrophone();
  microphone.setFirstBufferDelay(260ms);  // and 85 ms for the buffer
  dictate("just in time");
  EXPECT_THAT(logged(), IsEmpty());
}

TEST_F(DictationFlow, QuietSpeechIsAmplifiedInDiscreetMode) {
  const auto levelWhileSpeaking = [this] {
    desktop.voice().speak(3s, -30.0);
    toggle();
    desktop.runFor(1s);
    const float level = dictation.audioLevel;
    finish();
    return level;
  };
  EXPECT_NEAR(levelWhileSpeaking(), 0.333f, 0.01);
  state.discreetMode = true;
  EXPECT_NEAR(levelWhileSpeaking(), 0.599f, 0.01);  // 8 dB more
}

// --- The end of a recording ---

TEST_F(DictationFlow, WhoStopsAtTheLimitKeepsTheNextRecording) {
  record(599950ms);
  desktop.runFor(50ms);
  ASSERT_EQ(dictation.statusText.get(), "10-min limit reached");
  finish();
  desktop.voice().speak(5s);
  toggle();
  desktop.runFor(2s);
  EXPECT_TRUE(dictation.isRecording) << "the limit was that of the recording before";
  finish();
}

TEST_F(DictationFlow, ARecordingThatHoldsNothingIsRefused) {
  record(200ms);
  desktop.files().setFull(true);
  desktop.runFor(1s);
  finish();
  EXPECT_THAT(logged(), ElementsAre("recording validation failed: No usable audio was captured."));
  EXPECT_EQ(panel.last(), "hide after 3.00");
  EXPECT_THAT(transcriptions(), IsEmpty());

  const auto judge = [](std::int64_t ms, std::int64_t size) {
    const auto problem = MacAudioRecorder::validate({.durationMs = ms, .fileSize = size});
    return problem ? problem->description() : "";
  };
  EXPECT_EQ(judge(499, 9999), "Recording was too short.");
  EXPECT_EQ(judge(500, 1023), "No usable audio was captured.");
  EXPECT_EQ(judge(500, 1024), "");
}

// --- Delivery ---

TEST_F(DictationFlow, ATranslationOfAnyLanguageIsCheckedAgainstEnglish) {
  state.inputLanguage = "auto";
  state.outputLanguage = "pt-BR";
  state.validateTranslation = true;
  transforms("Olá");
  transforms(" Olá \n");
  dictate("hello");
  EXPECT_EQ(review.requests[0].youSaidLanguage, "Auto");
  EXPECT_EQ(review.requests[0].insertLanguage, "Portuguese (Brazil)");
  EXPECT_EQ(review.requests[0].means, "") << "a copy back says nothing";
  EXPECT_THAT(panel.requests, ElementsAre("show", "show", "hide after 0.00", "hide after 1.20"));
  EXPECT_EQ(encodeJson(transformBody(1)),
            R"({"text":"Olá","transformMode":"direct","tone":"neutral",)"
            R"j("readingLevel":"standard","targetLanguage":"English (United States)",)j"
            R"("inputLanguage":"pt-BR","accuracyMode":"balanced","inputAlreadyMetered":true,)"
            R"("format":"none"})");

  transforms("Olá");
  transforms("Hello");
  dictate("hello");
  transforms("Adeus");
  desktop.network().reply("/transform", Reply{.status = 400});
  dictate("bye");
  ASSERT_THAT(review.requests, SizeIs(3));
  EXPECT_EQ(review.requests[1].means, "Hello");
  EXPECT_EQ(review.requests[2].means, "") << "nor does the meaning of another text";
}

// --- The last result ---

TEST_F(DictationFlow, TheLastResultIsPastedFromThisProgramsOwnWindowToo) {
  dictation.insertLastResult("");
  dictation.copyLastResult();
  EXPECT_THAT(panel.requests, IsEmpty());
  desktop.workspace().focus(desktop.workspace().self());
  dictation.insertLastResult("again");
  desktop.runFor(2s);
  EXPECT_EQ(editor.editor().text(), "again");

  desktop.permissions().setAccessibilityTrusted(false);
  dictation.insertLastResult("once more");
  desktop.runFor(2s);
  EXPECT_THAT(panel.requests, ElementsAre("show", "hide after 1.20", "show", "hide after 3.00"));
  EXPECT_THAT(logged(), ElementsAre("paste last copied fallback reason=accessibility"));
}

TEST_F(DictationFlow, TheLastResultWaitsForTheRunningDictation) {
  record(2s);
  toggle();
  ASSERT_TRUE(dictation.isProcessing);
  dictation.insertLastResult("not now");
  waitUntilProcessed();
  EXPECT_EQ(editor.editor().text(), "hello there");
}

// --- Retry ---

TEST_F(DictationFlow, RetrySendsTheKeptFileToTheLastApplication) {
  desktop.network().reply("/transcribe", Reply{.status = 400, .body = R"({"error":"bad audio"})"});
  record(2s);
  finish();
  const std::string file = dictation.lastFailedRecording()->fileURL.filename();
  record(1s);
  dictation.retryLastRecording();
  desktop.runTurns();
  EXPECT_TRUE(dictation.isRecording) << "a retry does not disturb a recording";
  finish();

  auto& chat = desktop.workspace().launch({"com.example.chat", "Chat"});
  desktop.runTurns();
  dictation.retryLastRecording();
  dictation.retryLastRecording();  // a double click
  desktop.runTurns();
  EXPECT_TRUE(dictation.isProcessing && dictation.canRetryLast);
  waitUntilProcessed();
  EXPECT_EQ(chat.editor().text(), "hello there");
  ASSERT_THAT(transcriptions(), SizeIs(3));
  EXPECT_THAT(transcriptions()[2].body, HasSubstr(file));
  EXPECT_FALSE(transformBody(1).contains("appContext")) << "the target was that of the first try";
  EXPECT_THAT(logged(), testing::Contains(testing::StartsWith("retry recording file=" + file +
                                                              " duration=0.03")));
}

// --- Cancel ---

TEST_F(DictationFlow, ACancelOutsideProcessingIsNothing) {
  dictation.cancelProcessing();
  record(1s);
  dictation.cancelProcessing();
  EXPECT_TRUE(dictation.isRecording);
  EXPECT_THAT(logged(), IsEmpty());
  finish();
}

}  // namespace
}  // namespace quillo
