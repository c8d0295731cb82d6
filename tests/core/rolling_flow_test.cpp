// Long dictations, transcribed while they are spoken.
#include "dictation_world.h"

namespace quillo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class RollingFlow : public DictationFlow {
 protected:
  // A quick answer for one segment, a late one, or none at all.
  void hearsSegment(const std::string& text, Duration delay = 1s) { hears(text, delay); }

  // Speaks so that the recorder cuts `cuts` times, and on for 10 s.
  void recordSegments(int cuts) {
    statusTexts.clear();
    for (int i = 0; i < cuts; ++i) desktop.voice().speak(46s).pause(1s);
    desktop.voice().speak(10s);
    const MonotonicTime end = desktop.voice().end();
    toggle();
    desktop.runFor(end - desktop.now());
    ASSERT_TRUE(dictation.isRecording);
    ASSERT_THAT(transcriptions(), SizeIs(cuts));
  }
  // The segments and whole files that were sent, as "chunk 0" or "full".
  std::vector<std::string> sent() {
    std::vector<std::string> kinds;
    for (const RecordedRequest& request : transcriptions()) {
      const auto index = formField(request, "segmentIndex");
      kinds.push_back(formField(request, "segmentKind").value_or("whole") +
                      (index ? " " + *index : ""));
    }
    return kinds;
  }
  std::vector<std::optional<std::string>> fieldOfAll(const std::string& name) {
    std::vector<std::optional<std::string>> values;
    for (const RecordedRequest& request : transcriptions())
      values.push_back(formField(request, name));
    return values;
  }
};

TEST_F(RollingFlow, SegmentsAreTranscribedWhileTheUserSpeaks) {
  for (const char* text : {" one\n", "two", "three"}) hearsSegment(text);
  recordSegments(2);
  EXPECT_THAT(recordings(), SizeIs(2)) << "the session and its open segment";
  const MonotonicTime stopped = desktop.now();
  finish();
  EXPECT_EQ(editor.editor().text(), "one two three");
  EXPECT_LT(desktop.now() - stopped, 2s) << "only the last segment was waited for";
  EXPECT_THAT(statusTexts, ElementsAre("Listening", "Transcribing", "Finishing transcription",
                                       "Polishing", "Pasting", "Inserted"));
  EXPECT_THAT(sent(), ElementsAre("chunk 0", "chunk 1", "chunk 2"));
  EXPECT_THAT(fieldOfAll("previousText"), ElementsAre(std::nullopt, "one", "two"));
  const auto session = formField(transcriptions()[0], "sessionId");
  EXPECT_THAT(fieldOfAll("sessionId"), ElementsAre(session, session, session));
  EXPECT_THAT(transcriptions()[1].body, HasSubstr("_1.m4a\""));
}

TEST_F(RollingFlow, TheOrderOfArrivalDoesNotMatter) {
  hearsSegment("one", 80s);  // after the second, and after the third was cut
  hearsSegment("two");
  hearsSegment("three", 30s);
  recordSegments(2);
  finish();
  EXPECT_EQ(editor.editor().text(), "one two three");
  EXPECT_THAT(fieldOfAll("previousText"), ElementsAre(std::nullopt, std::nullopt, "two"));
}

TEST_F(RollingFlow, OneEmptySegmentVoidsAll) {
  for (const char* text : {"one", "two", " ", "four", "five"}) hearsSegment(text);
  hears("all that was said");
  recordSegments(4);
  finish();
  EXPECT_EQ(editor.editor().text(), "all that was said");
  EXPECT_THAT(logged(), ElementsAre("1/5 rolling segment(s) empty — using the full recording so no "
                                    "speech is dropped"));
  EXPECT_THAT(sent(), ElementsAre("chunk 0", "chunk 1", "chunk 2", "chunk 3", "chunk 4", "full"));
  EXPECT_EQ(formField(transcriptions()[5], "sessionId"),
            formField(transcriptions()[0], "sessionId"));
  EXPECT_THAT(statusTexts, ElementsAre("Listening", "Transcribing", "Finishing transcription",
                                       "Transcribing", "Polishing", "Pasting", "Inserted"));
}

TEST_F(RollingFlow, OneFailedSegmentVoidsAllAndTheOthersRunOn) {
  desktop.network().reply("/transcribe", Reply{.status = 400, .body = R"({"error":"noise"})"});
  hearsSegment("two", 120s);
  hearsSegment("three");
  hears("all that was said");
  recordSegments(2);
  finish();
  EXPECT_EQ(editor.editor().text(), "all that was said");
  EXPECT_THAT(logged(),
              ElementsAre("rolling transcription failed; falling back to full file: noise"));
  EXPECT_THAT(recordings(), SizeIs(2)) << "the late segments delete their files themselves";
  desktop.runFor(2min);
  EXPECT_THAT(recordings(), IsEmpty());
}

TEST_F(RollingFlow, ALimitOnASegmentIsToldWhenTheWholeFileMeetsItToo) {
  const Reply limit{.status = 402, .body = R"({"error":"limit"})"};
  for (int i = 0; i < 3; ++i) desktop.network().reply("/transcribe", limit);
  recordSegments(1);
  EXPECT_TRUE(dictation.isRecording) << "a limit does not stop the session";
  finish();
  EXPECT_THAT(desktop.alerts().shown(), SizeIs(1));
  EXPECT_THAT(sent(), ElementsAre("chunk 0", "chunk 1", "full"));
  EXPECT_FALSE(dictation.canRetryLast);
}

