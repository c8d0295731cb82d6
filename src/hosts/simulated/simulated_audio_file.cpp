#include "hosts/simulated/simulated_audio_file.h"

namespace quillo::simulated {
namespace {

// The file type box: its length, "ftyp", the brand.
Bytes headOfFile() {
  Bytes head(
      "\0\0\0\x1c"
      "ftypM4A ",
      12);
  head.resize(static_cast<std::size_t>(SimulatedAudioFile::headBytes));
  return head;
}

}  // namespace

std::unique_ptr<SimulatedAudioFile> SimulatedAudioFile::create(MemoryFileManager& files,
                                                               FilePath path,
                                                               const AudioFileSettings& settings) {
  if (settings.sampleRate <= 0 || settings.channels <= 0) return nullptr;
  if (!files.append(path, headOfFile())) return nullptr;
  return std::unique_ptr<SimulatedAudioFile>(
      new SimulatedAudioFile(files, std::move(path), settings));
}

SimulatedAudioFile::~SimulatedAudioFile() {
  if (framesWaiting_ > 0) writeFragment(framesWaiting_);
}

bool SimulatedAudioFile::write(const AudioBuffer& buffer) {
  framesWaiting_ += static_cast<std::int64_t>(buffer.frames());
  const auto framesPerSecond = static_cast<std::int64_t>(settings_.sampleRate);
  if (framesWaiting_ < framesPerSecond) return true;
  const std::int64_t complete = framesWaiting_ / framesPerPacket * framesPerPacket;
  framesWaiting_ -= complete;
  return writeFragment(complete);
}

bool SimulatedAudioFile::writeFragment(std::int64_t frames) {
  const std::int64_t packets = (frames + framesPerPacket - 1) / framesPerPacket;
  const double secondsPerPacket = static_cast<double>(framesPerPacket) / settings_.sampleRate;
  const auto packetBytes = static_cast<std::int64_t>(settings_.bitRate / 8.0 * secondsPerPacket);
  return files_.extend(path_, fragmentOverheadBytes + packets * packetBytes);
}

}  // namespace quillo::simulated
