// What every file manager keeps.
#pragma once

#include <gmock/gmock.h>

#include "contracts/support/contract_host.h"
#include "platform/file_manager.h"

namespace quillo::contracts {

class FileManagerHost : public ContractHost {
 public:
  virtual FileManager& files() = 0;
  // The disk takes `bytes` more, all files together, or again any number.
  virtual void leaveRoomFor(std::optional<std::int64_t> bytes) = 0;
};

class FileManagerContract : public PortContract<FileManagerHost> {
 protected:
  FileManager& files() { return host().files(); }
  // A folder that is there and empty.
  FilePath folder() {
    const FilePath path = files().directory(UserDirectory::applicationSupport).value() / "Quillo";
    EXPECT_TRUE(files().createDirectory(path));
    return path;
  }
};

TEST_P(FileManagerContract, TheUsersDirectoriesAreThereAndApart) {
  std::vector<FilePath> seen;
  for (const auto which :
       {UserDirectory::caches, UserDirectory::applicationSupport, UserDirectory::library}) {
    const auto path = files().directory(which);
    ASSERT_TRUE(path.has_value());
    EXPECT_TRUE(path->is_absolute());
    EXPECT_TRUE(files().exists(*path));
    EXPECT_TRUE(files().writeAtomically(*path / "mark", "1"));
    EXPECT_THAT(seen, testing::Not(testing::Contains(*path)));
    seen.push_back(*path);
  }
  EXPECT_TRUE(files().exists(files().temporaryDirectory()));
}

TEST_P(FileManagerContract, WrittenFilesAreReadListedMovedAndRemoved) {
  const FilePath history = folder() / "history-user-1.json";
  const Bytes contents("[{\"id\":\0\xff}]\n", 13);
  EXPECT_TRUE(files().writeAtomically(history, "old and longer than what follows"));
  EXPECT_TRUE(files().writeAtomically(history, contents));
  EXPECT_EQ(files().read(history), contents);
  EXPECT_EQ(files().size(history), 13);
  EXPECT_TRUE(files().writeAtomically(folder() / "a", ""));
  EXPECT_EQ(files().read(folder() / "a"), "");
  EXPECT_THAT(*files().list(folder()), testing::ElementsAre("a", "history-user-1.json"))
      << "sorted, and no temporary file is left";

  const FilePath moved = folder() / "moved.json";
  EXPECT_TRUE(files().move(history, moved));
  EXPECT_FALSE(files().exists(history));
  EXPECT_EQ(files().read(moved), contents);
  EXPECT_EQ(files().move(moved, folder() / "a"), FileFailure::refused)
      << "an existing file is never replaced";
  EXPECT_EQ(files().read(folder() / "a"), "");
  EXPECT_TRUE(files().remove(moved));
  EXPECT_FALSE(files().exists(moved));
}

TEST_P(FileManagerContract, AppendingTakesAFileAndWritingADirectoryThatIsThere) {
  const FilePath deep = folder() / "Logs" / "Quillo" / "old";
  const FilePath log = deep / "Quillo Mac.log";
  EXPECT_EQ(files().writeAtomically(log, "x"), FileFailure::absent) << "not before it is made";
  EXPECT_TRUE(files().createDirectory(deep));
  EXPECT_TRUE(files().createDirectory(deep)) << "it stands";
  EXPECT_EQ(files().append(log, "line\n"), FileFailure::absent);
  EXPECT_FALSE(files().exists(log));
  EXPECT_TRUE(files().createEmpty(log));
  EXPECT_EQ(files().size(log), 0);
  EXPECT_TRUE(files().append(log, "first\n"));
  EXPECT_TRUE(files().append(log, "second\n"));
  EXPECT_EQ(files().read(log), "first\nsecond\n");
  EXPECT_THAT(*files().list(folder()), testing::ElementsAre("Logs"));
}

TEST_P(FileManagerContract, WhatCannotBeIsAFailureAndChangesNothing) {
  const FilePath file = folder() / "file";
  const FilePath missing = folder() / "missing";
  ASSERT_TRUE(files().writeAtomically(file, "kept"));
  EXPECT_FALSE(files().exists(missing));
  EXPECT_EQ(files().read(missing), FileFailure::absent);
  EXPECT_EQ(files().size(missing), FileFailure::absent);
  EXPECT_EQ(files().list(missing), FileFailure::absent);
  EXPECT_EQ(files().remove(missing), FileFailure::absent);
  EXPECT_EQ(files().move(missing, folder() / "b"), FileFailure::absent);
  EXPECT_EQ(files().read(folder()), FileFailure::refused) << "a directory is not a file";
  EXPECT_EQ(files().writeAtomically(folder(), "x"), FileFailure::refused);
  // A file where a directory would be needed.
  EXPECT_EQ(files().createDirectory(file / "child"), FileFailure::refused);
  EXPECT_EQ(files().createEmpty(file / "child"), FileFailure::absent);
  EXPECT_EQ(files().writeAtomically(file / "child", "x"), FileFailure::absent);
  EXPECT_EQ(files().read(file), "kept");
  EXPECT_THAT(*files().list(folder()), testing::ElementsAre("file"));
}

TEST_P(FileManagerContract, AFullDiskLeavesTheOldContents) {
  const FilePath file = folder() / "history.json";
  const FilePath log = folder() / "log";
  ASSERT_TRUE(files().writeAtomically(file, "old"));
  ASSERT_TRUE(files().writeAtomically(log, "line\n"));
  host().leaveRoomFor(10);
  EXPECT_EQ(files().writeAtomically(file, std::string(10'000, 'n')), FileFailure::noRoom);
  EXPECT_EQ(files().append(log, std::string(10'000, 'n')), FileFailure::noRoom);
  host().leaveRoomFor(std::nullopt);
  EXPECT_EQ(files().read(file), "old");
  EXPECT_EQ(files().read(log), "line\n");
  EXPECT_THAT(*files().list(folder()), testing::ElementsAre("history.json", "log"));
  EXPECT_TRUE(files().append(log, "next\n"));
  EXPECT_EQ(files().read(log), "line\nnext\n");
}

}  // namespace quillo::contracts
