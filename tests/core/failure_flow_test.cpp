// What becomes of the words when something fails, and of the files.
#include "dictation_world.h"

namespace quillo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class FailureFlow : public DictationFlow {
 protected:
  // The next whole transcription fails for good.
  void failTranscription(int status = 400, std::string body = R"({"error":"bad audio"})") {
    desktop.network().reply("/transcribe", Reply{.status = status, .body = std::move(body)});
  }
  // Dictates something that the service refuses; the name of the kept file.
  std::string failedDictation() {
    failTranscription();
    record(2s);
    finish();
    EXPECT_THAT(recordings(), SizeIs(1));
    return dictation.lastFailedRecording()->fileURL.filename();
  }
  void retry() {
    dictation.retryLastRecording();
    desktop.runTurns();
    waitUntilProcessed();
  }
};

// --- Errors keep the audio ---

TEST(FailureTexts, KeepTheAudioAndSayWhatHappened) {
  struct Case {
    std::vector<simulated::Answer> answers;
    std::string status, message;
  };
  constexpr auto offline = URLErrorCode::notConnectedToInternet;
  constexpr auto insecure = URLErrorCode::secureConnectionFailed;
  const std::string general = "Couldn't transcribe";
  const std::vector<Case> cases = {
      {{Failure{offline}, Failure{offline}, Failure{offline}},
       "Connection problem",
       "No internet connection. Check Wi-Fi or cellular data."},
      {{Failure{insecure}}, "Connection problem", "Connection problem. Please try again."},
      {{Stall{}, Stall{}, Stall{}}, "Request timed out", "Request timed out. Please try again."},
      {{Reply{.status = 503}, Reply{.status = 500}, Reply{.status = 503, .body = "Busy"}},
       general,
       "Busy"},
      {{Reply{.status = 429, .body = R"({"error":"slow down"})"}}, general, "slow down"},
      {{Reply{.body = "<html>"}}, general, "Something went wrong. Please try again."},
      {{simulated::NotHTTP{}}, general, "Couldn't reach the server. Please try again."},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.message);
    DictationWorld world;
    for (const auto& answer : each.answers) world.desktop.network().reply("/transcribe", answer);
    world.record(2s);
    world.finish();
    EXPECT_EQ(world.dictation.statusText.get(), each.status);
    EXPECT_EQ(world.errorLine(), each.message);
    EXPECT_EQ(world.panel.last(), "hide after 12.0");
    EXPECT_THAT(world.logged(), ElementsAre("process failed; kept retry audio: " + each.message));
    EXPECT_EQ(world.editor.editor().text(), "");
    EXPECT_THAT(world.desktop.sounds().names(), ElementsAre("Tink"));
    world.dictation.retryLastRecording();
    world.settle();
    EXPECT_EQ(world.editor.editor().text(), "hello there") << "no word is lost";
    EXPECT_THAT(world.recordings(), IsEmpty());
  }
}

// --- Retry and Dismiss ---

TEST_F(FailureFlow, RetrySendsTheKeptFileToTheLastApplication) {
  const std::string file = failedDictation();
  auto& chat = desktop.workspace().launch({"com.example.chat", "Chat"});
  desktop.runTurns();
  statusTexts.clear();
  panel.requests.clear();
  dictation.retryLastRecording();
  dictation.retryLastRecording();  // a double click
  desktop.runTurns();
  EXPECT_TRUE(dictation.isProcessing && dictation.canRetryLast);
  waitUntilProcessed();
  EXPECT_EQ(chat.editor().text(), "hello there");
  EXPECT_THAT(statusTexts, ElementsAre("Retrying", "Polishing", "Pasting", "Inserted"));
  EXPECT_THAT(panel.requests, ElementsAre("show", "hide after 1.20"));
  ASSERT_THAT(transcriptions(), SizeIs(2));
  EXPECT_THAT(transcriptions().at(1).body, HasSubstr(file));
  EXPECT_FALSE(transformBody(0).contains("appContext")) << "the target was that of the first try";
  EXPECT_THAT(logged(), testing::Contains(testing::StartsWith("retry recording file=" + file +
                                                              " duration=0.03")));
  EXPECT_THAT(recordings(), IsEmpty());
}

