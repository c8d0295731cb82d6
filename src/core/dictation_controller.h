// The life of a dictation, from the shortcut to the delivered text.
#pragma once

#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "api/murmex_api.h"
#include "api/session_authority.h"
#include "audio/audio_recorder.h"
#include "base/task.h"
#include "core/compiled_setting.h"
#include "core/delivery.h"
#include "core/dictation_state.h"
#include "core/failed_recording.h"
#include "core/microphone.h"
#include "core/navigator.h"
#include "core/replacement_rules.h"
#include "core/review_panel.h"
#include "core/rolling_transcription.h"
#include "core/snippets.h"
#include "core/status_panel.h"
#include "core/transform_pipeline.h"
#include "insertion/text_insertion.h"
#include "platform/alerts.h"
#include "platform/application.h"
#include "platform/audio_devices.h"
#include "platform/audio_system.h"
#include "platform/file_manager.h"
#include "platform/permissions.h"
#include "platform/random.h"
#include "platform/serial_queue.h"
#include "platform/sounds.h"
#include "platform/workspace.h"
#include "state/account_state.h"
#include "state/history_settings.h"
#include "state/history_store.h"
#include "state/insertion_settings.h"
#include "state/recording_settings.h"
#include "state/writing_settings.h"

namespace quillo {

// Drives the recorder, the service, the text steps, the delivery and the history, and never raises
// to its callers: every failure ends as a status, a sentence and a line in the log. Main thread.
// Tasks that it started refer to it: abandon them before it goes.
class MacDictationController : public DictationState {
 public:
  struct Rooms {
    MurmexAPI& api;
    SessionAuthority& authority;
    AccountState& account;
    MacHistoryStore& history;
    MacTextInsertion& insertion;
    StatusPanel& panel;
    ReviewPanel& review;
    Navigator& navigator;
  };
  struct Settings {
    const WritingSettings& writing;
    const RecordingSettings& recording;
    const InsertionSettings& insertion;
    const HistorySettings& history;
  };
  struct Ports {
    MainThread& mainThread;
    AudioSystem& audio;
    AudioDevices& devices;
    Permissions& permissions;
    Workspace& workspace;
    Application& application;
    Alerts& alerts;
    Sounds& sounds;
    FileManager& files;
    SerialQueues& queues;
    Random& random;
    Log& log;
  };

  MacDictationController(Rooms rooms, Settings settings, Ports ports);
  MacDictationController(const MacDictationController&) = delete;
  MacDictationController& operator=(const MacDictationController&) = delete;

  // Starts a recording, or ends the running one; nothing while one is processed.
  Task<> toggleRecording();
  void beginHoldRecording();
  void endHoldRecording();
  // The hold ended, perhaps before its start had finished.
  bool stopHoldAfterStart = false;

  // --- The status panel's buttons ---
  void cancelProcessing();
  void retryLastRecording();
  void dismissLastFailure();

  // --- The last result ---
  void copyLastResult();
  void insertLastResult(std::string text);

  const std::optional<RunningApplication>& lastExternalApplication() const {
    return lastExternalApplication_;
  }
  const std::optional<MacAudioRecorder::RecordingResult>& lastFailedRecording() const {
    return failed_.recording();
  }

 private:
  using Recording = MacAudioRecorder::RecordingResult;
  enum class CaptureFrontmost { no, yes };
  enum class StartEnd { live, notLive };
  enum class ProcessingEnd { finished, recordAgain, cancelled, failed };

  // --- Start ---
  Task<StartEnd> startRecording(CaptureFrontmost captureFrontmost);
  Task<> recordHold();
  void askForSignIn();
  void reportMicrophoneDenied();
  void captureTarget(CaptureFrontmost captureFrontmost);
  Task<> refreshSessionIfNeeded();
  Task<StartEnd> startMicrophone(MacAudioRecorder::StartArguments arguments);
  MacAudioRecorder::StartArguments recorderArguments(std::string session);
  bool isBusy() const { return isRecording || isProcessing; }
  void goLive();
  void reportStartFailure(const std::exception_ptr& error);
  void rememberExternal(const RunningApplication& application);
  bool isThisProgram(const RunningApplication& application) const;

  // --- Stop and process ---
  Task<> stopAtMaximumLength();
  Task<> stopAndProcess();
  Task<> runProcessing(Recording recording);
  Task<> processRecording(Recording recording);
  Task<ProcessingEnd> process(Recording recording);
  void refuseRecording(const MacAudioRecorder::ValidationError& problem);
  Task<std::string> transcript(Recording recording);
  Task<std::string> transcribeWholeFile(Recording recording);
  Snippets::Result applyWritingRules(const std::string& transcript);
  void reportNoSpeech();
  Task<std::string> finalText(std::string rawText, std::vector<std::string> usedSnippets,
                              LanguagePair pair);
  ProcessingEnd handleFailure(const std::exception_ptr& error);
  void finishProcessing(const Recording& recording, ProcessingEnd end);
  Task<> retry();

  void play(std::string_view cue);
  void showFor(Duration duration);
  void log(const std::string& message) { ports_.log.log("dictation", message); }

  Rooms rooms_;
  Settings settings_;
  Ports ports_;
  Microphone microphone_;
  RollingTranscription rolling_;
  TransformPipeline pipeline_;
  Delivery delivery_;
  FailedRecording failed_;
  CompiledSetting<std::vector<TextDictionary>, ReplacementRules> replacements_;
  CompiledSetting<std::vector<TextDictionary>, Snippets> snippets_;

  std::optional<RunningApplication> targetApplication_;
  std::optional<RunningApplication> lastExternalApplication_;
  bool isStartingHoldRecording_ = false;
  TaskHandle<> processingTask_;
  std::unique_ptr<SerialQueue> fileReads_;
  std::shared_ptr<void> activations_;
  // Callbacks from other threads do nothing once this has gone; it goes first.
  std::shared_ptr<void> alive_;
};

}  // namespace quillo
