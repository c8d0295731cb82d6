// What becomes of the whole-session file, for each way in which a dictation can end.
#include <functional>

#include "dictation_world.h"

namespace quillo {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

class World : public DictationWorld {
 public:
  void fail() {
    desktop.network().reply("/transcribe", Reply{.status = 400, .body = R"({"error":"bad"})"});
    record(2s);
    finish();
    failedFile = dictation.lastFailedRecording()->fileURL.filename();
  }
  void cancelAt(const std::string& status) {
    record(2s);
    toggle();
    ASSERT_TRUE(desktop.runUntil([&] { return dictation.statusText.get() == status; }, 1min));
    desktop.runFor(10ms);
    dictation.cancelProcessing();
    waitUntilProcessed();
  }
  void retry() {
    dictation.retryLastRecording();
    desktop.runTurns();
    waitUntilProcessed();
  }
  void review(ReviewDecision decision) {
    state.outputLanguage = "de";
    state.validateTranslation = true;
    DictationWorld::review.decisions = {decision};
    record(2s);
    finish();
  }

  std::string failedFile;  // of the last failure
};

enum class Fate { deleted, kept };

struct Outcome {
  const char* name;
  Fate fate;
  std::function<void(World&)> happen;
  const char* text;  // what has arrived in the editor
};

const Outcome outcomes[] = {
    {"delivered", Fate::deleted, [](World& w) { w.dictate("hello"); }, "hello"},
    {"copied", Fate::deleted,
     [](World& w) {
       w.state.autoPaste = false;
       w.dictate("hello");
       EXPECT_EQ(w.clipboard(), "hello");
     },
     ""},
    {"reviewed to insert", Fate::deleted, [](World& w) { w.review(ReviewDecision::insert); },
     "hello there"},
    {"reviewed to discard", Fate::deleted, [](World& w) { w.review(ReviewDecision::discard); }, ""},
    {"recorded again", Fate::deleted,
     [](World& w) {
       w.desktop.voice().speak(30s);
       w.review(ReviewDecision::reRecord);
       ASSERT_TRUE(w.desktop.runUntil([&] { return w.dictation.isRecording.get(); }, 5s));
       w.desktop.runFor(2s);
       w.DictationWorld::review.decisions = {ReviewDecision::discard};
       w.finish();
     },
     ""},
    {"refused as too short", Fate::deleted,
     [](World& w) {
       w.record(100ms);
       w.finish();
     },
     ""},
    {"without speech", Fate::deleted, [](World& w) { w.dictate("  "); }, ""},
    {"over the plan's limit", Fate::deleted,
     [](World& w) {
       w.desktop.network().reply(
           "/transcribe", Reply{.status = 429, .body = R"({"error":"Daily limit reached"})"});
       w.desktop.alerts().answer(1);
       w.record(2s);
       w.desktop.after(500ms, [&w] { EXPECT_EQ(w.panel.last(), "hide") << "beside the alert"; });
       w.finish();
     },
     ""},
    {"polish failed twice", Fate::deleted,
     [](World& w) {
       for (int i = 0; i < 2; ++i) w.desktop.network().reply("/transform", Reply{.status = 400});
       w.dictate("raw words");
     },
     "raw words"},
    {"cancelled while transcribing", Fate::kept, [](World& w) { w.cancelAt("Transcribing"); }, ""},
    {"cancelled before a request is repeated", Fate::kept,
     [](World& w) {
       w.desktop.network().reply("/transcribe", Reply{.status = 503});
       w.cancelAt("Transcribing");
     },
     ""},
    {"cancelled while polishing", Fate::kept, [](World& w) { w.cancelAt("Polishing"); }, ""},
    {"cancelled while verifying", Fate::kept,
     [](World& w) {
       w.state.outputLanguage = "de";
       w.state.validateTranslation = true;
       w.cancelAt("Verifying");
     },
     ""},
    {"cancelled too late", Fate::deleted, [](World& w) { w.cancelAt("Pasting"); }, "hello there"},
    {"failed", Fate::kept, [](World& w) { w.fail(); }, ""},
    {"failed again: the older file goes", Fate::kept,
     [](World& w) {
       w.fail();
       const std::string older = w.failedFile;
       w.fail();
       EXPECT_NE(w.failedFile, older);
     },
     ""},
    {"delivered, beside an older failure: that one stays", Fate::kept,
     [](World& w) {
       w.fail();
       w.dictate("hello");
     },
     "hello"},
    {"dismissed", Fate::deleted,
     [](World& w) {
       w.fail();
       w.dictation.dismissLastFailure();
     },
     ""},
    {"retry succeeds", Fate::deleted,
     [](World& w) {
       w.fail();
       w.retry();
     },
     "hello there"},
    {"retry fails", Fate::kept,
     [](World& w) {
       w.fail();
       w.desktop.network().reply("/transcribe", Reply{.status = 400});
       w.retry();
     },
     ""},
};

TEST(RecordingFate, FollowsFromTheOutcome) {
  for (const Outcome& outcome : outcomes) {
    SCOPED_TRACE(outcome.name);
    World world;
    outcome.happen(world);
    EXPECT_EQ(world.editor.editor().text(), outcome.text);
    EXPECT_EQ(world.dictation.canRetryLast.get(), outcome.fate == Fate::kept);
    if (outcome.fate == Fate::deleted) {
      EXPECT_THAT(world.recordings(), IsEmpty());
      continue;
    }
    ASSERT_THAT(world.recordings(), SizeIs(1)) << "the segments go in any case";
    EXPECT_EQ(world.recordings()[0], world.dictation.lastFailedRecording()->fileURL.filename());
    if (!world.failedFile.empty()) EXPECT_EQ(world.recordings()[0], world.failedFile);
  }
}

}  // namespace
}  // namespace quillo
