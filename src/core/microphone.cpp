#include "core/microphone.h"

#include "audio/audio_input_device.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;

constexpr int attempts = 4;
constexpr Duration timeBetweenAttempts = 200ms;
// A microphone that is live has given audio within 14 looks.
constexpr int looks = 14;
constexpr Duration timeBetweenLooks = 25ms;
// A chosen device gets two chances before the default one is used instead.
constexpr int attemptsWithChosenDevice = 2;

}  // namespace

Microphone::Microphone(MainThread& mainThread, AudioSystem& audio, AudioDevices& devices,
                       FileManager& files, Random& random, const RecordingSettings& settings,
                       Log& log)
    : mainThread_(mainThread),
      audio_(audio),
      devices_(devices),
      files_(files),
      random_(random),
      settings_(settings),
      log_(log),
      recorder_(makeRecorder()) {}

std::unique_ptr<MacAudioRecorder> Microphone::makeRecorder() {
  return std::make_unique<MacAudioRecorder>(mainThread_, audio_, devices_, files_, random_, log_);
}

void Microphone::replaceRecorder() {
  // What a start that was overtaken has recorded belongs to nobody.
  if (recorder_->isRecording()) {
    if (const auto orphan = recorder_->stop()) files_.remove(orphan->fileURL);
  }
  recorder_ = makeRecorder();
}

void Microphone::abandonStart() {
  ++owner_;
  replaceRecorder();
}

Task<Microphone::StartEnd> Microphone::start(MacAudioRecorder::StartArguments arguments) {
  const int owner = ++owner_;
  std::exception_ptr error;
  for (int number = 1; number <= attempts; ++number) {
    if (number > 1) co_await sleepFor(timeBetweenAttempts);
    if (owner != owner_) co_return StartEnd::overtaken;
    try {
      co_return co_await attempt(number, arguments, owner);
    } catch (const MacAudioRecorder::RecorderError&) {
      error = std::current_exception();
    }
  }
  std::rethrow_exception(error);
}

Task<Microphone::StartEnd> Microphone::attempt(int number,
                                               MacAudioRecorder::StartArguments arguments,
                                               int owner) {
  arguments.deviceUID = chooseDevice(number);
  replaceRecorder();
  startRecorder(number, std::move(arguments));
  for (int look = 1; look <= looks; ++look) {
    co_await sleepFor(timeBetweenLooks);
    if (owner != owner_) co_return StartEnd::overtaken;
    if (recorder_->hasReceivedAudio()) co_return StartEnd::live;
  }
  recorder_->stop();
  log_.log("dictation",
           "recording start attempt " + std::to_string(number) + " captured no audio; retrying");
  throw MacAudioRecorder::RecorderError::failedToStart();
}

std::string Microphone::chooseDevice(int attempt) {
  const std::string& chosen = settings_.microphoneUID;
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

}  // namespace quillo
