// Ports of a desktop that tell the trace what the program does with them.
#pragma once

#include "platform/alerts.h"
#include "platform/sounds.h"
#include "platform/system_log.h"
#include "platform/url_session.h"
#include "simulation/world/forwarding_ports.h"
#include "simulation/world/spoken_words.h"
#include "simulation/world/trace.h"

namespace quillo::sim {

class ObservedLog final : public ForwardingLog {
 public:
  ObservedLog(Log& below, Trace& trace) : ForwardingLog(below), trace_(trace) {}
  void log(std::string_view category, std::string_view message) override;

 private:
  Trace& trace_;
};

class ObservedSystemLog final : public SystemLog {
 public:
  ObservedSystemLog(SystemLog& below, Trace& trace) : below_(below), trace_(trace) {}
  void write(std::string_view line) override;
  void printToStandardOutput(std::string_view line) override;

 private:
  SystemLog& below_;
  Trace& trace_;
};

class ObservedFiles final : public ForwardingFiles {
 public:
  ObservedFiles(FileManager& below, Trace& trace) : ForwardingFiles(below), trace_(trace) {}
  Result<void, FileFailure> writeAtomically(const FilePath& path, const Bytes& bytes) override;
  Result<void, FileFailure> move(const FilePath& from, const FilePath& to) override;
  Result<void, FileFailure> remove(const FilePath& path) override;

 private:
  Trace& trace_;
};

// A request is told with its parts: those of the form, or its JSON body. Warm-ups have none.
class ObservedNetwork final : public URLSessions {
 public:
  ObservedNetwork(URLSessions& below, Trace& trace) : below_(below), trace_(trace) {}
  std::unique_ptr<URLSession> make(URLSessionConfiguration configuration) override;

 private:
  class Session;
  URLSessions& below_;
  Trace& trace_;
  int requests_ = 0;
};

class ObservedKeyPoster final : public ForwardingKeyPoster {
 public:
  // `front` names the application in front; `clipboard` is the plain text there.
  ObservedKeyPoster(KeyPoster& below, Trace& trace, std::function<std::string()> front,
                    std::function<std::string()> clipboard)
      : ForwardingKeyPoster(below),
        trace_(trace),
        front_(std::move(front)),
        clipboard_(std::move(clipboard)) {}
  Result<void, KeyPosterFailure> post(std::int64_t keyCode, KeyDirection direction,
                                      std::uint64_t flags, std::int64_t userData) override;

 private:
  Trace& trace_;
  std::function<std::string()> front_;
  std::function<std::string()> clipboard_;
};

class ObservedPasteboard final : public ForwardingPasteboard {
 public:
  ObservedPasteboard(Pasteboard& below, Trace& trace)
      : ForwardingPasteboard(below), trace_(trace) {}
  void clearContents() override;
  Result<void, PasteboardFailure> writeItems(const std::vector<PasteboardItem>& items) override;

 private:
  Trace& trace_;
};

class ObservedWorkspace final : public ForwardingWorkspace {
 public:
  ObservedWorkspace(Workspace& below, Trace& trace) : ForwardingWorkspace(below), trace_(trace) {}
  Result<void, WorkspaceFailure> activate(const RunningApplication& application) override;

 private:
  Trace& trace_;
};

class ObservedAlerts final : public Alerts {
 public:
  ObservedAlerts(Alerts& below, Trace& trace) : below_(below), trace_(trace) {}
  std::size_t runModal(const Alert& alert) override;

 private:
  Alerts& below_;
  Trace& trace_;
};

class ObservedSounds final : public Sounds {
 public:
  ObservedSounds(Sounds& below, Trace& trace) : below_(below), trace_(trace) {}
  void play(std::string_view name) override;

 private:
  Sounds& below_;
  Trace& trace_;
};

}  // namespace quillo::sim
