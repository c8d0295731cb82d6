// The settings file: its form, its damages, and what is left after a kill.
#include <gmock/gmock.h>
#include <spawn.h>
#include <sys/wait.h>

#include <csignal>
#include <fstream>

#include "contracts/linux/linux_contract_host.h"
#include "contracts/support/environment_variable.h"
#include "hosts/linux/posix/json_user_defaults.h"
#include "hosts/linux/posix/system_clock.h"

namespace quillo::linux_host {
namespace {

using contracts::contentsOf;
using contracts::EnvironmentVariable;
using contracts::LinesLog;
using contracts::TemporaryFolder;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class SettingsFile : public testing::Test {
 protected:
  SettingsFile() { std::filesystem::create_directory(file_.parent_path()); }

  void place(std::string_view contents) { std::ofstream(file_) << contents; }
  std::unique_ptr<JsonUserDefaults> open() {
    return std::make_unique<JsonUserDefaults>(file_, host_.mainThread(), clock_, log_);
  }
  std::vector<FilePath> filesBeside() const {
    std::vector<FilePath> files;
    for (const auto& entry : std::filesystem::directory_iterator(file_.parent_path()))
      if (entry.path() != file_) files.push_back(entry.path());
    return files;
  }

  contracts::LinuxContractHost<contracts::ContractHost> host_;
  TemporaryFolder folder_;
  FilePath file_ = folder_.path() / "quillo" / "settings.json";
  SystemClock clock_;
  LinesLog log_;
};

TEST_F(SettingsFile, HoldsOneObjectInTheOrderOfWriting) {
  const auto store = open();
  store->setText("inputLanguage", "de");
  store->setNumber("mac.tokenExpiresAt", 5);
  store->setNumber("tiny", 5e-05);
  store->setInteger("mac.historyRetentionDays", 7);
  store->setData("mac.writingProfiles", "[]");
  store->setDictionaries("snippets", {{{"trigger", "brb"}}});
  store->setText("inputLanguage", "en-US");
  EXPECT_FALSE(std::filesystem::exists(file_)) << "the writes of a turn go together";
  ASSERT_TRUE(
      host_.runUntil([&] { return std::filesystem::exists(file_); }, std::chrono::seconds(5)));
  EXPECT_EQ(contentsOf(file_), R"({
  "inputLanguage": "en-US",
  "mac.tokenExpiresAt": 5.0,
  "tiny": 5e-05,
  "mac.historyRetentionDays": 7,
  "mac.writingProfiles": {
    "$data": "W10="
  },
  "snippets": [
    {
      "trigger": "brb"
    }
  ]
}
)");
  EXPECT_EQ(std::filesystem::status(file_).permissions(),
            std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

TEST_F(SettingsFile, IsSetAsideWhenItIsNotAnObject) {
  for (const char* damage : {"{\"inputLanguage\": \"de\",", "", "[1, 2]", "\xff\xfe{}"}) {
    SCOPED_TRACE(damage);
    place(damage);
    const std::size_t linesBefore = log_.lines().size();
    auto store = open();
    EXPECT_FALSE(store->contains("inputLanguage"));
    store->setText("inputLanguage", "fr");
    store.reset();
    EXPECT_EQ(open()->text("inputLanguage"), "fr") << "the store goes on with a new file";

    ASSERT_EQ(filesBeside().size(), 1u);
    const FilePath kept = filesBeside().front();
    EXPECT_THAT(kept.filename().string(), testing::StartsWith("settings.json.damaged-2"));
    EXPECT_EQ(contentsOf(kept), damage);
    ASSERT_EQ(log_.lines().size(), linesBefore + 1);
    EXPECT_THAT(log_.lines().back(), HasSubstr(kept.filename().string()));
    std::filesystem::remove(kept);
  }
}

TEST_F(SettingsFile, KeepsWhatItCannotRead) {
  place(R"({"mac.autoPaste": "yes", "future": {"deep": [null, 1e300]}, "mac.showInDock": false,
            "snippets": [{"a": "b"}, 3], "huge": 18446744073709551615})");
  auto store = open();
  EXPECT_EQ(store->boolean("mac.autoPaste"), std::nullopt);
  EXPECT_EQ(store->boolean("mac.showInDock"), false);
  EXPECT_EQ(store->dictionaries("snippets"), std::nullopt);
  EXPECT_EQ(store->integer("huge"), std::nullopt);
  store->setText("tone", "friendly");
  store.reset();
  EXPECT_THAT(filesBeside(), IsEmpty());
  const auto kept = parseJson(contentsOf(file_));
  ASSERT_TRUE(kept.has_value());
  EXPECT_EQ((*kept)["mac.autoPaste"], "yes");
  EXPECT_TRUE((*kept)["future"].contains("deep"));
  EXPECT_EQ((*kept)["snippets"].size(), 2u);
  EXPECT_EQ((*kept)["huge"], 18446744073709551615u);
}

TEST_F(SettingsFile, MayBeALinkWhichStaysOne) {
  const FilePath real = folder_.path() / "dotfiles.json";
  std::ofstream(real) << R"({"tone": "neutral"})";
  std::filesystem::create_symlink(real, file_);
  auto store = open();
  EXPECT_EQ(store->text("tone"), "neutral");
  store->setText("tone", "formal");
  store.reset();
  EXPECT_TRUE(std::filesystem::is_symlink(file_));
  EXPECT_THAT(contentsOf(real), HasSubstr("formal"));
}

TEST_F(SettingsFile, ThatCannotBeWrittenIsSaidOnceAndSettingsLastInMemory) {
  std::filesystem::remove(file_.parent_path());
  std::ofstream(file_.parent_path()) << "a file where the folder should be";
  auto store = open();
  for (std::int64_t i = 0; i < 3; ++i) {
    store->setInteger("count", i);
    host_.runFor(std::chrono::milliseconds(5));
    EXPECT_EQ(store->integer("count"), i);
  }
  EXPECT_THAT(log_.lines(), ElementsAre(HasSubstr("settings cannot be written")));
  std::filesystem::remove(file_.parent_path());
  store.reset();
  EXPECT_EQ(open()->integer("count"), 2) << "the end of the program tries once more";
}

// The same case runs once more as a program of its own, which sets a value and dies a turn later.
TEST_F(SettingsFile, HasWhatWasWrittenOneTurnBeforeAKill) {
  constexpr const char* fileOfTheDying = "QUILLO_TESTS_SETTINGS";
  if (const char* const file = std::getenv(fileOfTheDying)) {
    file_ = file;
    const auto store = open();
    store->setText("tone", "friendly");
    host_.mainThread().post([] { std::raise(SIGKILL); });
    host_.runFor(std::chrono::seconds(20));
    FAIL() << "it lives";
  }
  const EnvironmentVariable file(fileOfTheDying, file_.c_str());
  std::string program = std::filesystem::read_symlink("/proc/self/exe").string();
  std::string filter = "--gtest_filter=SettingsFile.HasWhatWasWrittenOneTurnBeforeAKill";
  std::string quiet = "--gtest_brief=1";
  char* arguments[] = {program.data(), filter.data(), quiet.data(), nullptr};
  pid_t child = 0;
  ASSERT_EQ(posix_spawn(&child, program.c_str(), nullptr, nullptr, arguments, environ), 0);
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
  EXPECT_EQ(open()->text("tone"), "friendly");
}

}  // namespace
}  // namespace quillo::linux_host
