// Long dictations, transcribed while they are spoken.
#include "dictation_world.h"

namespace quillo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class RollingFlow : public DictationFlow {
 protected:
  // Speaks so that the recorder cuts once, and on for 10 s.
  void recordTwoSegments() {
    desktop.voice().speak(46s).pause(1s).speak(10s);
    const MonotonicTime end = desktop.voice().end();
    toggle();
    desktop.runFor(end - desktop.now());
    ASSERT_TRUE(dictation.isRecording);
    ASSERT_THAT(transcriptions(), SizeIs(1));
  }
  std::vector<std::optional<std::string>> fieldOfAll(const std::string& name) {
    std::vector<std::optional<std::string>> values;
    for (const RecordedRequest& request : transcriptions())
      values.push_back(formField(request, name));
    return values;
  }
};

TEST_F(RollingFlow, SegmentsHaveTheSettingsOfTheirMomentAndTheWholeFileTheirSession) {
  state.addVocabularyTerm("Quillo");
  hears(" ");
  recordTwoSegments();
  statusTexts.clear();
  state.inputLanguage = "de";
  state.dictionaryVocabulary.removeEntry(0);
  finish();
  EXPECT_THAT(fieldOfAll("language"), ElementsAre("en-US", "de", "de"));
  EXPECT_THAT(fieldOfAll("vocabulary"), ElementsAre("Quillo", std::nullopt, std::nullopt));
  const auto session = formField(transcriptions().at(0), "sessionId");
  EXPECT_THAT(session.value(), SizeIs(36));
  EXPECT_THAT(fieldOfAll("sessionId"), ElementsAre(session, session, session));
  EXPECT_THAT(statusTexts, ElementsAre("Transcribing", "Finishing transcription", "Transcribing",
                                       "Polishing", "Pasting", "Inserted"));
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

  Published<Words> status;
  std::optional<RollingTranscription> rolling{
      std::in_place, desktop.mainThread(), api,           auth,  state,
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

TEST_F(SegmentsByHand, NoSegmentLeavesATailInTheNextSession) {
  hears("of the old session");
  hears("late", 10s);
  rolling->begin("old");
  rolling->onSegmentReady(segment(0), "old");
  desktop.runFor(1s);
  rolling->onSegmentReady(segment(1), "old");
  rolling->begin("new");
  desktop.runFor(10s);
  rolling->onSegmentReady(segment(0), "new");
  EXPECT_EQ(joined(), "hello there");
  EXPECT_EQ(formField(transcriptions().back(), "previousText"), std::nullopt);
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