TEST_F(FailureFlow, OneFileIsKeptUntilItsWordsAreDelivered) {
  const std::string older = failedDictation();
  failTranscription();
  retry();
  EXPECT_EQ(dictation.statusText.get(), "Couldn't transcribe");
  EXPECT_THAT(recordings(), ElementsAre(older)) << "a failed retry keeps it";
  const std::string newer = failedDictation();
  EXPECT_NE(older, newer);
  EXPECT_THAT(recordings(), ElementsAre(newer)) << "a newer failure takes its place";
  dictate("a success between");
  EXPECT_THAT(recordings(), ElementsAre(newer)) << "another dictation leaves it on offer";
  record(1s);
  dictation.retryLastRecording();
  desktop.runFor(1s);
  EXPECT_TRUE(dictation.isRecording) << "a retry waits for the running dictation";
  finish();
}

TEST_F(FailureFlow, DismissDeletesTheFile) {
  failedDictation();
  dictation.dismissLastFailure();
  EXPECT_THAT(recordings(), IsEmpty());
  EXPECT_FALSE(dictation.canRetryLast);
  EXPECT_EQ(dictation.statusText.get(), "Ready");
  EXPECT_EQ(dictation.lastError.get(), std::nullopt);
  EXPECT_EQ(panel.last(), "hide");
  dictation.retryLastRecording();
  settle();
  EXPECT_THAT(transcriptions(), SizeIs(1)) << "there is nothing to retry";
}

TEST_F(FailureFlow, ARetryOfAMissingFileFails) {
  desktop.files().remove(*desktop.files().directory(UserDirectory::caches) / failedDictation());
  retry();
  EXPECT_EQ(dictation.statusText.get(), "Couldn't transcribe");
  EXPECT_EQ(errorLine(), "Something went wrong. Please try again.");
  EXPECT_TRUE(dictation.canRetryLast);
  dictation.dismissLastFailure();
}

// --- Cancel ---

class CancelFlow : public FailureFlow {
 protected:
  // Cancels when the status reads so, and waits for the end.
  void cancelAt(const std::string& status) {
    record(2s);
    toggle();
    ASSERT_TRUE(desktop.runUntil([&] { return dictation.statusText.get() == status; }, 1min));
    desktop.runFor(10ms);
    dictation.cancelProcessing();
    waitUntilProcessed();
  }
  void expectCancelled() {
    EXPECT_EQ(dictation.statusText.get(), "Ready");
    EXPECT_EQ(dictation.lastError.get(), std::nullopt);
    EXPECT_EQ(panel.last(), "hide");
    EXPECT_TRUE(dictation.canRetryLast);
    EXPECT_EQ(editor.editor().text(), "");
    EXPECT_THAT(logged(), ElementsAre("processing cancelled from the HUD",
                                      "processing cancelled; audio kept for retry"));
  }
};

TEST_F(CancelFlow, WhileTranscribing) {
  cancelAt("Transcribing");
  expectCancelled();
  EXPECT_THAT(transforms(), IsEmpty());
  retry();
  EXPECT_EQ(editor.editor().text(), "hello there");
}

TEST_F(CancelFlow, WhilePolishing) {
  cancelAt("Polishing");
  expectCancelled();
  EXPECT_THAT(transforms(), SizeIs(1)) << "a cancel is not repeated";
}

TEST_F(CancelFlow, WhileARequestWaitsToBeRepeated) {
  desktop.network().reply("/transcribe", Reply{.status = 503});
  cancelAt("Transcribing");
  expectCancelled();
}

TEST_F(CancelFlow, WhileVerifying) {
  state.outputLanguage = "de";
  state.validateTranslation = true;
  cancelAt("Verifying");
  expectCancelled();
  EXPECT_THAT(review.requests, IsEmpty());
}

TEST_F(CancelFlow, WhilePastingIsTooLate) {
  cancelAt("Pasting");
  EXPECT_EQ(editor.editor().text(), "hello there");
  EXPECT_EQ(dictation.statusText.get(), "Inserted");
  EXPECT_FALSE(dictation.canRetryLast);
}

