// The user's directories, private files, and days of the calendar.
#include <gmock/gmock.h>

#include <ctime>

#include "base/iso8601.h"
#include "contracts/linux/linux_contract_host.h"
#include "contracts/support/environment_variable.h"
#include "hosts/linux/posix/posix_file_manager.h"
#include "hosts/linux/posix/system_clock.h"

namespace quillo::linux_host {
namespace {

using contracts::EnvironmentVariable;
using std::filesystem::perms;

TEST(XdgDirectories, FollowTheEnvironmentAndElseTheHome) {
  const EnvironmentVariable home("HOME", "/home/ada");
  const EnvironmentVariable caches("XDG_CACHE_HOME", "/var/tmp/ada");
  const EnvironmentVariable data("XDG_DATA_HOME", "relative/paths/do/not/count");
  const EnvironmentVariable state("XDG_STATE_HOME", nullptr);
  const EnvironmentVariable runtime("XDG_RUNTIME_DIR", nullptr);
  const auto directories = XdgDirectories::ofThisUser();
  EXPECT_EQ(directories.cacheHome, "/var/tmp/ada");
  EXPECT_EQ(directories.dataHome, "/home/ada/.local/share");
  EXPECT_EQ(directories.stateHome, "/home/ada/.local/state");
  EXPECT_EQ(directories.runtimeDirectory, std::nullopt);
}

TEST(PosixFileManager, MakesEverythingForTheUserAlone) {
  const contracts::TemporaryFolder home;
  PosixFileManager files({.cacheHome = home.path() / "cache", .dataHome = std::nullopt});
  const FilePath caches = files.directory(UserDirectory::caches).value();
  EXPECT_EQ(caches, home.path() / "cache" / "quillo");
  EXPECT_EQ(files.directory(UserDirectory::applicationSupport), std::nullopt);
  const auto openDescriptors = [&files] { return files.list("/proc/self/fd")->size(); };
  const std::size_t openBefore = openDescriptors();
  ASSERT_TRUE(files.createEmpty(caches / "log"));
  ASSERT_TRUE(files.append(caches / "log", "line\n"));
  ASSERT_EQ(files.read(caches / "log"), "line\n");
  ASSERT_TRUE(files.writeAtomically(caches / "history", "[]"));
  EXPECT_FALSE(files.read("/dev/null")) << "no file that ends";
  EXPECT_EQ(openDescriptors(), openBefore);
  const auto permissionsOf = [](const FilePath& path) {
    return std::filesystem::status(path).permissions();
  };
  EXPECT_EQ(permissionsOf(caches), perms::owner_all);
  EXPECT_EQ(permissionsOf(home.path() / "cache"), perms::owner_all);
  EXPECT_EQ(permissionsOf(caches / "log"), perms::owner_read | perms::owner_write);
  EXPECT_EQ(permissionsOf(caches / "history"), perms::owner_read | perms::owner_write);
}

TEST(SystemClock, KeepsTheTimeOfDayWhereTheOffsetChanges) {
  {
    // There the clock went forward in the night before 2026-03-29.
    const EnvironmentVariable zone("TZ", "Europe/Berlin");
    ::tzset();
    const SystemClock clock;
    const Date monday = dateFromIso8601("2026-03-30T08:00:00Z").value();
    EXPECT_EQ(iso8601(clock.daysBefore(monday, 1)), "2026-03-29T08:00:00Z");
    EXPECT_EQ(iso8601(clock.daysBefore(monday, 2)), "2026-03-28T09:00:00Z");
    EXPECT_EQ(iso8601(clock.daysBefore(monday, 30)), "2026-02-28T09:00:00Z");
    EXPECT_EQ(iso8601(clock.daysBefore(monday, -1)), "2026-03-31T08:00:00Z");
    const Date later = monday + std::chrono::milliseconds(7);
    EXPECT_EQ(later - clock.daysBefore(later, 1), std::chrono::hours(24));
  }
  ::tzset();
}

}  // namespace
}  // namespace quillo::linux_host
