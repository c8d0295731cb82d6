// What every desktop's workspace keeps.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "contracts/support/contract_host.h"
#include "platform/workspace.h"

namespace quillo::contracts {

class WorkspaceHost : public ContractHost {
 public:
  virtual Workspace& workspace() = 0;
  // Starts a program of that name and brings it to the front: its process identifier.
  virtual std::int32_t launch(std::string_view name) = 0;
  // The user brings it to the front.
  virtual void focus(std::int32_t process) = 0;
  virtual void quit(std::int32_t process) = 0;
};

class WorkspaceContract : public PortContract<WorkspaceHost> {
 protected:
  Workspace& workspace() { return host().workspace(); }
  bool runUntilInFront(std::int32_t process) {
    return host().runUntil([this, process] {
      const auto front = workspace().frontmostApplication();
      return front && front->processIdentifier == process;
    });
  }
};

TEST_P(WorkspaceContract, TheFrontmostApplicationFollowsTheUserAndActivationsAndIsTold) {
  const std::int32_t letter = host().launch("letter");
  ASSERT_TRUE(runUntilInFront(letter));
  const RunningApplication letterApplication = *workspace().frontmostApplication();
  EXPECT_EQ(letterApplication.localizedName, "letter");
  EXPECT_TRUE(letterApplication.bundleIdentifier);
  std::vector<std::int32_t> told;
  auto observation = workspace().observeActivation([&](const RunningApplication& application) {
    told.push_back(application.processIdentifier);
  });
  const std::int32_t table = host().launch("table");
  ASSERT_TRUE(host().runUntil([&] { return told.size() == 1; }));
  EXPECT_EQ(told.back(), table);
  EXPECT_EQ(workspace().frontmostApplication()->localizedName, "table");

  EXPECT_TRUE(workspace().activate(letterApplication));
  ASSERT_TRUE(runUntilInFront(letter));
  ASSERT_TRUE(host().runUntil([&] { return told.size() == 2; }));
  EXPECT_EQ(told.back(), letter);

  observation.reset();
  host().focus(table);
  ASSERT_TRUE(runUntilInFront(table));
  host().runFor(std::chrono::milliseconds(50));
  EXPECT_EQ(told.size(), 2u);
  EXPECT_TRUE(workspace().activate(*workspace().frontmostApplication()))
      << "it is in front already";
}

TEST_P(WorkspaceContract, AnApplicationThatQuitIsTerminatedAndCannotBeActivated) {
  const std::int32_t letter = host().launch("letter");
  ASSERT_TRUE(runUntilInFront(letter));
  const RunningApplication application = *workspace().frontmostApplication();
  EXPECT_FALSE(workspace().isTerminated(application));
  host().quit(letter);
  EXPECT_TRUE(host().runUntil([&] { return workspace().isTerminated(application); }));
  EXPECT_TRUE(host().runUntil([&] { return !workspace().frontmostApplication(); }))
      << "nothing is in front";
  EXPECT_EQ(workspace().activate(application), WorkspaceFailure::nothingToShow);
}

}  // namespace quillo::contracts
