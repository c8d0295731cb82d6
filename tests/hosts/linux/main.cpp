// Tests of the parts of the Linux host, in a virtual desktop; or, with QUILLO_TESTS_OFFLINE set, in
// a network of their own that has no way out.
#include <gtest/gtest.h>
#include <sched.h>

#include <QApplication>
#include <csignal>
#include <cstdlib>

constexpr int skipped = 77;  // as ctest is told

int main(int argc, char** argv) {
  std::signal(SIGPIPE, SIG_IGN);
  testing::InitGoogleTest(&argc, argv);
  const bool isOffline = std::getenv("QUILLO_TESTS_OFFLINE") != nullptr;
  if (isOffline && unshare(CLONE_NEWNET) != 0 && unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0) {
    std::puts("this kernel lets nobody leave the network");
    return skipped;
  }
  const QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
