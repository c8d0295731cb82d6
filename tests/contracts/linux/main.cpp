// The contract suites on the real desktop.
#include <gtest/gtest.h>

#include <QApplication>
#include <csignal>

int main(int argc, char** argv) {
  std::signal(SIGPIPE, SIG_IGN);
  testing::InitGoogleTest(&argc, argv);
  const QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
