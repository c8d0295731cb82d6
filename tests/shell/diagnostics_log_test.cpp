#include "shell/diagnostics/diagnostics_log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/iso8601.h"
#include "base/text.h"
#include "hosts/simulated/simulated_desktop.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using simulated::SimulatedDesktop;
using testing::ElementsAre;
using testing::EndsWith;

class DiagnosticsLogTest : public testing::Test {
 protected:
  DiagnosticsLogTest() { desktop_.clock().set(*dateFromIso8601("2026-03-04T09:15:02Z")); }

  DiagnosticsLog makeLog() {
    return DiagnosticsLog(desktop_.mainThread(), desktop_.clock(), desktop_.files(),
                          desktop_.queues(), desktop_.opener());
  }
  std::vector<std::string> lines(const DiagnosticsLog& log) {
    return split(desktop_.files().read(log.file()).value_or("no file"), '\n');
  }

  SimulatedDesktop desktop_;
};

TEST_F(DiagnosticsLogTest, LinesCarryTheMomentOfTheEventAndReachTheFileLater) {
  DiagnosticsLog log = makeLog();
  EXPECT_THAT(log.file().string(), EndsWith("/Logs/Quillo/Quillo Mac.log"));
  log.log("usage", "refresh failed: The request timed out.");
  EXPECT_FALSE(desktop_.files().exists(log.file()));
  desktop_.clock().set(*dateFromIso8601("2026-03-04T10:00:00Z"));
  log.log("app", "two\nlines");
  log.log("app", "broken \xff bytes are dropped");
  desktop_.runTurns();
  EXPECT_THAT(lines(log),
              ElementsAre("2026-03-04T09:15:02Z [usage] refresh failed: The request timed out.",
                          "2026-03-04T10:00:00Z [app] two", "lines", ""));
}

TEST_F(DiagnosticsLogTest, TheFolderIsMadeAgainAndAFullDiskStopsNothing) {
  DiagnosticsLog log = makeLog();
  desktop_.files().setFull(true);
  log.log("app", "lost");
  desktop_.runTurns();
  desktop_.files().setFull(false);
  desktop_.files().remove(log.file());
  desktop_.files().remove(log.file().parent_path());
  log.log("app", "kept");
  desktop_.runTurns();
  EXPECT_THAT(lines(log), ElementsAre(EndsWith("kept"), ""));
}

TEST_F(DiagnosticsLogTest, TheOlderHalfGoesOneByteAboveTheLimit) {
  DiagnosticsLog log = makeLog();
  log.log("app", "x");
  desktop_.runTurns();
  const std::size_t lineSize = desktop_.files().read(log.file())->size();
  Bytes contents;
  while (contents.size() + 100 + lineSize < DiagnosticsLog::maximumBytes)
    contents += std::string(99, 'a') + "\n";
  contents.insert(0, DiagnosticsLog::maximumBytes - lineSize - contents.size(), 'b');
  desktop_.files().writeAtomically(log.file(), contents);

  log.log("app", "x");  // now exactly at the limit
  desktop_.runTurns();
  EXPECT_EQ(desktop_.files().size(log.file()), DiagnosticsLog::maximumBytes);
  const std::size_t before = lines(log).size();

  log.log("app", "newest");
  desktop_.runTurns();
  const auto after = lines(log);
  EXPECT_EQ(after.size(), (before + 1) / 2);
  EXPECT_THAT(after[after.size() - 2], EndsWith("newest"));

  const Bytes noText(DiagnosticsLog::maximumBytes, '\xff');
  desktop_.files().writeAtomically(log.file(), noText);
  log.log("app", "x");
  desktop_.runTurns();
  EXPECT_EQ(desktop_.files().size(log.file()), DiagnosticsLog::maximumBytes + lineSize);
}

}  // namespace
}  // namespace quillo
