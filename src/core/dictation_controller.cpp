#include "core/dictation_controller.h"

#include "api/fresh_auth.h"
#include "base/text.h"
#include "core/dictation_failures.h"
#include "core/recording_file.h"
#include "core/term_lists.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;

constexpr std::int64_t maxDurationSeconds = 600;  // for every plan
constexpr Duration limitNoticeShown = 900ms;
constexpr float discreetGain = 2.5f;  // quiet speech, amplified

// How long the panel stays.
constexpr Duration signInShown = 2s;
constexpr Duration startFailureShown = 3s;
constexpr Duration nothingRecordedShown = 800ms;
constexpr Duration resultShown = 1200ms;
constexpr Duration problemShown = 3s;
constexpr Duration retryOffered = 12s;

constexpr const char* startCue = "Tink";
constexpr const char* resultCue = "Pop";

Literal transformFailureText(const LanguagePair& pair) {
  return pair.areEqual()
             ? words("Couldn't polish the text — inserted the raw transcription.")
             : words("Couldn't translate — inserted your original words. Please try again.");
}

}  // namespace

MacDictationController::MacDictationController(Rooms rooms, Settings settings, Ports ports)
    : rooms_(rooms),
      settings_(settings),
      ports_(ports),
      microphone_(ports.mainThread, ports.audio, ports.devices, ports.files, ports.random,
                  settings.recording, ports.log),
      rolling_(ports.mainThread, rooms.api, rooms.authority, rooms.account, settings.writing,
               ports.files, ports.log, statusText),
      pipeline_(rooms.api, rooms.authority, rooms.account, settings.writing, ports.log),
      delivery_(*this, settings.insertion, settings.history, rooms.insertion, rooms.history,
                rooms.panel, rooms.review, pipeline_, ports.log),
      failed_(ports.files, canRetryLast),
      fileReads_(ports.queues.make("com.murmex.mac.recording-reads")),
      alive_(std::make_shared<int>()) {
  if (const auto frontmost = ports_.workspace.frontmostApplication()) rememberExternal(*frontmost);
  activations_ = ports_.workspace.observeActivation(
      [this, alive = std::weak_ptr<void>(alive_)](const RunningApplication& application) {
        ports_.mainThread.post([this, alive, application] {
          if (!alive.expired()) rememberExternal(application);
        });
      });
}

bool MacDictationController::isThisProgram(const RunningApplication& application) const {
  return application.bundleIdentifier == ports_.application.bundle().bundleIdentifier;
}

void MacDictationController::rememberExternal(const RunningApplication& application) {
  if (!isThisProgram(application)) lastExternalApplication_ = application;
}

// --- Start ---

Task<> MacDictationController::toggleRecording() {
  if (isProcessing) co_return;
  if (isRecording) {
    co_await stopAndProcess();
  } else {
    co_await startRecording(CaptureFrontmost::yes);
  }
}

void MacDictationController::beginHoldRecording() {
  if (isBusy() || isStartingHoldRecording_) return;
  isStartingHoldRecording_ = true;
  stopHoldAfterStart = false;
  start(ports_.mainThread, recordHold());
}

// A short tap records until the microphone is proven live, and then stops at once.
Task<> MacDictationController::recordHold() {
  const StartEnd end = co_await startRecording(CaptureFrontmost::yes);
  isStartingHoldRecording_ = false;
  if (stopHoldAfterStart && end == StartEnd::live) co_await stopAndProcess();
}

void MacDictationController::endHoldRecording() {
  stopHoldAfterStart = true;
  if (isRecording) start(ports_.mainThread, stopAndProcess());
}

Task<MacDictationController::StartEnd> MacDictationController::startRecording(
    CaptureFrontmost captureFrontmost) {
  lastError = std::nullopt;
  if (!rooms_.authority.isLoggedIn()) {
    askForSignIn();
    co_return StartEnd::notLive;
  }
  if (!co_await ports_.permissions.requestMicrophone()) {
    reportMicrophoneDenied();
    co_return StartEnd::notLive;
  }
  // Two starts may have waited for the user's answer together.
  if (isBusy()) co_return StartEnd::notLive;
  captureTarget(captureFrontmost);
  rooms_.api.warmUp();
  start(ports_.mainThread, refreshSessionIfNeeded());
  const std::string session = ports_.random.newUuid();
  rolling_.begin(session);
  co_return co_await startMicrophone(recorderArguments(session));
}

