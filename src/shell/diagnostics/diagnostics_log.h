// The one plain text log for support: "2026-03-04T09:15:02Z [category] message" a line.
#pragma once

#include <memory>

#include "base/log.h"
#include "base/main_thread.h"
#include "platform/clock.h"
#include "platform/file_manager.h"
#include "platform/opener.h"
#include "platform/serial_queue.h"

namespace quillo {

// log() may be called on any thread; the file is touched on one serial queue alone. The log never
// reports a failure and never stops the program. Nothing is redacted here.
class DiagnosticsLog final : public Log {
 public:
  // The file loses its older half when it grows beyond this.
  static constexpr std::int64_t maximumBytes = 2'097'152;

  DiagnosticsLog(MainThread& mainThread, Clock& clock, FileManager& files, SerialQueues& queues,
                 Opener& opener);

  void log(std::string_view category, std::string_view message) override;
  // Shows the file to the user; makes it first if it is missing.
  void openLog();
  const FilePath& file() const { return file_; }

 private:
  void ensureFileExists();
  void appendLine(const std::string& line);
  void trim();

  MainThread& mainThread_;
  Clock& clock_;
  FileManager& files_;
  Opener& opener_;
  FilePath file_;
  // Last, so that it finishes its work before the members that the work uses go.
  std::unique_ptr<SerialQueue> queue_;
};

}  // namespace quillo
