// A second start of the program finds the first.
#include <sys/socket.h>
#include <sys/un.h>

#include <algorithm>
#include <optional>
#include <thread>

#include "contracts/linux/linux_contract_host.h"
#include "hosts/linux/session/single_instance.h"

namespace quillo::linux_host {
namespace {

using Claim = SingleInstance::Claim;

class SingleInstanceTest : public testing::Test {
 protected:
  // Another start, which waits for the first while that runs its loop.
  Claim startAgain() {
    std::atomic<std::optional<Claim>*> answered = nullptr;
    std::optional<Claim> claim;
    std::jthread other([&] {
      claim = SingleInstance(folder_.path() / "quillo").claim();
      answered = &claim;
    });
    EXPECT_TRUE(host_.runUntil([&] { return answered != nullptr; }, std::chrono::seconds(10)));
    return claim.value();
  }

  contracts::LinuxContractHost<contracts::ContractHost> host_;
  contracts::TemporaryFolder folder_;
};

TEST_F(SingleInstanceTest, IsBroughtForwardByEveryLaterStartUntilItEnds) {
  int reopened = 0;
  {
    SingleInstance first(folder_.path() / "quillo");
    ASSERT_EQ(first.claim(), Claim::first);
    first.onReopen([&] { ++reopened; });
    EXPECT_EQ(startAgain(), Claim::runningElsewhere);
    EXPECT_EQ(startAgain(), Claim::runningElsewhere);
    EXPECT_TRUE(host_.runUntil([&] { return reopened == 2; }, std::chrono::seconds(5)));
  }
  EXPECT_EQ(SingleInstance(folder_.path() / "quillo").claim(), Claim::first);
  EXPECT_EQ(reopened, 2);
}

TEST_F(SingleInstanceTest, TakesThePlaceOfADeadOne) {
  // A program that was killed leaves its lock file and its socket; the lock itself went with it.
  std::filesystem::create_directory(folder_.path() / "quillo");
  const FileDescriptor dead(::socket(AF_UNIX, SOCK_STREAM, 0));
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::ranges::copy((folder_.path() / "quillo" / "instance.socket").string(), address.sun_path);
  ASSERT_EQ(::bind(dead.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  SingleInstance next(folder_.path() / "quillo");
  EXPECT_EQ(next.claim(), Claim::first);
  bool isReopened = false;
  next.onReopen([&] { isReopened = true; });
  EXPECT_EQ(startAgain(), Claim::runningElsewhere);
  EXPECT_TRUE(isReopened);
}

TEST_F(SingleInstanceTest, ThatDoesNotAnswerIsNotWaitedForForEver) {
  SingleInstance first(folder_.path() / "quillo");
  ASSERT_EQ(first.claim(), Claim::first);
  // Its loop does not run here.
  SingleInstance second(folder_.path() / "quillo");
  EXPECT_EQ(second.claim(std::chrono::milliseconds(10)), Claim::unresponsive);
}

TEST_F(SingleInstanceTest, IsUnknownWhereNothingCanBeKept) {
  EXPECT_EQ(SingleInstance("/proc/no such folder").claim(), Claim::impossible);
}

}  // namespace
}  // namespace quillo::linux_host
