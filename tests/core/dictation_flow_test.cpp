// From the shortcut to the delivered text.
#include "dictation_world.h"

namespace quillo {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

// --- A dictation without trouble ---

TEST_F(DictationFlow, SpokenWordsArriveInTheEditor) {
  desktop.pasteboard().copy("the user's own copy");
  transforms("Hello there, Ada.");
  dictate("  hello there ada \n");

  EXPECT_EQ(editor.editor().text(), "Hello there, Ada.");
  EXPECT_EQ(clipboard(), "the user's own copy");
  EXPECT_EQ(dictation.lastRawTranscript.get(), "hello there ada");
  EXPECT_EQ(dictation.lastResult.get(), "Hello there, Ada.");
  EXPECT_THAT(statusTexts,
              ElementsAre("Listening", "Transcribing", "Polishing", "Pasting", "Inserted"));
  EXPECT_THAT(desktop.sounds().names(), ElementsAre("Tink", "Pop"));
  EXPECT_THAT(panel.requests, ElementsAre("show", "show", "hide after 1.20"));
  EXPECT_THAT(recordings(), IsEmpty());

  ASSERT_THAT(history.entries.get(), SizeIs(1));
  const MacHistoryEntry& entry = *history.entries.get().front();
  EXPECT_EQ(entry.rawTranscript, "hello there ada");
  EXPECT_EQ(entry.finalText, "Hello there, Ada.");
  EXPECT_EQ(entry.targetAppName, "Notes");

  const RecordedRequest request = transcriptions().at(0);
  EXPECT_EQ(formField(request, "language"), "en-US");
  EXPECT_EQ(formField(request, "sessionId"), std::nullopt) << "there were no segments";
  EXPECT_EQ(formField(request, "segmentKind"), std::nullopt);
  EXPECT_THAT(formField(request, "durationMinutes").value(), testing::StartsWith("0.035"));
  settle();
  EXPECT_THAT(desktop.network().requestsTo("/get-usage"), SizeIs(2)) << "at launch, and after";
}

TEST_F(DictationFlow, TheTransformIsFilledFromTheSettings) {
  state.inputLanguage = "auto";
  state.outputLanguage = "de";
  state.transformMode = "polish";
  state.tone = "friendly";
  state.formatStyle = "bullets";
  state.addVocabularyTerm("Quillo");
  state.addReplacementRule("quill oh", "Quillo");
  state.addReplacementRule("ada", "Ada Lovelace");
  state.addGlossaryEntry("meeting", "Besprechung");
  state.addSnippet("my sign off", "Best, A.");
  dictate("Quill oh meeting with ADA my sign off");
  EXPECT_EQ(encodeJson(transformBody(0)),
            R"({"text":"Quillo meeting with Ada Lovelace Best, A.","transformMode":"improve",)"
            R"("tone":"friendly","readingLevel":"standard","targetLanguage":"de",)"
            R"("inputLanguage":"auto","accuracyMode":"balanced","inputAlreadyMetered":true,)"
            R"("preserveTerms":["Best, A.","Quillo","Ada Lovelace"],)"
            R"("glossary":[{"from":"meeting","to":"Besprechung"}],)"
            R"("format":"bullets","appContext":"com.example.notes"})");
  EXPECT_EQ(formField(transcriptions().at(0), "vocabulary"),
            "Quillo, Ada Lovelace, meeting, Besprechung, my sign off");
  EXPECT_EQ(formField(transcriptions().at(0), "language"), "auto");

  state.addStyleInstruction();
  state.promptInstructions.edit(0, [](PromptInstruction& style) { style.text = " Be brief. "; });
  dictate("again");
  EXPECT_EQ(transformBody(1).at("customPrompt"), "Be brief.");
  EXPECT_EQ(transformBody(1).at("promptMode"), "augment");
  EXPECT_FALSE(transformBody(0).contains("customPrompt"));
}

TEST_F(DictationFlow, TheTargetIsFixedAtTheStart) {
  record(2s);
  auto& browser = desktop.workspace().launch({"com.example.browser", "Browser"});
  finish();
  EXPECT_EQ(editor.editor().text(), "hello there");
  EXPECT_EQ(browser.editor().text(), "");

  // In front of this program's own window the last other one is meant.
  desktop.workspace().focus(browser);
  desktop.runTurns();
  desktop.workspace().focus(desktop.workspace().self());
  desktop.runTurns();
  dictate("from the window");
  EXPECT_EQ(browser.editor().text(), "from the window");
}

TEST_F(DictationFlow, CuesAndHistoryAreTheUsersChoice) {
  state.historyEnabled = false;
  state.soundsEnabled = false;
  dictate("quiet");
  EXPECT_THAT(history.entries.get(), IsEmpty());
  EXPECT_THAT(desktop.sounds().names(), IsEmpty());
}

// --- Gates ---

TEST_F(DictationFlow, NobodyDictatesWithoutAnAccountAndAMicrophone) {
  using Decision = simulated::SwitchedPermissions::Decision;
  desktop.permissions().setMicrophone(Decision::undecided);
  desktop.permissions().answerMicrophoneQuestion(Decision::denied, 2s);
  toggle();
  desktop.runFor(2s);
  EXPECT_EQ(dictation.statusText.get(), "Microphone permission needed");
  EXPECT_EQ(errorLine(), "Enable microphone access in System Settings.");

  auth.signOut();
  toggle();
  EXPECT_EQ(dictation.statusText.get(), "Sign in to dictate");
  EXPECT_EQ(errorLine(), "Opening sign-in…");
  EXPECT_THAT(navigator.signInMessages,
              ElementsAre("Dictation needs an account on Mac. Your free plan is included — sign in "
                          "to start dictating."));
  EXPECT_THAT(panel.requests, ElementsAre("show", "hide after 3.00", "show", "hide after 2.00"));
  EXPECT_THAT(desktop.network().requestsTo("/transcribe"), IsEmpty()) << "not even a warm-up";
}

TEST_F(DictationFlow, TwoStartsThatWaitForThePermissionBecomeOneRecording) {
  using Decision = simulated::SwitchedPermissions::Decision;
  desktop.permissions().setMicrophone(Decision::undecided);
  desktop.permissions().answerMicrophoneQuestion(Decision::allowed, 2s);
  desktop.voice().speak(10s);
  toggle();
  desktop.runFor(1s);
  toggle();
  desktop.runFor(5s);
  EXPECT_TRUE(dictation.isRecording);
  EXPECT_THAT(recordings(), SizeIs(2)) << "a session file and its segment";
  EXPECT_THAT(desktop.sounds().names(), ElementsAre("Tink")) << "nothing began anew";
  finish();
  EXPECT_EQ(editor.editor().text(), "hello there");
}

TEST_F(DictationFlow, ASessionIsRefreshedWhileTheUserSpeaksOrWhenItIsRefused) {
  const auto renewAs = [this](const std::string& token) {
    desktop.network().reply("/auth/v1/token", Reply{.body = encodeJson({{"access_token", token},
                                                                        {"refresh_token", "r"},
                                                                        {"expires_in", 3600}}),
                                                    .delay = 1s});
  };
  desktop.userDefaults().setNumber("mac.tokenExpiresAt", 0);
  renewAs("access-2");
  dictate("fresh");
  EXPECT_EQ(transcriptions().at(0).header("X-Quillo-API-Key"), "access-2");

  desktop.network().reply("/transcribe", Reply{.status = 401, .body = "{}"});
  renewAs("access-3");
  dictate(" again");
  ASSERT_THAT(transcriptions(), SizeIs(3));
  EXPECT_EQ(transcriptions().at(2).header("X-Quillo-API-Key"), "access-3");
  EXPECT_EQ(editor.editor().text(), "freshagain");
}

// --- Start attempts ---

TEST_F(DictationFlow, AnUnpluggedChosenMicrophoneIsReplacedAtOnce) {
  state.microphoneUID = "gone";
  dictate("default");
  EXPECT_THAT(logged(), ElementsAre("mic: using system default (selected device not connected) "
                                    "attempt=1"));
  EXPECT_EQ(editor.editor().text(), "default");
}

TEST_F(DictationFlow, ASilentChosenMicrophoneIsGivenUpAfterTwoAttempts) {
  auto& dead = desktop.audioDevices().plug({.uid = "dead", .name = "Dead"});
  dead.setDead(true);
  state.microphoneUID = "dead";
  hears("at last");
  const MonotonicTime begin = desktop.now();
  desktop.voice().speak(10s);
  toggle();
  desktop.runUntil([this] { return dictation.isRecording.get(); });
  EXPECT_EQ(desktop.now() - begin, 2 * (350ms + 200ms) + 100ms);
  EXPECT_THAT(logged(), ElementsAre("recording start attempt 1 captured no audio; retrying",
                                    "recording start attempt 2 captured no audio; retrying",
                                    "mic: using system default (selected device gave no audio) "
                                    "attempt=3"));
  desktop.runFor(1s);
  finish();
  EXPECT_EQ(editor.editor().text(), "at last");
  orphanedRecordings = 2;
}

TEST_F(DictationFlow, FourSilentAttemptsAreAFailure) {
  desktop.audioDevices().builtInMicrophone().setDead(true);
  const MonotonicTime begin = desktop.now();
  toggle();
  desktop.runUntil([this] { return !panel.requests.empty(); });
  EXPECT_EQ(desktop.now() - begin, 4 * 350ms + 3 * 200ms);
  EXPECT_EQ(dictation.statusText.get(), "Could not start recording");
  EXPECT_EQ(errorLine(), "Failed to start microphone recording.");
  EXPECT_EQ(panel.last(), "hide after 3.00");
  EXPECT_THAT(logged(),
              ElementsAre("recording start attempt 1 captured no audio; retrying",
                          "recording start attempt 2 captured no audio; retrying",
                          "recording start attempt 3 captured no audio; retrying",
                          "recording start attempt 4 captured no audio; retrying",
                          "recording start failed: Failed to start microphone recording."));
  EXPECT_THAT(desktop.sounds().names(), IsEmpty());
  orphanedRecordings = 4;
}

TEST_F(DictationFlow, AMicrophoneThatIsBusyTwiceIsTriedAgain) {
  desktop.audioDevices().builtInMicrophone().refuseStart("busy", 2);
  dictate("third time");
  const std::string reason = " failed: Failed to start microphone recording.";
  EXPECT_THAT(logged(), ElementsAre("recording start attempt 1" + reason,
                                    "recording start attempt 2" + reason));
  EXPECT_EQ(editor.editor().text(), "third time");
}

TEST_F(DictationFlow, ASlowMicrophoneHas350Milliseconds) {
  auto& microphone = desktop.audioDevices().builtInMicrophone();
  microphone.setFirstBufferDelay(260ms);  // and 85 ms for the buffer
  dictate("just in time");
  EXPECT_THAT(logged(), IsEmpty());
}

TEST_F(DictationFlow, TwoTogglesAtOnceLeaveOneRecordingAndNoOrphan) {
  desktop.voice().speak(10s);
  toggle();
  desktop.runFor(60ms);
  toggle();
  desktop.runFor(2s);
  EXPECT_TRUE(dictation.isRecording);
  EXPECT_EQ(desktop.audioSystem().runningEngines(), 1);
  finish();
  EXPECT_EQ(editor.editor().text(), "hello there");
}

TEST_F(DictationFlow, ASlowerStartLeavesTheLiveRecordingAlone) {
  desktop.audioDevices().builtInMicrophone().refuseStart("busy", 1);
  desktop.voice().speak(10s);
  toggle();  // tries again after 200 ms
  desktop.runFor(60ms);
  toggle();  // live after 100 ms
  desktop.runFor(2s);
  EXPECT_THAT(desktop.sounds().names(), ElementsAre("Tink"));
  finish();
  EXPECT_EQ(editor.editor().text(), "hello there");
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

// --- Hold ---

TEST_F(DictationFlow, AHoldThatEndsBeforeTheMicrophoneIsLiveStopsWhenItIs) {
  desktop.voice().speak(5s);
  dictation.beginHoldRecording();
  desktop.runFor(50ms);
  dictation.endHoldRecording();
  EXPECT_FALSE(dictation.isRecording);
  desktop.runFor(60ms);
  EXPECT_THAT(statusTexts, ElementsAre("Listening", "Transcribing", "Ready"));
  EXPECT_EQ(errorLine(), "Recording was too short.");
}

TEST_F(DictationFlow, AHoldRecordsUntilItEnds) {
  desktop.voice().speak(5s);
  dictation.beginHoldRecording();
  dictation.beginHoldRecording();
  desktop.runFor(2s);
  dictation.beginHoldRecording();
  EXPECT_TRUE(dictation.isRecording);
  dictation.endHoldRecording();
  dictation.endHoldRecording();
  desktop.runTurns();
  waitUntilProcessed();
  EXPECT_EQ(editor.editor().text(), "hello there");
  EXPECT_THAT(transcriptions(), SizeIs(1));
}

// --- The end of a recording ---

TEST_F(DictationFlow, TenMinutesAreTheLimitOfEveryPlan) {
  desktop.userDefaults().setInteger("plan.maxRecordingSeconds", 60);
  record(599s);
  EXPECT_TRUE(dictation.isRecording);
  desktop.runFor(950ms);
  EXPECT_EQ(dictation.statusText.get(), "10-min limit reached");
  EXPECT_TRUE(dictation.isRecording);
  desktop.runFor(1s);
  EXPECT_FALSE(dictation.isRecording);
  waitUntilProcessed();
  EXPECT_THAT(editor.editor().text(), HasSubstr("hello there"));
}

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

TEST_F(DictationFlow, ARecordingWithNothingInItIsRefused) {
  record(200ms);
  finish();
  EXPECT_EQ(errorLine(), "Recording was too short.");
  EXPECT_EQ(dictation.statusText.get(), "Ready");
  EXPECT_EQ(panel.last(), "hide after 3.00");

  record(200ms);
  desktop.files().setFull(true);
  desktop.runFor(1s);
  finish();
  EXPECT_EQ(errorLine(), "No usable audio was captured.");
  EXPECT_THAT(logged(), ElementsAre("recording validation failed: Recording was too short.",
                                    "recording validation failed: No usable audio was captured."));
  EXPECT_THAT(transcriptions(), IsEmpty());

  const auto judge = [](std::int64_t ms, std::int64_t size) {
    const auto problem = MacAudioRecorder::validate({.durationMs = ms, .fileSize = size});
    return problem ? problem->description() : "";
  };
  EXPECT_EQ(judge(499, 9999), "Recording was too short.");
  EXPECT_EQ(judge(500, 1023), "No usable audio was captured.");
  EXPECT_EQ(judge(500, 1024), "");
}

TEST_F(DictationFlow, SilenceIsNoSpeech) {
  dictate(" \n ");
  EXPECT_EQ(errorLine(), "No speech was detected.");
  EXPECT_EQ(dictation.statusText.get(), "Ready");
  EXPECT_THAT(panel.requests, ElementsAre("show", "show", "hide after 3.00", "hide after 3.00"));
  EXPECT_THAT(transforms(), IsEmpty());
  EXPECT_EQ(dictation.lastResult.get(), "");
}

// --- Delivery ---

TEST_F(DictationFlow, WithoutAutoPasteTheTextIsCopied) {
  state.autoPaste = false;
  state.outputLanguage = "de";
  state.validateTranslation = true;
  dictate("hello");
  EXPECT_EQ(dictation.statusText.get(), "Copied — auto-paste off");
  EXPECT_EQ(clipboard(), "hello");
  EXPECT_EQ(editor.editor().text(), "");
  EXPECT_THAT(transforms(), SizeIs(2)) << "the translation is checked all the same";
  EXPECT_THAT(review.requests, IsEmpty());
  EXPECT_THAT(history.entries.get(), SizeIs(1));
}

TEST_F(DictationFlow, ATranslationIsReviewedBeforeItIsInserted) {
  state.inputLanguage = "auto";
  state.outputLanguage = "pt-BR";
  state.validateTranslation = true;
  transforms("Olá");
  transforms(" Hi \n");
  dictate("hello");
  ASSERT_THAT(review.requests, SizeIs(1));
  const ReviewRequest& shown = review.requests.front();
  EXPECT_EQ(shown.youSaid, "hello");
  EXPECT_EQ(shown.youSaidLanguage, "Auto");
  EXPECT_EQ(shown.means, "Hi");
  EXPECT_EQ(shown.willInsert, "Olá");
  EXPECT_EQ(shown.insertLanguage, "Portuguese (Brazil)");
  EXPECT_EQ(editor.editor().text(), "Olá");
  EXPECT_THAT(statusTexts, ElementsAre("Listening", "Transcribing", "Polishing", "Verifying",
                                       "Pasting", "Inserted"));
  EXPECT_THAT(panel.requests, ElementsAre("show", "show", "hide after 0.00", "hide after 1.20"));
  EXPECT_EQ(encodeJson(transformBody(1)),
            R"({"text":"Olá","transformMode":"direct","tone":"neutral",)"
            R"j("readingLevel":"standard","targetLanguage":"English (United States)",)j"
            R"("inputLanguage":"pt-BR","accuracyMode":"balanced","inputAlreadyMetered":true,)"
            R"("format":"none"})");
}

TEST_F(DictationFlow, ADiscardedReviewIsCopiedAndKept) {
  state.outputLanguage = "de";
  state.validateTranslation = true;
  review.decisions = {ReviewDecision::discard};
  transforms("Hallo");
  transforms("Hallo");  // a copy back says nothing
  dictate("hello");
  EXPECT_EQ(review.requests.at(0).means, "");
  EXPECT_EQ(dictation.statusText.get(), "Copied to clipboard");
  EXPECT_EQ(clipboard(), "Hallo");
  EXPECT_EQ(editor.editor().text(), "");
  EXPECT_THAT(history.entries.get(), SizeIs(1));
}

TEST_F(DictationFlow, RecordingAgainKeepsTheTarget) {
  state.outputLanguage = "de";
  state.validateTranslation = true;
  review.decisions = {ReviewDecision::reRecord};
  transforms("Falsch");
  desktop.network().fail("/transform", URLErrorCode::badServerResponse);  // no back-translation
  hears("wrong");
  record(2s);
  toggle();
  desktop.runUntil([this] { return !review.requests.empty(); });
  EXPECT_EQ(review.requests.at(0).means, "");
  desktop.workspace().focus(desktop.workspace().self());
  desktop.voice().speak(20s);
  ASSERT_TRUE(desktop.runUntil([this] { return dictation.isRecording.get(); }, 10s));
  EXPECT_THAT(history.entries.get(), IsEmpty());
  EXPECT_THAT(recordings(), SizeIs(2)) << "those of the new recording alone";
  transforms("Richtig");
  desktop.runFor(2s);
  finish();
  EXPECT_EQ(editor.editor().text(), "Richtig");
}

TEST_F(DictationFlow, ATextThatCannotBePastedIsCopiedWithAReason) {
  desktop.permissions().setAccessibilityTrusted(false);
  dictate("one");
  EXPECT_EQ(dictation.statusText.get(), "Copied to clipboard");
  EXPECT_EQ(errorLine(),
            "Text was copied. Turn on Accessibility access for Quillo to paste automatically.");
  EXPECT_EQ(panel.last(), "hide after 3.00");
  EXPECT_EQ(clipboard(), "one");
  desktop.permissions().setAccessibilityTrusted(true);

  desktop.keyboard().setSecureInput(true);
  dictate("two");
  EXPECT_THAT(errorLine(), HasSubstr("Secure keyboard entry is on"));
  desktop.keyboard().setSecureInput(false);

  record(2s);
  desktop.workspace().quit(editor);
  hears("three");
  finish();
  EXPECT_THAT(errorLine(), HasSubstr("Click where you want it"));
  EXPECT_EQ(clipboard(), "three");
  EXPECT_THAT(logged(), ElementsAre("auto-paste copied fallback reason=accessibility",
                                    "auto-paste copied fallback reason=secureInput",
                                    "auto-paste copied fallback reason=invalidTarget"));
  EXPECT_THAT(history.entries.get(), SizeIs(3));
}

// --- The last result ---

TEST_F(DictationFlow, TheLastResultIsPastedWhereTheUserIs) {
  dictation.insertLastResult("");
  dictation.copyLastResult();
  EXPECT_THAT(panel.requests, IsEmpty());
  dictate("again");
  auto& chat = desktop.workspace().launch({"com.example.chat", "Chat"});
  desktop.pasteboard().copy("mine");
  settle();
  panel.requests.clear();
  dictation.insertLastResult(dictation.lastResult);
  desktop.runFor(1s);
  EXPECT_EQ(chat.editor().text(), "again");
  EXPECT_EQ(dictation.statusText.get(), "Inserted");
  EXPECT_EQ(clipboard(), "mine");
  EXPECT_THAT(panel.requests, ElementsAre("show", "hide after 1.20"));

  desktop.workspace().focus(desktop.workspace().self());
  dictation.insertLastResult(" twice");
  desktop.runFor(2s);
  EXPECT_EQ(chat.editor().text(), "again twice");

  desktop.permissions().setAccessibilityTrusted(false);
  dictation.insertLastResult("thrice");
  desktop.runFor(2s);
  EXPECT_EQ(panel.last(), "hide after 3.00");
  EXPECT_THAT(logged(), ElementsAre("paste last copied fallback reason=accessibility"));

  dictation.copyLastResult();
  EXPECT_EQ(clipboard(), "again");
  EXPECT_EQ(dictation.statusText.get(), "Copied to clipboard");
  EXPECT_EQ(panel.last(), "hide after 1.20");
}

TEST_F(DictationFlow, TheLastResultWaitsForTheRunningDictation) {
  record(2s);
  toggle();
  ASSERT_TRUE(dictation.isProcessing);
  dictation.insertLastResult("not now");
  waitUntilProcessed();
  EXPECT_EQ(editor.editor().text(), "hello there");
}

}  // namespace
}  // namespace quillo
