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
    microphone.describe({.uid = "built-in", .name = "Built-in", .sampleRate = 16000});
    microphone.setFramesPerBuffer(1600);
  }
  ~RecordingDesk() override { EXPECT_EQ(desktop.audioSystem().runningEngines(), 0); }

  MacAudioRecorder::StartArguments arguments(std::string deviceUID = "") {
    return {
        .maxDurationSeconds = 600,
        .deviceUID = std::move(deviceUID),
        .onLevel = [this](float level) { levels.push_back({desktop.now(), level}); },
        .onMaxDuration = [this] { ++maxDurations; },
        .onSegmentReady = [this](const Result& segment) { segments.push_back(segment); },
    };
  }
  std::optional<Result> record(MacAudioRecorder::StartArguments arguments, Duration duration) {
    recorder.start(std::move(arguments));
    desktop.runFor(duration);
    return recorder.stop();
  }
  // Until everything that was planned has been said.
  std::optional<Result> recordAll() {
    return record(arguments(), desktop.voice().end() - desktop.now());
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
  simulated::SimulatedAudioDevices& devices = desktop.audioDevices();
  simulated::Microphone& microphone = devices.builtInMicrophone();
  std::vector<Level> levels;
  std::vector<Result> segments;
  int maxDurations = 0;
  MacAudioRecorder recorder{desktop.mainThread(), desktop.audioSystem(), devices,
                            desktop.files(),      desktop.random(),      desktop.log()};
};

}  // namespace quillo
