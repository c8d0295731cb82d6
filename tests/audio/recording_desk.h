// A microphone to speak into, and a recorder behind it.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "audio/audio_recorder.h"
#include "hosts/simulated/simulated_desktop.h"

namespace quillo {

using namespace std::chrono_literals;

class RecordingDesk : public testing::Test {
 protected:
  using Result = MacAudioRecorder::RecordingResult;

  RecordingDesk() {
    // Buffers of exactly 100 ms, at the rate of the files.
    desktop.audioDevices().builtInMicrophone().describe(
        {.uid = "built-in", .name = "Built-in", .sampleRate = 16000});
    microphone().setFramesPerBuffer(1600);
  }
  ~RecordingDesk() override { EXPECT_EQ(desktop.audioSystem().runningEngines(), 0); }

  simulated::Microphone& microphone() { return desktop.audioDevices().builtInMicrophone(); }

  MacAudioRecorder::StartArguments arguments() {
    return {
        .maxDurationSeconds = 600,
        .onLevel = [this](float level) { levels.push_back({desktop.now(), level}); },
        .onMaxDuration = [this] { ++maxDurations; },
        .onSegmentReady = [this](const Result& segment) { segments.push_back(segment); },
    };
  }
  // Records until everything that was planned has been said, and a buffer's length more.
  std::optional<Result> recordAll() {
    recorder.start(arguments());
    desktop.runFor(desktop.voice().end() - desktop.now());
    return recorder.stop();
  }
  std::vector<double> segmentSeconds() const {
    std::vector<double> seconds;
    for (const Result& segment : segments) seconds.push_back(segment.durationSeconds);
    return seconds;
  }

  struct Level {
    MonotonicTime time;
    float level;
  };

  simulated::SimulatedDesktop desktop;
  std::vector<Level> levels;
  std::vector<Result> segments;
  int maxDurations = 0;
  MacAudioRecorder recorder{desktop.mainThread(), desktop.audioSystem(), desktop.audioDevices(),
                            desktop.files(),      desktop.random(),      desktop.log()};
};

}  // namespace quillo
