#include "core/microphone.h"

#include "audio/audio_input_device.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;

// A microphone that is live has given audio within 14 looks.
constexpr int looks = 14;
constexpr Duration timeBetweenLooks = 25ms;
// A chosen device gets two chances before the default one is used instead.
constexpr int attemptsWithChosenDevice = 2;

}  // namespace

Microphone::Microphone(MainThread& mainThread, AudioSystem& audio, AudioDevices& devices,
                       FileManager& files, Random& random, MacAppState& state, Log& log)
    : mainThread_(mainThread),
      audio_(audio),
      devices_(devices),
      files_(files),
      random_(random),
      state_(state),
      log_(log),
      recorder_(makeRecorder()) {}

std::unique_ptr<MacAudioRecorder> Microphone::makeRecorder() {
  return std::make_unique<MacAudioRecorder>(mainThread_, audio_, devices_, files_, random_, log_);
}

void Microphone::replaceRecorder() {
  // Two starts at once may meet here; what the other one has recorded belongs to nobody then.
  if (recorder_->isRecording()) {
    if (const auto orphan = recorder_->stop()) files_.remove(orphan->fileURL);
  }
  recorder_ = makeRecorder();
}

Task<> Microphone::attempt(int number, MacAudioRecorder::StartArguments arguments) {
  arguments.deviceUID = chooseDevice(number);
  replaceRecorder();
  startRecorder(number, std::move(arguments));
  if (co_await hasHeardAudio()) co_return;
  recorder_->stop();
  log_.log("dictation",
           "recording start attempt " + std::to_string(number) + " captured no audio; retrying");
  throw MacAudioRecorder::RecorderError::failedToStart();
}

std::string Microphone::chooseDevice(int attempt) {
  const std::string& chosen = state_.microphoneUID;
  if (chosen.empty()) return "";
  const bool isConnected = MacAudioInputDevice::deviceID(devices_, chosen).has_value();
  if (isConnected && attempt <= attemptsWithChosenDevice) return chosen;
  log_.log("dictation", std::string("mic: using system default (selected device ") +
                            (isConnected ? "gave no audio" : "not connected") +
                            ") attempt=" + std::to_string(attempt));
  return "";
}

void Microphone::startRecorder(int attempt, MacAudioRecorder::StartArguments arguments) {
  try {
    recorder_->start(std::move(arguments));
  } catch (const MacAudioRecorder::RecorderError& error) {
    log_.log("dictation", "recording start attempt " + std::to_string(attempt) +
                              " failed: " + error.description());
    throw;
  }
}

Task<bool> Microphone::hasHeardAudio() {
  for (int look = 1; look <= looks; ++look) {
    co_await sleepFor(timeBetweenLooks);
    if (recorder_->hasReceivedAudio()) co_return true;
  }
  co_return false;
}

}  // namespace quillo
