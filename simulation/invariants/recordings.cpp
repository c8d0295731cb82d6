// 1. No recording is lost: its text was delivered or copied, or its audio is kept and Retry is
// offered, or the user or a stated rule dropped it.
//
// Not checked: what was delivered, where the words of a recording are not known; words that end in
// a last piece too short to be sent, or were spoken while the disk was full or tore a write;
// whether a kept file can be heard; and what becomes of recordings when the program quits.
#include <algorithm>
#include <map>
#include <set>

#include "base/text.h"
#include "simulation/invariants/invariants.h"
#include "simulation/world/event_reading.h"

namespace quillo::sim {
namespace {

// A last piece shorter than this is not sent, and the words that end in it are not missed.
constexpr Duration shortestPiece = std::chrono::milliseconds(500);

class NoRecordingIsLost final : public Invariant {
 public:
  explicit NoRecordingIsLost(Words words) : words_(words) {}
  std::string_view name() const override { return "no recording is lost"; }

  void see(const Event& event) override {
    if (const auto* opened = event.as<events::RecordingOpened>()) open(event.time, opened->file);
    followDisk(event);
    if (turns(event, events::Flag::isRecording, true)) goLive();
    if (const auto* closed = event.as<events::RecordingClosed>()) close(event.time, *closed);
    if (const auto* removed = event.as<events::FileRemoved>(); removed && removed->done)
      remove(event.time, removed->file);
    if (isAct(event, Act::quitsProgram) || isAct(event, Act::removesFile))
      recordings_.clear();  // no rule keeps them beyond that
    readFate(event);
  }

  void rest(const RestFacts& facts) override {
    for (const auto& [file, recording] : recordings_) {
      if (!recording.wasLive || recording.isOpen) continue;
      const bool isThere = std::ranges::find(facts.recordings, file) != facts.recordings.end();
      if (!isThere) {
        breaks(facts.time, file + " has gone without having been removed");
      } else if (!facts.canRetry) {
        breaks(facts.time, file + " lies there, and Retry is not offered");
      }
    }
  }

 private:
  struct Recording {
    bool wasLive = false;
    bool isOpen = true;
    bool isWhole = true;
    std::string words;
  };

  void open(MonotonicTime now, const std::string& file) {
    if (!isSessionFile(file)) {
      pieceOpened_ = now;
      return;
    }
    current_ = file;
    recordings_[current_] = {};
  }

  static bool breaksWrites(FaultKind kind) {
    return kind == FaultKind::diskFull || kind == FaultKind::diskTears;
  }

  // A write that fails is passed over, and what it held may be in one file and not in the other.
  void followDisk(const Event& event) {
    if (const auto kind = beginningFault(event); kind && breaksWrites(*kind))
      brokenDisk_.insert(*kind);
    if (const auto kind = healedFault(event)) brokenDisk_.erase(*kind);
    const auto found = recordings_.find(current_);
    if (!brokenDisk_.empty() && found != recordings_.end()) found->second.isWhole = false;
  }

  void goLive() {
    if (const auto found = recordings_.find(current_); found != recordings_.end())
      found->second.wasLive = true;
  }

  void close(MonotonicTime now, const events::RecordingClosed& closed) {
    if (!isSessionFile(closed.file)) return closePiece(now, closed);
    const auto found = recordings_.find(closed.file);
    if (found == recordings_.end()) return;
    found->second.isOpen = false;
    found->second.words = closed.words;
    // An attempt to start that came to nothing holds nothing of the user's.
    if (!found->second.wasLive) recordings_.erase(found);
  }

  void closePiece(MonotonicTime now, const events::RecordingClosed& piece) {
    if (now - pieceOpened_ >= shortestPiece) return;
    for (const std::string& word : split(piece.words, ' ')) tooShort_.insert(word);
  }

  // What has become of the words of the recording that is worked on.
  void readFate(const Event& event) {
    if (turns(event, events::Flag::isProcessing, true)) begin(current_);
    if (isStatus(event, "Retrying")) begin(kept_);
    if (const auto* clipboard = event.as<events::Clipboard>();
        clipboard && clipboard->isByProgram())
      copied_ = clipboard->contents.text.value_or("");
    // What was put there for the keystroke: in the few milliseconds between, another program may
    // have copied something else, which no rule looks for.
    if (isPaste(event) || isStatus(event, "Copied")) delivered_.push_back(copied_);
    if (isDropping(event)) isDropped_ = true;
    if (isLog(event, "process failed; kept") || isLog(event, "processing cancelled; audio kept")) {
      replaced_ = kept_ == processed_ ? "" : kept_;
      kept_ = processed_;
    }
    if (isClick(event, "Dismiss")) replaced_ = kept_;
  }

  // A rule, or the user, does without the text.
  static bool isDropping(const Event& event) {
    const auto* error = event.as<events::Error>();
    return isStatus(event, "Plan limit reached") || isClick(event, "Re-record") ||
           isLog(event, "recording validation failed") ||
           (error && error->text == "No speech was detected.");
  }

  void begin(const std::string& file) {
    processed_ = file;
    isDropped_ = false;
    delivered_.clear();
  }

  void remove(MonotonicTime now, const std::string& file) {
    const auto found = recordings_.find(file);
    if (found == recordings_.end()) return;
    const Recording recording = found->second;
    recordings_.erase(found);
    if (!recording.wasLive || file == replaced_) return;
    if (file == processed_ && isDropped_) return;
    if (file != processed_ || delivered_.empty())
      return breaks(now, file + " was removed for no reason");
    if (words_ == Words::known && recording.isWhole) requireWords(now, recording);
  }

  void requireWords(MonotonicTime now, const Recording& recording) {
    for (const std::string& word : split(recording.words, ' ')) {
      const bool isDelivered = std::ranges::any_of(delivered_, [&](const std::string& text) {
        return text.find(word) != std::string::npos;
      });
      if (!isDelivered && !tooShort_.contains(word))
        return breaks(now, processed_ + " was removed, and \"" + word + "\" was not in the text");
    }
  }

  Words words_;
  MonotonicTime pieceOpened_;
  std::set<std::string> tooShort_;
  std::set<FaultKind> brokenDisk_;
  std::map<std::string, Recording> recordings_;
  std::string current_;    // the latest session
  std::string processed_;  // what the program works on, or has worked on
  std::string kept_;       // for Retry
  std::string replaced_;   // by a newer failure, or dismissed
  bool isDropped_ = false;
  std::vector<std::string> delivered_;  // since the work began
  std::string copied_;
};

}  // namespace

std::unique_ptr<Invariant> noRecordingIsLost(Words words) {
  return std::make_unique<NoRecordingIsLost>(words);
}

}  // namespace quillo::sim