TEST_F(CancelFlow, OutsideProcessingIsNothing) {
  dictation.cancelProcessing();
  record(1s);
  dictation.cancelProcessing();
  EXPECT_TRUE(dictation.isRecording);
  EXPECT_THAT(logged(), IsEmpty());
  finish();
}

// --- Plan limits ---

TEST_F(FailureFlow, APlanLimitIsToldAndTheAudioDeleted) {
  failTranscription(429, R"({"error":"Daily limit reached","message":"No minutes left today."})");
  desktop.alerts().answer(0);
  record(2s);
  finish();
  ASSERT_THAT(desktop.alerts().shown(), SizeIs(1));
  EXPECT_EQ(desktop.alerts().shown()[0].messageText, "Plan limit reached");
  EXPECT_EQ(desktop.alerts().shown()[0].informativeText, "No minutes left today.");
  EXPECT_EQ(navigator.plansOpened, 1);
  EXPECT_EQ(dictation.statusText.get(), "Plan limit reached");
  EXPECT_THAT(panel.requests, ElementsAre("show", "show", "hide", "hide after 1.20"));
  EXPECT_THAT(recordings(), IsEmpty());
}

TEST_F(FailureFlow, ADevicesLimitInTheTransformIsTheSame) {
  desktop.network().reply(
      "/transform", Reply{.status = 402, .body = R"({"limitType":"chars","limitScope":"device"})"});
  desktop.alerts().answer(1);
  record(2s);
  finish();
  EXPECT_EQ(desktop.alerts().shown().at(0).messageText, "This Mac's free limit reached");
  EXPECT_EQ(navigator.plansOpened, 0);
  EXPECT_THAT(transforms(), SizeIs(1)) << "a limit is not tried twice";
  EXPECT_EQ(editor.editor().text(), "");
  EXPECT_FALSE(dictation.canRetryLast);
}

// --- The transform may fail, the words arrive all the same ---

TEST_F(FailureFlow, ATransformThatFailsOnceIsRepeated) {
  desktop.network().reply("/transform", Reply{.status = 400});
  transforms("Polished.");
  dictate("raw words");
  EXPECT_EQ(editor.editor().text(), "Polished.");
  EXPECT_EQ(dictation.lastError.get(), std::nullopt);
}

TEST_F(FailureFlow, ATransformThatFailsTwiceLeavesTheRawText) {
  const auto failTwice = [this] {
    for (int i = 0; i < 2; ++i) desktop.network().reply("/transform", Reply{.status = 400});
  };
  failTwice();
  dictate("raw words");
  EXPECT_EQ(editor.editor().text(), "raw words");
  EXPECT_EQ(dictation.statusText.get(), "Inserted");
  EXPECT_EQ(errorLine(), "Couldn't polish the text — inserted the raw transcription.");
  EXPECT_EQ(panel.last(), "hide after 3.00");
  EXPECT_FALSE(dictation.canRetryLast);

  state.outputLanguage = "de";
  failTwice();
  dictate(" more");
  EXPECT_EQ(editor.editor().text(), "raw wordsmore");
  EXPECT_EQ(errorLine(), "Couldn't translate — inserted your original words. Please try again.");
  EXPECT_THAT(logged(), IsEmpty());
}

TEST_F(FailureFlow, OutputThatMayNotReplaceTheWordsDoesNot) {
  transforms(" \n");
  dictate("one two three");
  transforms("As an AI, I cannot do that.");
  dictate("four five six");
  EXPECT_EQ(editor.editor().text(), "one two threefour five six");
  EXPECT_EQ(dictation.lastError.get(), std::nullopt);
  EXPECT_THAT(logged(),
              ElementsAre("transform returned empty text; using raw transcription (13 chars)",
                          "transform REJECTED (Transformation error - using original text); using "
                          "raw transcription — raw=13 chars, transformed=27 chars, en-US->en-US"));
  transforms("Translation: \"Seven\"");
  dictate("seven");
  EXPECT_EQ(dictation.lastResult.get(), "Seven");
}

}  // namespace
}  // namespace quillo
