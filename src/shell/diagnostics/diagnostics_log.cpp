#include "shell/diagnostics/diagnostics_log.h"

#include "base/iso8601.h"
#include "base/text.h"

namespace quillo {
namespace {

FilePath logFile(const FileManager& files) {
  const FilePath library =
      files.directory(UserDirectory::library).value_or(files.temporaryDirectory());
  return library / "Logs" / "Quillo" / "Quillo Mac.log";
}

std::string newerHalf(const Bytes& contents) {
  const std::vector<std::string> lines = split(contents, '\n');
  const auto kept = static_cast<std::ptrdiff_t>(lines.size() / 2);
  return joined(std::vector<std::string>(lines.end() - kept, lines.end()), "\n");
}

}  // namespace

DiagnosticsLog::DiagnosticsLog(MainThread& mainThread, Clock& clock, FileManager& files,
                               SerialQueues& queues, Opener& opener)
    : mainThread_(mainThread),
      clock_(clock),
      files_(files),
      opener_(opener),
      file_(logFile(files)),
      queue_(queues.make("com.murmex.mac.diagnostics")) {}

void DiagnosticsLog::log(std::string_view category, std::string_view message) {
  // The line is built here, so that it bears the moment of the event.
  std::string line = iso8601(clock_.now());
  line.append(" [").append(category).append("] ").append(message).append("\n");
  queue_->post([this, line = std::move(line)] { appendLine(line); });
}

void DiagnosticsLog::openLog() {
  queue_->post([this] {
    ensureFileExists();
    mainThread_.post([&opener = opener_, file = file_] { opener.openFile(file); });
  });
}

void DiagnosticsLog::ensureFileExists() {
  files_.createDirectory(file_.parent_path());
  if (!files_.exists(file_)) files_.createEmpty(file_);
}

void DiagnosticsLog::appendLine(const std::string& line) {
  ensureFileExists();
  if (!isValidUtf8(line)) return;
  if (files_.append(file_, line)) trim();
}

void DiagnosticsLog::trim() {
  if (files_.size(file_).value_or(0) <= maximumBytes) return;
  const auto contents = files_.read(file_);
  if (!contents || !isValidUtf8(*contents)) return;
  files_.writeAtomically(file_, newerHalf(*contents));
}

}  // namespace quillo
