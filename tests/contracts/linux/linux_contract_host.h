// The Linux host under a contract suite. The program runs in a virtual desktop
// (scripts/virtual-desktop), with one QApplication for all cases.
#pragma once

#include <QCoreApplication>
#include <QTimer>
#include <fstream>
#include <mutex>
#include <sstream>
#include <string>
#include <vector>

#include "base/log.h"
#include "contracts/support/contract_host.h"
#include "hosts/linux/posix/monotonic_clock.h"
#include "hosts/linux/qt/qt_main_thread.h"
#include "platform/file_path.h"

namespace quillo::contracts {

// A task whose error nobody awaited fails the case.
class FailingSystemLog final : public SystemLog {
 public:
  void write(std::string_view line) override { ADD_FAILURE() << line; }
  void printToStandardOutput(std::string_view line) override { ADD_FAILURE() << line; }
};

// Keeps its lines. Any thread.
class LinesLog final : public Log {
 public:
  void log(std::string_view category, std::string_view message) override {
    const std::scoped_lock lock(mutex_);
    lines_.push_back("[" + std::string(category) + "] " + std::string(message));
  }
  std::vector<std::string> lines() const {
    const std::scoped_lock lock(mutex_);
    return lines_;
  }

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> lines_;
};

// A folder of its own, gone with all that is in it.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "quillo-test.XXXXXX").string();
    path_ = ::mkdtemp(name.data());
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
  }
  const FilePath& path() const { return path_; }

 private:
  FilePath path_;
};

// Empty for a file that is not there.
inline std::string contentsOf(const FilePath& path) {
  std::ostringstream contents;
  contents << std::ifstream(path).rdbuf();
  return contents.str();
}

// `Host` is the abstract host of a suite.
template <class Host>
class LinuxContractHost : public Host {
 public:
  linux_host::QtMainThread& mainThread() override { return mainThread_; }

  bool runUntil(const std::function<bool()>& holds, Duration limit) override {
    const MonotonicTime end = linux_host::monotonicNow() + limit;
    // Other threads change what is looked at, too, and post nothing.
    QTimer look;
    look.start(std::chrono::milliseconds(2));
    while (!holds()) {
      if (linux_host::monotonicNow() >= end) return false;
      QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    return true;
  }

 private:
  FailingSystemLog systemLog_;
  linux_host::QtMainThread mainThread_{systemLog_};
};

}  // namespace quillo::contracts
