// Transcribes the segments of a recording while the user still speaks.
#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "api/murmex_api.h"
#include "api/session_authority.h"
#include "audio/audio_recorder.h"
#include "base/log.h"
#include "base/published.h"
#include "base/task.h"
#include "core/recording_file.h"
#include "state/account_state.h"
#include "state/writing_settings.h"

namespace quillo {

// One segment's text.
struct RollingSegmentTranscript {
  std::int64_t index = 0;  // the recorder's
  std::string text;        // trimmed
};

// The segments of one recording session. Any doubt about them voids all of them: the caller then
// sends the whole recording. Main thread.
class RollingTranscription {
 public:
  using Segment = MacAudioRecorder::RecordingResult;

  RollingTranscription(MainThread& mainThread, MurmexAPI& api, SessionAuthority& authority,
                       const AccountState& account, const WritingSettings& writing,
                       FileManager& files, Log& log, Published<Words>& statusText);
  RollingTranscription(const RollingTranscription&) = delete;
  RollingTranscription& operator=(const RollingTranscription&) = delete;

  void begin(std::string sessionId);
  // Forgets the session. Segments under way run on and delete their files.
  void end();
  const std::optional<std::string>& sessionId() const { return rollingSessionId_; }
  bool hasSegments() const { return !rollingSegmentTasks_.empty(); }

  // Takes the file of `segment` over, and sends it when it belongs to the running session.
  void onSegmentReady(const Segment& segment, const std::string& sessionId);

  // Waits for all segments: their joined text, or nothing when the whole recording is to be sent.
  Task<std::optional<std::string>> awaitRollingTranscript();

  void cancelSegments();

 private:
  // How a segment's task ended.
  using SegmentEnd = std::variant<RollingSegmentTranscript, std::exception_ptr>;
  // What outlives this object.
  struct Services {
    MurmexAPI& api;
    SessionAuthority& authority;
  };
  // Gone together with this object.
  using WeakSelf = std::weak_ptr<RollingTranscription*>;

  static Task<SegmentEnd> runSegment(Services services, OwnedFile file,
                                     TranscribeArguments arguments, WeakSelf self);
  static Task<RollingSegmentTranscript> transcribeSegment(Services services, OwnedFile file,
                                                          TranscribeArguments arguments,
                                                          WeakSelf self);
  TranscribeArguments argumentsFor(const Segment& segment) const;
  void rememberTail(const std::string& sessionId, const std::string& text);
  std::optional<std::string> joinedText(std::vector<RollingSegmentTranscript> transcripts);
  void fallBack(const std::string& line);

  MainThread& mainThread_;
  Services services_;
  const AccountState& account_;
  const WritingSettings& writing_;
  FileManager& files_;
  Log& log_;
  Published<Words>& statusText_;

  std::optional<std::string> rollingSessionId_;
  std::vector<TaskHandle<SegmentEnd>> rollingSegmentTasks_;  // in order of emission
  std::optional<std::string> lastSegmentTail_;
  std::shared_ptr<RollingTranscription*> self_;
};

}  // namespace quillo
