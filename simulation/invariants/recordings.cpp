// 1. No recording is lost: its text was delivered or copied, or its audio is kept and Retry is
// offered, or the user or a stated rule dropped it.
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
    if (event.what == "recordingOpened" && isSessionFile(textOf(event, "file"))) open(event);
    if (!isSessionFile(textOf(event, "file"))) followPiece(event);
    followDisk(event);
    if (turns(event, "isRecording", true)) goLive();
    if (event.what == "recordingClosed") close(event);
    if (event.what == "fileRemoved" && event.fields.at("done") == true) remove(event);
    if (isAct(event, "quits Quillo") || isAct(event, "removes"))
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

  void open(const Event& event) {
    current_ = textOf(event, "file");
    recordings_[current_] = {};
  }

  void followPiece(const Event& event) {
    if (event.what == "recordingOpened") pieceOpened_ = event.time;
    if (event.what != "recordingClosed" || event.time - pieceOpened_ >= shortestPiece) return;
    for (const std::string& word : split(textOf(event, "words"), ' ')) tooShort_.insert(word);
  }

  // A write that fails is passed over, and what it held may be in one file and not in the other.
  void followDisk(const Event& event) {
    const std::string kind = textOf(event, "kind");
    const bool isOfDisk = kind == "diskFull" || kind == "diskTears";
    if (isOfDisk && event.what == "fault") brokenDisk_.insert(kind);
    if (isOfDisk && event.what == "healed") brokenDisk_.erase(kind);
    const auto found = recordings_.find(current_);
    if (!brokenDisk_.empty() && found != recordings_.end()) found->second.isWhole = false;
  }

  void goLive() {
    if (const auto found = recordings_.find(current_); found != recordings_.end())
      found->second.wasLive = true;
  }

  void close(const Event& event) {
    const auto found = recordings_.find(textOf(event, "file"));
    if (found == recordings_.end()) return;
    found->second.isOpen = false;
    found->second.words = textOf(event, "words");
    // An attempt to start that came to nothing holds nothing of the user's.
    if (!found->second.wasLive) recordings_.erase(found);
  }

  // What has become of the words of the recording that is worked on.
  void readFate(const Event& event) {
    if (turns(event, "isProcessing", true)) begin(current_);
    const std::string text = textOf(event, "text");
    if (event.what == "status" && text == "Retrying") begin(kept_);
    if (event.what == "clipboard" && textOf(event, "by") == "Quillo") copied_ = text;
    // What was put there for the keystroke: in the few milliseconds between, another program may
    // have copied something else, which no rule looks for.
    if (isPaste(event)) delivered_.push_back(copied_);
    if (event.what == "status" && text.starts_with("Copied")) delivered_.push_back(copied_);
    if (event.what == "status" && text == "Plan limit reached") isDropped_ = true;
    if (event.what == "error" && text == "No speech was detected.") isDropped_ = true;
    if (isLog(event, "recording validation failed")) isDropped_ = true;
    if (isAct(event, "clicks") && textOf(event, "control") == "Re-record") isDropped_ = true;
    if (isLog(event, "process failed; kept") || isLog(event, "processing cancelled; audio kept")) {
      replaced_ = kept_ == processed_ ? "" : kept_;
      kept_ = processed_;
    }
    if (isAct(event, "clicks") && textOf(event, "control") == "Dismiss") replaced_ = kept_;
  }

  void begin(const std::string& file) {
    processed_ = file;
    isDropped_ = false;
    delivered_.clear();
  }

  void remove(const Event& event) {
    const std::string file = textOf(event, "file");
    const auto found = recordings_.find(file);
    if (found == recordings_.end()) return;
    const Recording recording = found->second;
    recordings_.erase(found);
    if (!recording.wasLive || file == replaced_) return;
    if (file == processed_ && isDropped_) return;
    if (file != processed_ || delivered_.empty())
      return breaks(event.time, file + " was removed for no reason");
    if (words_ == Words::known && recording.isWhole) requireWords(event, recording);
  }

  void requireWords(const Event& event, const Recording& recording) {
    for (const std::string& word : split(recording.words, ' ')) {
      const bool isDelivered = std::ranges::any_of(delivered_, [&](const std::string& text) {
        return text.find(word) != std::string::npos;
      });
      if (!isDelivered && !tooShort_.contains(word))
        return breaks(event.time,
                      processed_ + " was removed, and \"" + word + "\" was not in the text");
    }
  }

  Words words_;
  MonotonicTime pieceOpened_;
  std::set<std::string> tooShort_;
  std::set<std::string> brokenDisk_;
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
