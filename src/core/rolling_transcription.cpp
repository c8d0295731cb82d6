#include "core/rolling_transcription.h"

#include <algorithm>

#include "api/fresh_auth.h"
#include "base/text.h"
#include "core/term_lists.h"

namespace quillo {
namespace {

// As much of what was said before as helps the service to go on.
constexpr std::size_t tailCharacters = 500;

}  // namespace

RollingTranscription::RollingTranscription(MainThread& mainThread, MurmexAPI& api,
                                           SessionAuthority& authority, const AccountState& account,
                                           const WritingSettings& writing, FileManager& files,
                                           Log& log, Published<Words>& statusText)
    : mainThread_(mainThread),
      services_{api, authority},
      account_(account),
      writing_(writing),
      files_(files),
      log_(log),
      statusText_(statusText),
      self_(std::make_shared<RollingTranscription*>(this)) {}

void RollingTranscription::begin(std::string sessionId) {
  end();
  rollingSessionId_ = std::move(sessionId);
}

void RollingTranscription::end() {
  rollingSessionId_.reset();
  rollingSegmentTasks_.clear();
  lastSegmentTail_.reset();
}

void RollingTranscription::onSegmentReady(const Segment& segment, const std::string& sessionId) {
  OwnedFile file(files_, segment.fileURL);
  if (rollingSessionId_ != sessionId || !segment.segmentIndex) return;
  rollingSegmentTasks_.push_back(
      start(mainThread_, runSegment(services_, std::move(file), argumentsFor(segment), self_)));
}

// Everything but the audio, as it is now.
TranscribeArguments RollingTranscription::argumentsFor(const Segment& segment) const {
  return {
      .audioData = {},
      .filename = segment.fileURL.filename().string(),
      .language = writing_.inputLanguage.get(),
      .identity = account_.identity(),
      .durationMinutes = segment.durationSeconds / 60.0,
      .vocabulary =
          transcriptionVocabulary(writing_.dictionaryVocabulary, writing_.dictionaryReplacements,
                                  writing_.dictionaryGlossary, writing_.snippets),
      .sessionId = rollingSessionId_,
      .segmentIndex = segment.segmentIndex,
      .segmentKind = "chunk",
      .previousText = lastSegmentTail_,
  };
}

Task<RollingTranscription::SegmentEnd> RollingTranscription::runSegment(
    Services services, OwnedFile file, TranscribeArguments arguments, WeakSelf self) {
  try {
    co_return co_await transcribeSegment(services, std::move(file), std::move(arguments),
                                         std::move(self));
  } catch (...) {
    co_return std::current_exception();
  }
}

Task<RollingSegmentTranscript> RollingTranscription::transcribeSegment(
    Services services, OwnedFile file, TranscribeArguments arguments, WeakSelf self) {
  const std::int64_t index = arguments.segmentIndex.value_or(0);
  const std::string sessionId = arguments.sessionId.value_or("");
  arguments.audioData = file.read();
  if (self.expired()) co_return RollingSegmentTranscript{index, ""};

  const std::function<Task<TranscribeResponse>()> send =
      [&api = services.api, arguments = std::move(arguments)] { return api.transcribe(arguments); };
  const TranscribeResponse reply = co_await withFreshAuth(services.authority, send);
  std::string text = trimmed(reply.text);
  if (const auto alive = self.lock()) (*alive)->rememberTail(sessionId, text);
  co_return RollingSegmentTranscript{index, std::move(text)};
}

void RollingTranscription::rememberTail(const std::string& sessionId, const std::string& text) {
  // A segment may end when another session runs already, whose text it does not precede.
  if (text.empty() || rollingSessionId_ != sessionId) return;
  lastSegmentTail_ = suffixCharacters(text, tailCharacters);
}

Task<std::optional<std::string>> RollingTranscription::awaitRollingTranscript() {
  if (rollingSegmentTasks_.empty()) co_return std::nullopt;
  statusText_ = words("Finishing transcription");
  const auto tasks = rollingSegmentTasks_;
  std::vector<RollingSegmentTranscript> transcripts;
  transcripts.reserve(tasks.size());
  for (const TaskHandle<SegmentEnd>& task : tasks) {
    SegmentEnd ended = co_await task.value();
    if (const auto* error = std::get_if<std::exception_ptr>(&ended)) {
      fallBack("rolling transcription failed; falling back to full file: " + describe(*error));
      co_return std::nullopt;
    }
    transcripts.push_back(std::get<RollingSegmentTranscript>(std::move(ended)));
  }
  co_return joinedText(std::move(transcripts));
}

std::optional<std::string> RollingTranscription::joinedText(
    std::vector<RollingSegmentTranscript> transcripts) {
  const auto empty =
      std::count_if(transcripts.begin(), transcripts.end(),
                    [](const RollingSegmentTranscript& segment) { return segment.text.empty(); });
  if (empty > 0) {
    // It may be silence, but it may as well be speech that was lost in the service.
    fallBack(std::to_string(empty) + "/" + std::to_string(transcripts.size()) +
             " rolling segment(s) empty — using the full recording so no speech is dropped");
    return std::nullopt;
  }
  std::sort(transcripts.begin(), transcripts.end(),
            [](const auto& a, const auto& b) { return a.index < b.index; });
  std::vector<std::string> texts;
  texts.reserve(transcripts.size());
  for (RollingSegmentTranscript& segment : transcripts) texts.push_back(std::move(segment.text));
  const std::string text = trimmed(joined(texts, " "));
  return text.empty() ? std::nullopt : std::optional(text);
}

void RollingTranscription::fallBack(const std::string& line) {
  log_.log("dictation", line);
  statusText_ = words("Transcribing");
}

void RollingTranscription::cancelSegments() {
  for (const TaskHandle<SegmentEnd>& task : rollingSegmentTasks_) task.cancel();
}

}  // namespace quillo