// So that the upload will not wait for it.
Task<> MacDictationController::refreshSessionIfNeeded() {
  SessionAuthority& authority = rooms_.authority;
  if (authority.isLoggedIn() && authority.needsRefresh()) co_await authority.refreshSession();
}

void MacDictationController::askForSignIn() {
  statusText = words("Sign in to dictate");
  lastError = words("Opening sign-in…");
  rooms_.navigator.openSignIn(
      words("Dictation needs an account on Mac. Your free plan is included — sign in to start "
            "dictating."));
  showFor(signInShown);
}

void MacDictationController::reportMicrophoneDenied() {
  statusText = words("Microphone permission needed");
  lastError = words("Enable microphone access in System Settings.");
  showFor(startFailureShown);
}

void MacDictationController::captureTarget(CaptureFrontmost captureFrontmost) {
  if (captureFrontmost == CaptureFrontmost::yes) {
    if (const auto frontmost = ports_.workspace.frontmostApplication())
      rememberExternal(*frontmost);
  }
  targetApplication_ = lastExternalApplication_;
}

// Nothing keeps a second start from beginning while the first is under way. The session is then
// the later one's, and the earlier one ends without a word.
Task<MacDictationController::StartEnd> MacDictationController::startMicrophone(
    MacAudioRecorder::StartArguments arguments) {
  try {
    if (co_await microphone_.start(std::move(arguments)) == Microphone::StartEnd::overtaken)
      co_return StartEnd::notLive;
  } catch (const MacAudioRecorder::RecorderError&) {
    reportStartFailure(std::current_exception());
    co_return StartEnd::notLive;
  }
  goLive();
  co_return StartEnd::live;
}

MacAudioRecorder::StartArguments MacDictationController::recorderArguments(std::string session) {
  using VoiceProcessing = MacAudioRecorder::VoiceProcessing;
  const std::weak_ptr<void> alive = alive_;
  MainThread& mainThread = ports_.mainThread;
  const bool isDiscreet = settings_.recording.discreetMode;
  return {
      .maxDurationSeconds = maxDurationSeconds,
      .voiceProcessing = isDiscreet || settings_.recording.noiseReduction ? VoiceProcessing::on
                                                                          : VoiceProcessing::off,
      .deviceUID = {},  // each attempt chooses
      .onLevel =
          [this, alive, &mainThread](float level) {
            mainThread.post([this, alive, level] {
              if (!alive.expired()) audioLevel = level;
            });
          },
      .onMaxDuration =
          [this, alive] {
            if (!alive.expired()) start(ports_.mainThread, stopAtMaximumLength());
          },
      .onSegmentReady =
          [this, alive, &mainThread, session = std::move(session)](const Recording& segment) {
            mainThread.post([this, alive, segment, session] {
              if (!alive.expired()) rolling_.onSegmentReady(segment, session);
            });
          },
      .captureGain = isDiscreet ? discreetGain : 1.0f,
  };
}

void MacDictationController::goLive() {
  isRecording = true;
  isProcessing = false;
  audioLevel = 0.0f;
  statusText = words("Listening");
  play(startCue);
  rooms_.panel.show();
}

void MacDictationController::reportStartFailure(const std::exception_ptr& error) {
  rolling_.end();
  statusText = words("Could not start recording");
  lastError = wordsOf(error);
  log("recording start failed: " + describe(error));
  showFor(startFailureShown);
}

// --- Stop ---

Task<> MacDictationController::stopAtMaximumLength() {
  if (!isRecording) co_return;
  const std::optional<std::string> session = rolling_.sessionId();
  statusText = words("10-min limit reached");
  rooms_.panel.show();
  co_await sleepFor(limitNoticeShown);
  // Unless the user was quicker and speaks already again.
  if (rolling_.sessionId() == session) co_await stopAndProcess();
}

Task<> MacDictationController::stopAndProcess() {
  if (!isRecording) co_return;
  isRecording = false;
  isProcessing = true;
  audioLevel = 0.0f;
  statusText = words("Transcribing");
  lastError = std::nullopt;
  rooms_.panel.show();
  const std::optional<Recording> recording = microphone_.stop();
  if (!recording) {
    isProcessing = false;
    statusText = words("Ready");
    rooms_.panel.hideAfter(nothingRecordedShown);
    co_return;
  }
  co_await yieldTurn();  // the panel draws before work begins
  co_await runProcessing(*recording);
}

