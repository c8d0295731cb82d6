// Ports that hand every call on, for those that change or watch one of them.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/log.h"
#include "platform/audio_buffer.h"
#include "platform/audio_converter.h"
#include "platform/audio_engine.h"
#include "platform/audio_file.h"
#include "platform/audio_system.h"
#include "platform/file_manager.h"
#include "platform/key_event.h"
#include "platform/key_poster.h"
#include "platform/pasteboard.h"
#include "platform/workspace.h"

namespace quillo::sim {

class ForwardingFiles : public FileManager {
 public:
  explicit ForwardingFiles(FileManager& below) : below_(below) {}

  std::optional<FilePath> directory(UserDirectory which) const override {
    return below_.directory(which);
  }
  FilePath temporaryDirectory() const override { return below_.temporaryDirectory(); }
  bool exists(const FilePath& path) const override { return below_.exists(path); }
  Result<std::int64_t, FileFailure> size(const FilePath& path) const override {
    return below_.size(path);
  }
  Result<Bytes, FileFailure> read(const FilePath& path) const override { return below_.read(path); }
  Result<std::vector<std::string>, FileFailure> list(const FilePath& directory) const override {
    return below_.list(directory);
  }
  Result<void, FileFailure> createDirectory(const FilePath& path) override {
    return below_.createDirectory(path);
  }
  Result<void, FileFailure> createEmpty(const FilePath& path) override {
    return below_.createEmpty(path);
  }
  Result<void, FileFailure> append(const FilePath& path, const Bytes& bytes) override {
    return below_.append(path, bytes);
  }
  Result<void, FileFailure> writeAtomically(const FilePath& path, const Bytes& bytes) override {
    return below_.writeAtomically(path, bytes);
  }
  Result<void, FileFailure> move(const FilePath& from, const FilePath& to) override {
    return below_.move(from, to);
  }
  Result<void, FileFailure> remove(const FilePath& path) override { return below_.remove(path); }

 protected:
  FileManager& below_;
};

class ForwardingPasteboard : public Pasteboard {
 public:
  explicit ForwardingPasteboard(Pasteboard& below) : below_(below) {}

  std::int64_t changeCount() const override { return below_.changeCount(); }
  std::unique_ptr<PasteboardContents> contents() const override { return below_.contents(); }
  void clearContents() override { below_.clearContents(); }
  Result<void, PasteboardFailure> writeItems(const std::vector<PasteboardItem>& items) override {
    return below_.writeItems(items);
  }
  Result<std::string, PasteboardFailure> string() const override { return below_.string(); }

 protected:
  Pasteboard& below_;
};

class ForwardingWorkspace : public Workspace {
 public:
  explicit ForwardingWorkspace(Workspace& below) : below_(below) {}

  std::optional<RunningApplication> frontmostApplication() const override {
    return below_.frontmostApplication();
  }
  Result<void, WorkspaceFailure> activate(const RunningApplication& application) override {
    return below_.activate(application);
  }
  bool isTerminated(const RunningApplication& application) const override {
    return below_.isTerminated(application);
  }
  std::shared_ptr<void> observeActivation(
      std::function<void(const RunningApplication&)> activated) override {
    return below_.observeActivation(std::move(activated));
  }

 protected:
  Workspace& below_;
};

class ForwardingKeyPoster : public KeyPoster {
 public:
  explicit ForwardingKeyPoster(KeyPoster& below) : below_(below) {}

  Result<void, KeyPosterFailure> post(std::int64_t keyCode, KeyDirection direction,
                                      std::uint64_t flags, std::int64_t userData) override {
    return below_.post(keyCode, direction, flags, userData);
  }

 protected:
  KeyPoster& below_;
};

class ForwardingLog : public Log {
 public:
  explicit ForwardingLog(Log& below) : below_(below) {}
  void log(std::string_view category, std::string_view message) override {
    below_.log(category, message);
  }

 protected:
  Log& below_;
};

class ForwardingAudioSystem : public AudioSystem {
 public:
  explicit ForwardingAudioSystem(AudioSystem& below) : below_(below) {}

  std::unique_ptr<AudioEngine> makeEngine() override { return below_.makeEngine(); }
  Result<std::unique_ptr<AudioFile>, AudioFileFailure> openForWriting(
      const FilePath& path, const AudioFileSettings& settings) override {
    return below_.openForWriting(path, settings);
  }
  Result<std::unique_ptr<AudioConverter>, AudioConverterFailure> makeConverter(
      AudioFormat from, AudioFormat to) override {
    return below_.makeConverter(from, to);
  }

 protected:
  AudioSystem& below_;
};

}  // namespace quillo::sim
