// Hands the finished text over: pasted, copied, or first reviewed.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/log.h"
#include "base/task.h"
#include "core/dictation_state.h"
#include "core/review_panel.h"
#include "core/status_panel.h"
#include "core/transform_pipeline.h"
#include "insertion/text_insertion.h"
#include "platform/workspace.h"
#include "state/history_settings.h"
#include "state/history_store.h"
#include "state/insertion_settings.h"

namespace quillo {

// Main thread.
class Delivery {
 public:
  struct FinishedText {
    std::string rawText;
    std::string finalText;
    LanguagePair languages;
    std::optional<RunningApplication> target;
  };
  enum class End { delivered, recordAgain };

  Delivery(DictationState& dictation, const InsertionSettings& settings,
           const HistorySettings& historySettings, MacTextInsertion& insertion,
           MacHistoryStore& history, StatusPanel& panel, ReviewPanel& review,
           TransformPipeline& pipeline, Log& log);

  // Delivers by the user's settings, and keeps the dictation in history. Throws when it is
  // cancelled before the text is on its way.
  Task<End> deliver(FinishedText text);

  // Pastes an earlier result into `target`.
  Task<> pasteLast(std::string text, std::optional<RunningApplication> target);

 private:
  enum class Inserted { yes, no };

  Task<> verify(std::string finalText, LanguagePair pair);
  Task<End> deliverReviewed(FinishedText text);
  // `caller` begins the log line when the text could only be copied. It lives for ever.
  Task<Inserted> insert(std::string text, std::optional<RunningApplication> target,
                        std::string_view caller);
  void copy(const std::string& text, Words status);
  void record(const FinishedText& text);

  DictationState& dictation_;
  const InsertionSettings& settings_;
  const HistorySettings& historySettings_;
  MacTextInsertion& insertion_;
  MacHistoryStore& history_;
  StatusPanel& panel_;
  ReviewPanel& review_;
  TransformPipeline& pipeline_;
  Log& log_;
};

}  // namespace quillo
