#include "state/history_store.h"

#include "base/iso8601.h"
#include "state_fixture.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;
using testing::SizeIs;

class HistoryTest : public StateTest {
 protected:
  HistoryTest() {
    stored().setText("mac.deviceId", "qd_1_a");
    desktop_.clock().set(*dateFromIso8601("2026-03-04T09:15:02Z"));
    desktop_.files().createDirectory(file("").parent_path());
  }
  FilePath file(const std::string& name) {
    return *desktop_.files().directory(UserDirectory::applicationSupport) / "Quillo" / name;
  }
  Bytes contents(const std::string& name) {
    return desktop_.files().read(file(name)).value_or("no file");
  }
  void put(const std::string& name, const Bytes& bytes) {
    desktop_.files().writeAtomically(file(name), bytes);
  }
  MacHistoryStore& open() {
    history_.reset();  // before the settings that it refers to
    MacAppState& state = launch();
    history_.emplace(state, state, stored(), desktop_.files(), desktop_.queues(), desktop_.clock(),
                     desktop_.random());
    return *history_;
  }
  void record(const std::string& text) { history_->record("raw", text, "en-US", "de", "Notes"); }
  std::vector<std::string> texts() {
    std::vector<std::string> texts;
    for (const auto& entry : history_->entries.get()) texts.push_back(entry->finalText);
    return texts;
  }
  static std::string entryJson(const std::string& date, const std::string& text,
                               const std::string& more = "") {
    return R"({"id":"6f9619ff-8b86-d011-b42d-00c04fc964ff","date":")" + date +
           R"(","rawTranscript":"r","finalText":")" + text +
           R"(","inputLanguage":"auto","outputLanguage":"de")" + more + "}";
  }

  static constexpr const char* deviceFile = "history-device-qd_1_a.json";
  std::optional<MacHistoryStore> history_;
};

TEST_F(HistoryTest, ADictationIsWrittenInTheOrderOfItsFieldsAndReadBack) {
  open().record("rohtext", " Hallo “Welt”\n", "auto", "de", std::nullopt);
  desktop_.clock().set(*dateFromIso8601("2026-03-04T10:00:00Z") + 999ms);
  record("zwei");
  record(" \n\t");
  EXPECT_EQ(contents(deviceFile), "no file");  // never in the turn of the dictation
  desktop_.runTurns();
  EXPECT_THAT(contents(deviceFile),
              MatchesRegex(R"(\[\{"id":"[0-9A-F-]{36}","date":"2026-03-04T10:00:00Z",)"
                           R"("rawTranscript":"raw","finalText":"zwei","inputLanguage":"en-US",)"
                           R"("outputLanguage":"de","targetAppName":"Notes"\},\{.*)"
                           R"("outputLanguage":"de"\}\])"));
  open();
  EXPECT_THAT(texts(), ElementsAre("zwei", " Hallo “Welt”\n"));
  EXPECT_EQ(history_->entries->back()->targetAppName, std::nullopt);
  EXPECT_EQ(history_->entries->front()->date, *dateFromIso8601("2026-03-04T10:00:00Z"));
}

TEST_F(HistoryTest, EachAccountHasItsFileAlsoWhileWritesAreQueued) {
  desktop_.queues().setLatency(5s);
  open();
  record("guest");
  stored().setText("mac.userId", "a/b:c\\d");
  record("user");  // recording notices the change by itself
  EXPECT_THAT(texts(), ElementsAre("user"));
  desktop_.runFor(5s);
  EXPECT_THAT(contents("history-user-a_b_c_d.json"), HasSubstr("\"user\""));
  EXPECT_THAT(contents(deviceFile), Not(HasSubstr("\"user\"")));
  state_->clearAccountState();  // signs out
  EXPECT_THAT(texts(), ElementsAre("guest"));
}

TEST_F(HistoryTest, TheFileIsReadWholeOrNotAtAll) {
  const std::string good = entryJson("2026-03-01T00:00:00Z", "good", R"(,"new":1)");
  put(deviceFile, "[" + good + "]");
  open();
  EXPECT_EQ(history_->entries->front()->id, "6F9619FF-8B86-D011-B42D-00C04FC964FF");
  const std::vector<std::string> bad = {
      R"({"id":"6f9619ff-8b86-d011-b42d-00c04fc964ff","finalText":"no date"})",
      entryJson("2026-02-30T00:00:00Z", "no such day"),
      entryJson("9999-01-01T00:00:00Z", "no date that we can count"),
      entryJson("2026-03-01T00:00:00Z", "name of another type", R"(,"targetAppName":5)"), "7"};
  for (const std::string& element : bad) {
    put(deviceFile, "[" + good + "," + element + "]");
    open();
    EXPECT_THAT(texts(), IsEmpty()) << element;
  }
}

TEST_F(HistoryTest, TheFileOfTheTimeBeforeAccountsIsTakenOverOnce) {
  put("history.json", "[" + entryJson("2026-03-01T00:00:00Z", "old") + "]");
  desktop_.files().makeUnwritable(file(deviceFile));
  stored().setText("mac.userId", "u1");
  open();
  EXPECT_TRUE(desktop_.files().exists(file("history.json")));  // tried again at the next start
  desktop_.files().heal(file(deviceFile));
  open();
  EXPECT_THAT(texts(), IsEmpty());  // it is the device's, not the user's
  EXPECT_THAT(contents(deviceFile), HasSubstr("\"old\""));

  put("history.json", "[]");
  open();
  EXPECT_FALSE(desktop_.files().exists(file("history.json")));
  EXPECT_THAT(contents(deviceFile), HasSubstr("\"old\""));
}

TEST_F(HistoryTest, RetentionActsOnRecordingAndWhenItIsSet) {
  put(deviceFile, "[" + entryJson("2026-03-04T00:00:00Z", "new") + "," +
                      entryJson("2026-03-01T00:00:00Z", "between") + "]");
  stored().setInteger("mac.historyRetentionDays", 7);
  open();
  desktop_.clock().set(*dateFromIso8601("2026-03-09T12:00:00Z"));
  record("today");
  EXPECT_THAT(texts(), ElementsAre("today", "new"));
  state_->historyRetentionDays = INT64_MAX;
  EXPECT_THAT(texts(), SizeIs(2));
  state_->historyRetentionDays = 1;
  EXPECT_THAT(texts(), ElementsAre("today"));
}

TEST_F(HistoryTest, TheOldestOfFiveHundredGoesForANewOne) {
  std::string full = entryJson("2026-03-01T00:00:00Z", "newest of the file");
  for (int i = 1; i < 500; ++i) full += "," + entryJson("2026-03-01T00:00:00Z", std::to_string(i));
  put(deviceFile, "[" + full + "]");
  open();
  for (const char* text : {"a", "b", "c"}) record(text);
  ASSERT_THAT(texts(), SizeIs(500));
  EXPECT_EQ(texts()[3], "newest of the file");
  EXPECT_EQ(texts().back(), "496");
}

TEST_F(HistoryTest, NeitherAMissingFolderNorAFullDiskStopsADictation) {
  desktop_.files().withholdDirectory(UserDirectory::applicationSupport);
  open();
  record("first");
  desktop_.runTurns();
  desktop_.files().setFull(true);
  record("second");
  desktop_.runTurns();
  EXPECT_THAT(texts(), ElementsAre("second", "first"));
  EXPECT_THAT(*desktop_.files().read(desktop_.files().temporaryDirectory() / "Quillo" / deviceFile),
              HasSubstr("first"));
}

}  // namespace
}  // namespace quillo
