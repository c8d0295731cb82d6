// A recording file with the shape and the size of a real one.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "hosts/simulated/storage/memory_file_manager.h"
#include "platform/audio_buffer.h"
#include "platform/audio_file.h"

namespace quillo::simulated {

// Boxes as in a fragmented MP4 (ISO/IEC 14496-12): a head, then one fragment a second, which tells
// how many frames it has and bears as many bytes as AAC of this rate. The sound itself is not kept.
// A fragment that finds no room waits in memory until there is some.
class SimulatedAudioFile final : public AudioFile {
 public:
  // The file must exist and be empty; null when its head cannot be written.
  static std::unique_ptr<SimulatedAudioFile> create(MemoryFileManager& files, FilePath path,
                                                    const AudioFileSettings& settings);
  ~SimulatedAudioFile() override;

  AudioFormat processingFormat() const override {
    return {settings_.sampleRate, settings_.channels};
  }
  Result<void, AudioFileFailure> write(const AudioBuffer& buffer) override;

  // --- Driver ---

  // Seconds of sound in the contents of a file, as a player would find them; nothing when they are
  // no such file.
  static std::optional<double> playableSeconds(const Bytes& contents);

 private:
  SimulatedAudioFile(MemoryFileManager& files, FilePath path, const AudioFileSettings& settings)
      : files_(files), path_(std::move(path)), settings_(settings) {}

  void addFragment(std::int64_t frames);
  // False when something is left.
  bool flush();

  MemoryFileManager& files_;
  FilePath path_;
  AudioFileSettings settings_;
  std::int64_t framesWaiting_ = 0;
  Bytes unwritten_;
};

}  // namespace quillo::simulated