TEST_F(RollingFlow, CancelEndsTheSegmentsToo) {
  hearsSegment("one");
  desktop.network().reply("/transcribe", Stall{});
  recordSegments(1);
  toggle();
  desktop.runFor(1s);
  ASSERT_EQ(dictation.statusText.get(), "Finishing transcription");
  dictation.cancelProcessing();
  waitUntilProcessed();
  EXPECT_THAT(logged(),
              ElementsAre("processing cancelled from the HUD",
                          HasSubstr("rolling transcription failed; falling back to full file: "),
                          "processing cancelled; audio kept for retry"));
  EXPECT_THAT(sent(), ElementsAre("chunk 0", "chunk 1"));
  EXPECT_THAT(recordings(), SizeIs(1)) << "the whole recording, and no segment";

  dictation.retryLastRecording();
  desktop.runTurns();
  waitUntilProcessed();
  EXPECT_EQ(editor.editor().text(), "hello there");
  EXPECT_THAT(sent(), ElementsAre("chunk 0", "chunk 1", "whole"));
}

TEST_F(RollingFlow, SegmentsAreSentWithTheSettingsOfTheirMoment) {
  state.addVocabularyTerm("Quillo");
  recordSegments(1);
  state.inputLanguage = "de";
  state.dictionaryVocabulary.removeEntry(0);
  finish();
  EXPECT_THAT(fieldOfAll("language"), ElementsAre("en-US", "de"));
  EXPECT_THAT(fieldOfAll("vocabulary"), ElementsAre("Quillo", std::nullopt));
}

// --- Segments by hand ---

class SegmentsByHand : public RollingFlow {
 protected:
  MacAudioRecorder::RecordingResult segment(std::optional<std::int64_t> index) {
    const FilePath path = *desktop.files().directory(UserDirectory::caches) /
                          ("segment_" + std::to_string(index.value_or(-1)) + ".m4a");
    desktop.files().createEmpty(path);
    return {.fileURL = path, .durationSeconds = 45.0, .segmentIndex = index};
  }
  std::optional<std::string> joined() { return desktop.await(rolling->awaitRollingTranscript()); }

  Published<std::string> status;
  std::optional<RollingTranscription> rolling{
      std::in_place, desktop.mainThread(), api,           auth,
      state,         desktop.files(),      desktop.log(), status};
};

TEST_F(SegmentsByHand, WhatBelongsToNoSessionIsDeleted) {
  rolling->onSegmentReady(segment(0), "none yet");
  rolling->begin("now");
  rolling->onSegmentReady(segment(0), "before");
  rolling->onSegmentReady(segment(std::nullopt), "now");
  EXPECT_THAT(recordings(), IsEmpty());
  EXPECT_EQ(joined(), std::nullopt);
  EXPECT_THAT(transcriptions(), IsEmpty());
}

TEST_F(SegmentsByHand, AnUnreadableSegmentVoidsAll) {
  rolling->begin("s");
  rolling->onSegmentReady(segment(0), "s");
  rolling->onSegmentReady(segment(1), "s");
  desktop.files().makeUnreadable(*desktop.files().directory(UserDirectory::caches) /
                                 "segment_1.m4a");
  EXPECT_EQ(joined(), std::nullopt);
  EXPECT_THAT(logged(), ElementsAre("rolling transcription failed; falling back to full file: The "
                                    "file \"segment_1.m4a\" could not be read."));
  EXPECT_EQ(status.get(), "Transcribing");
  EXPECT_THAT(recordings(), IsEmpty());
}

TEST_F(SegmentsByHand, TheTailIsTheLast500CharactersAndNoPartOfTheText) {
  const std::string early(200, 'a');
  std::string late;
  for (int i = 0; i < 500; ++i) late += "é";
  hears(early + late);
  hears("end");
  rolling->begin("s");
  rolling->onSegmentReady(segment(0), "s");
  desktop.runFor(1s);
  rolling->onSegmentReady(segment(1), "s");
  EXPECT_EQ(joined(), early + late + " end");
  EXPECT_EQ(formField(transcriptions()[1], "previousText"), late);
}

TEST_F(SegmentsByHand, ALateSegmentLeavesNoTailInTheNextSession) {
  hears("of the old session", 10s);
  rolling->begin("old");
  rolling->onSegmentReady(segment(0), "old");
  desktop.runFor(1s);
  rolling->begin("new");
  desktop.runFor(10s);
  rolling->onSegmentReady(segment(0), "new");
  EXPECT_EQ(joined(), "hello there");
  EXPECT_EQ(formField(transcriptions()[1], "previousText"), std::nullopt);
}

TEST_F(SegmentsByHand, OutliveTheirOwnerWithoutARequest) {
  rolling->begin("s");
  rolling->onSegmentReady(segment(0), "s");
  rolling.reset();
  settle();
  EXPECT_THAT(transcriptions(), IsEmpty());
  EXPECT_THAT(recordings(), IsEmpty());
}

}  // namespace
}  // namespace quillo
