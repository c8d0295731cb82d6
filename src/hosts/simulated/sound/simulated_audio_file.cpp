#include "hosts/simulated/sound/simulated_audio_file.h"

#include <string_view>

namespace quillo::simulated {
namespace {

constexpr std::int64_t framesPerPacket = 1024;
constexpr std::size_t fragmentHeadSize = 120;
constexpr std::size_t headSize = 780;
constexpr std::size_t boxHeadSize = 8;  // its length and its name

void appendNumber(Bytes& bytes, std::uint32_t number) {
  for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(number >> shift & 0xFF);
}

std::uint32_t numberAt(const Bytes& bytes, std::size_t at) {
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < 4; ++i)
    number = number << 8 | static_cast<unsigned char>(bytes[at + i]);
  return number;
}

// `content` and then zeros, `size` bytes in all.
Bytes box(std::string_view name, std::size_t size, const Bytes& content = {}) {
  Bytes bytes;
  appendNumber(bytes, static_cast<std::uint32_t>(size));
  bytes += name;
  bytes += content;
  bytes.resize(size);
  return bytes;
}

Bytes numbers(std::initializer_list<std::uint32_t> values) {
  Bytes bytes;
  for (const std::uint32_t value : values) appendNumber(bytes, value);
  return bytes;
}

}  // namespace

std::unique_ptr<SimulatedAudioFile> SimulatedAudioFile::create(MemoryFileManager& files,
                                                               FilePath path,
                                                               const AudioFileSettings& settings) {
  if (settings.sampleRate <= 0 || settings.channels <= 0) return nullptr;
  const auto rate = static_cast<std::uint32_t>(settings.sampleRate);
  const Bytes head = box("ftyp", 28, "M4A ") + box("moov", headSize - 28, numbers({rate}));
  if (!files.append(path, head)) return nullptr;
  return std::unique_ptr<SimulatedAudioFile>(
      new SimulatedAudioFile(files, std::move(path), settings));
}

SimulatedAudioFile::~SimulatedAudioFile() {
  if (framesWaiting_ > 0) addFragment(framesWaiting_);
  flush();
}

Result<void, AudioFileFailure> SimulatedAudioFile::write(const AudioBuffer& buffer) {
  framesWaiting_ += static_cast<std::int64_t>(buffer.frames());
  if (static_cast<double>(framesWaiting_) >= settings_.sampleRate) {
    const std::int64_t wholePackets = framesWaiting_ / framesPerPacket * framesPerPacket;
    framesWaiting_ -= wholePackets;
    addFragment(wholePackets);
  }
  if (!flush()) return AudioFileFailure::notWritten;
  return {};
}

void SimulatedAudioFile::addFragment(std::int64_t frames) {
  const std::int64_t packets = (frames + framesPerPacket - 1) / framesPerPacket;
  const double secondsPerPacket = static_cast<double>(framesPerPacket) / settings_.sampleRate;
  const auto packetSize = static_cast<std::size_t>(settings_.bitRate / 8.0 * secondsPerPacket);
  unwritten_ += box("moof", fragmentHeadSize, numbers({static_cast<std::uint32_t>(frames)}));
  unwritten_ += box("mdat", boxHeadSize + static_cast<std::size_t>(packets) * packetSize);
}

bool SimulatedAudioFile::flush() {
  if (unwritten_.empty()) return true;
  if (!files_.append(path_, unwritten_)) return false;
  unwritten_.clear();
  return true;
}

std::optional<double> SimulatedAudioFile::playableSeconds(const Bytes& contents) {
  std::uint32_t rate = 0;
  std::uint64_t frames = 0;
  std::uint32_t framesOfFragment = 0;
  for (std::size_t at = 0; at + boxHeadSize + 4 <= contents.size();) {
    const std::size_t size = numberAt(contents, at);
    const std::string_view name = std::string_view(contents).substr(at + 4, 4);
    // What a crash or a full disk cut off cannot be played.
    if (size < boxHeadSize || at + size > contents.size()) break;
    if (name == "moov") rate = numberAt(contents, at + boxHeadSize);
    if (name == "moof") framesOfFragment = numberAt(contents, at + boxHeadSize);
    if (name == "mdat") frames += framesOfFragment;
    at += size;
  }
  if (rate == 0) return std::nullopt;
  return static_cast<double>(frames) / rate;
}

}  // namespace quillo::simulated
