// What recording files and converters keep.
#pragma once

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>

#include "contracts/support/contract_host.h"
#include "platform/audio_buffer.h"
#include "platform/audio_file.h"
#include "platform/audio_system.h"
#include "platform/file_manager.h"

namespace quillo::contracts {

class AudioFileHost : public ContractHost {
 public:
  virtual AudioSystem& audio() = 0;
  virtual FileManager& files() = 0;
  // Seconds of sound in a file, as a player finds them; nothing for what cannot be played.
  virtual std::optional<double> playableSeconds(const FilePath& path) = 0;
  // As in the contract of the file manager.
  virtual void leaveRoomFor(std::optional<std::int64_t> bytes) = 0;
};

class AudioFileContract : public PortContract<AudioFileHost> {
 protected:
  static constexpr AudioFileSettings upload{
      .sampleRate = 16000, .channels = 1, .bitRate = 48000, .encoderQuality = 64};
  static constexpr std::size_t framesInABuffer = 1365;

  FilePath path(const char* name = "murmex_mac_1A2B3C4D.m4a") {
    return files().directory(UserDirectory::caches).value() / name;
  }
  FileManager& files() { return host().files(); }
  std::unique_ptr<AudioFile> open(const FilePath& path) {
    return host().audio().openForWriting(path, upload).value_or(nullptr);
  }

  // The next buffer of something like a voice: a gliding tone with noise on it.
  AudioBuffer voice(const AudioFormat& format, std::size_t frames = framesInABuffer) {
    AudioBuffer buffer(format, frames);
    for (std::size_t i = 0; i < frames; ++i, ++frame_) {
      const double second = static_cast<double>(frame_) / format.sampleRate;
      noise_ = noise_ * 1664525 + 1013904223;
      const double hiss = static_cast<double>(noise_ >> 8) / (1 << 24) - 0.5;
      const double tone = std::sin(2 * std::numbers::pi * (180 + 60 * std::sin(second)) * second);
      for (int channel = 0; channel < format.channels; ++channel)
        buffer.channel(channel)[i] = static_cast<float>(0.3 * tone + 0.1 * hiss);
    }
    return buffer;
  }
  // How many of the writes succeeded.
  int write(AudioFile& file, double seconds) {
    int succeeded = 0;
    const auto count =
        static_cast<int>(seconds * file.processingFormat().sampleRate / framesInABuffer);
    for (int i = 0; i < count; ++i)
      succeeded += file.write(voice(file.processingFormat())).has_value();
    return succeeded;
  }

 private:
  std::uint64_t frame_ = 0;
  std::uint32_t noise_ = 1;
};

TEST_P(AudioFileContract, ARecordingHasItsLengthAndAboutItsBitRateAndOneOfNothingIsSmall) {
  ASSERT_NE(open(path()), nullptr);
  EXPECT_TRUE(files().exists(path()));
  EXPECT_LT(files().size(path()).value_or(0), 1024);

  auto file = open(path());
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(file->processingFormat(), (AudioFormat{16000, 1}));
  EXPECT_EQ(write(*file, 10), 117);
  file.reset();
  EXPECT_NEAR(host().playableSeconds(path()).value_or(0), 117 * 1365 / 16000.0, 0.01);
  EXPECT_NEAR(static_cast<double>(files().size(path()).value_or(0)), 60'000, 15'000);
}

TEST_P(AudioFileContract, AllButTheLastSecondIsThereBeforeTheEnd) {
  const auto file = open(path());
  ASSERT_NE(file, nullptr);
  write(*file, 6);
  // As if the program died now: a copy of what lies on the disk.
  const FilePath copy = path("copy.m4a");
  ASSERT_TRUE(files().writeAtomically(copy, files().read(path()).value_or("")));
  EXPECT_GE(host().playableSeconds(copy).value_or(0), 4.7);
}

TEST_P(AudioFileContract, AFullDiskIsToldAndWhatIsThereStaysPlayable) {
  auto file = open(path());
  ASSERT_NE(file, nullptr);
  const int whole = write(*file, 3);
  EXPECT_EQ(whole, 35);
  host().leaveRoomFor(2'000);
  EXPECT_LT(write(*file, 3), 35) << "some write is told to have failed";
  host().leaveRoomFor(std::nullopt);
  EXPECT_GT(write(*file, 3), 0) << "later ones succeed again";
  host().leaveRoomFor(0);
  write(*file, 2);
  file.reset();  // amid a full disk
  host().leaveRoomFor(std::nullopt);
  EXPECT_GE(host().playableSeconds(path()).value_or(0), 4.5);
}

TEST_P(AudioFileContract, AFileThatCannotBeMadeIsNothing) {
  const FilePath nowhere = path("missing") / "a.m4a";
  EXPECT_EQ(open(nowhere), nullptr);
  EXPECT_FALSE(files().exists(nowhere));
  host().leaveRoomFor(0);
  EXPECT_EQ(open(path()), nullptr) << "there is no room for its head";
  host().leaveRoomFor(std::nullopt);
}

TEST_P(AudioFileContract, AConverterKeepsLengthAndLoudness) {
  const AudioFormat from{48000, 2};
  const AudioFormat to{16000, 1};
  const auto converter = *host().audio().makeConverter(from, to);
  std::size_t frames = 0;
  double energy = 0;
  for (int i = 0; i < 12; ++i) {
    AudioBuffer tone(from, 4096);
    for (std::size_t frame = 0; frame < 4096; ++frame) {
      const double second = static_cast<double>(i * 4096 + static_cast<int>(frame)) / 48000;
      const double value = 0.5 * std::sin(2 * std::numbers::pi * 440 * second);
      tone.channel(0)[frame] = tone.channel(1)[frame] = static_cast<float>(value);
    }
    const AudioBuffer converted = converter->convert(tone, 4096 / 3 + 1024);
    EXPECT_EQ(converted.format(), to);
    frames += converted.frames();
    for (std::size_t frame = 0; frame < converted.frames(); ++frame)
      energy += std::pow(converted.channel(0)[frame], 2);
  }
  EXPECT_NEAR(static_cast<double>(frames), 12 * 4096 / 3, 100);
  EXPECT_NEAR(std::sqrt(energy / static_cast<double>(frames)), 0.5 / std::numbers::sqrt2, 0.02);
}

TEST_P(AudioFileContract, AConverterGivesNoMoreThanAskedAndKeepsTheRest) {
  const auto converter = *host().audio().makeConverter({44100, 1}, {16000, 1});
  std::size_t frames = converter->convert(voice({44100, 1}, 44100), 1000).frames();
  EXPECT_LE(frames, 1000u);
  for (int i = 0; i < 15; ++i) {
    const std::size_t more = converter->convert(AudioBuffer({44100, 1}, 0), 1000).frames();
    EXPECT_LE(more, 1000u);
    frames += more;
  }
  EXPECT_NEAR(static_cast<double>(frames), 16000, 100);
  EXPECT_FALSE(host().audio().makeConverter({0, 0}, {16000, 1}));
}

}  // namespace quillo::contracts
