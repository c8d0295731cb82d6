// A recording file that has the size of a real one.
#pragma once

#include <cstdint>

#include "hosts/simulated/memory_file_manager.h"
#include "platform/audio.h"

namespace quillo::simulated {

// Fragmented MP4 (ISO/IEC 14496-12) with AAC of constant rate: a head, then one fragment a second,
// each a box of overhead and its packets of 1024 frames. The sound itself is only counted.
class SimulatedAudioFile final : public AudioFile {
 public:
  static constexpr std::int64_t headBytes = 900;
  static constexpr std::int64_t fragmentOverheadBytes = 120;
  static constexpr std::int64_t framesPerPacket = 1024;

  // The file must exist and be empty; null when its head cannot be written.
  static std::unique_ptr<SimulatedAudioFile> create(MemoryFileManager& files, FilePath path,
                                                    const AudioFileSettings& settings);
  ~SimulatedAudioFile() override;

  AudioFormat processingFormat() const override {
    return {settings_.sampleRate, settings_.channels};
  }
  bool write(const AudioBuffer& buffer) override;

 private:
  SimulatedAudioFile(MemoryFileManager& files, FilePath path, const AudioFileSettings& settings)
      : files_(files), path_(std::move(path)), settings_(settings) {}

  // Writes one fragment of the packets that are complete, or of all when the file ends.
  bool writeFragment(std::int64_t frames);

  MemoryFileManager& files_;
  FilePath path_;
  AudioFileSettings settings_;
  std::int64_t framesWaiting_ = 0;
};

}  // namespace quillo::simulated