Task<> MacDictationController::runProcessing(Recording recording) {
  const TaskHandle<> task = start(ports_.mainThread, processRecording(std::move(recording)));
  processingTask_ = task;
  co_await task.value();
}

// --- Process ---

Task<> MacDictationController::processRecording(Recording recording) {
  ProcessingEnd end = ProcessingEnd::finished;
  std::exception_ptr error;
  try {
    end = co_await process(recording);
  } catch (...) {
    error = std::current_exception();
  }
  if (error) end = handleFailure(error);
  finishProcessing(recording, end);
}

Task<MacDictationController::ProcessingEnd> MacDictationController::process(Recording recording) {
  if (const auto problem = MacAudioRecorder::validate(recording)) {
    refuseRecording(*problem);
    co_return ProcessingEnd::finished;
  }
  const Snippets::Result spoken = applyWritingRules(co_await transcript(recording));
  if (spoken.text.empty()) {
    reportNoSpeech();
    co_return ProcessingEnd::finished;
  }
  lastRawTranscript = spoken.text;
  lastVerification = std::nullopt;
  co_await checkCancellation();

  statusText = settings_.writing.needsTransform() ? words("Polishing") : words("Preparing");
  const LanguagePair pair = {settings_.writing.inputLanguage, settings_.writing.outputLanguage};
  const std::string text = co_await finalText(spoken.text, spoken.used, pair);
  co_await checkCancellation();
  lastResult = text;
  play(resultCue);

  const auto target = targetApplication_ ? targetApplication_ : lastExternalApplication_;
  const Delivery::End end = co_await delivery_.deliver({spoken.text, text, pair, target});
  start(ports_.mainThread, rooms_.account.refreshUsage());
  co_return end == Delivery::End::recordAgain ? ProcessingEnd::recordAgain
                                              : ProcessingEnd::finished;
}

void MacDictationController::refuseRecording(const MacAudioRecorder::ValidationError& problem) {
  statusText = words("Ready");
  lastError = problem.errorDescription();
  log("recording validation failed: " + problem.description());
}

Task<std::string> MacDictationController::transcript(Recording recording) {
  if (auto rolled = co_await rolling_.awaitRollingTranscript()) co_return std::move(*rolled);
  co_return co_await transcribeWholeFile(std::move(recording));
}

Task<std::string> MacDictationController::transcribeWholeFile(Recording recording) {
  const FilePath path = recording.fileURL;
  const std::function<Result<Bytes, FileFailure>()> read = [&files = ports_.files, path] {
    return files.read(path);
  };
  auto audio = co_await runOn(*fileReads_, read);
  if (!audio) throw FileReadError(path);
  co_await checkCancellation();

  // After segments the service counts both as one session.
  const bool isAfterSegments = rolling_.hasSegments();
  const WritingSettings& writing = settings_.writing;
  TranscribeArguments arguments = {
      .audioData = std::move(*audio),
      .filename = path.filename().string(),
      .language = writing.inputLanguage.get(),
      .identity = {},
      .durationMinutes = recording.durationSeconds / 60.0,
      .vocabulary =
          transcriptionVocabulary(writing.dictionaryVocabulary, writing.dictionaryReplacements,
                                  writing.dictionaryGlossary, writing.snippets),
      .sessionId = isAfterSegments ? rolling_.sessionId() : std::nullopt,
      .segmentIndex = std::nullopt,
      .segmentKind = isAfterSegments ? std::optional<std::string>("full") : std::nullopt,
      .previousText = std::nullopt,
  };
  const std::function<Task<TranscribeResponse>()> send = [this, arguments = std::move(arguments)] {
    TranscribeArguments now = arguments;
    now.identity = rooms_.account.identity();  // a refresh changes it
    return rooms_.api.transcribe(std::move(now));
  };
  const TranscribeResponse reply = co_await withFreshAuth(rooms_.authority, send);
  co_return trimmed(reply.text);
}

Snippets::Result MacDictationController::applyWritingRules(const std::string& transcript) {
  const ReplacementRules& rules = replacements_.of(settings_.writing.dictionaryReplacements);
  return snippets_.of(settings_.writing.snippets).apply(rules.apply(transcript));
}

void MacDictationController::reportNoSpeech() {
  isProcessing = false;
  statusText = words("Ready");
  lastError = words("No speech was detected.");
  rooms_.panel.hideAfter(problemShown);
}

Task<std::string> MacDictationController::finalText(std::string rawText,
                                                    std::vector<std::string> usedSnippets,
                                                    LanguagePair pair) {
  auto transformed =
      co_await pipeline_.transformTextTwice({rawText, std::move(usedSnippets), targetApplication_});
  if (transformed) co_return std::move(*transformed);
  lastError = transformFailureText(pair);
  co_return rawText;
}

MacDictationController::ProcessingEnd MacDictationController::handleFailure(
    const std::exception_ptr& error) {
  if (isCancellation(error)) {
    statusText = words("Ready");
    lastError = std::nullopt;
    log("processing cancelled; audio kept for retry");
    return ProcessingEnd::cancelled;
  }
  if (const auto limit = planLimitInfo(error)) {
    statusText = words("Plan limit reached");
    lastError = std::nullopt;
    rooms_.panel.hideNow();
    showLimitAlert(*limit, ports_.application, ports_.alerts, rooms_.navigator);
    return ProcessingEnd::finished;  // a retry could not succeed
  }
  const Words message = userMessage(error);
  statusText = statusTitle(message);
  lastError = message;
  log("process failed; kept retry audio: " + message.english());
  return ProcessingEnd::failed;
}

void MacDictationController::finishProcessing(const Recording& recording, ProcessingEnd end) {
  const bool keepsAudio = end == ProcessingEnd::cancelled || end == ProcessingEnd::failed;
  if (keepsAudio) {
    failed_.keep(recording);
  } else {
    failed_.discard(recording);
  }
  targetApplication_.reset();
  rolling_.end();
  isProcessing = false;
  processingTask_ = {};

  switch (end) {
    case ProcessingEnd::recordAgain:
      rooms_.panel.hideAfter(Duration::zero());
      start(ports_.mainThread, startRecording(CaptureFrontmost::no));
      break;
    case ProcessingEnd::cancelled:
      rooms_.panel.hideNow();
      break;
    case ProcessingEnd::failed:
      rooms_.panel.hideAfter(retryOffered);
      break;
    case ProcessingEnd::finished:
      rooms_.panel.hideAfter(lastError.get() ? problemShown : resultShown);
      break;
  }
}

// --- The panel's buttons, and the last result ---

void MacDictationController::cancelProcessing() {
  if (!isProcessing) return;
  log("processing cancelled from the HUD");
  rolling_.cancelSegments();
  processingTask_.cancel();
}

void MacDictationController::retryLastRecording() {
  const std::optional<Recording>& recording = failed_.recording();
  if (isBusy() || !recording) return;
  log("retry recording file=" + recording->fileURL.filename().string() +
      " duration=" + shortestText(recording->durationSeconds / 60.0));
  start(ports_.mainThread, retry());
}

Task<> MacDictationController::retry() {
  // A second press may have come before this turn.
  const std::optional<Recording> recording = failed_.recording();
  if (isBusy() || !recording) co_return;
  microphone_.abandonStart();
  isProcessing = true;
  audioLevel = 0.0f;
  statusText = words("Retrying");
  lastError = std::nullopt;
  rooms_.panel.show();
  co_await runProcessing(*recording);
}

void MacDictationController::dismissLastFailure() {
  rooms_.panel.hideNow();
  lastError = std::nullopt;
  statusText = words("Ready");
  failed_.dismiss();
}

void MacDictationController::copyLastResult() {
  if (lastResult.get().empty()) return;
  rooms_.insertion.copyString(lastResult.get());
  statusText = words("Copied to clipboard");
  showFor(resultShown);
}

void MacDictationController::insertLastResult(std::string text) {
  if (text.empty() || isProcessing) return;
  const auto frontmost = ports_.workspace.frontmostApplication();
  const auto target =
      frontmost && !isThisProgram(*frontmost) ? frontmost : lastExternalApplication_;
  start(ports_.mainThread, delivery_.pasteLast(std::move(text), target));
}

// ---

void MacDictationController::play(std::string_view cue) {
  if (settings_.recording.soundsEnabled) ports_.sounds.play(cue);
}

void MacDictationController::showFor(Duration duration) {
  rooms_.panel.show();
  rooms_.panel.hideAfter(duration);
}

}  // namespace quillo
