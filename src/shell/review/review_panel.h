// Asks the user to look at a translation before it is inserted.
#pragma once

#include <memory>
#include <optional>

#include "core/review_panel.h"
#include "platform/application.h"
#include "platform/panels.h"
#include "platform/screens.h"
#include "shell/review/review_view.h"
#include "state/insertion_settings.h"

namespace quillo {

// Takes the focus, since it needs Return and Escape. One review at a time. Main thread.
class MacReviewPanel final : public ReviewPanel {
 public:
  using Decision = ReviewDecision;

  MacReviewPanel(MainThread& mainThread, Panels& panels, Screens& screens, Application& application,
                 const InsertionSettings& settings);

  // Waits for as long as the user does, also when the waiting task is cancelled.
  Task<Decision> present(ReviewRequest request) override;

 private:
  void open(ReviewRequest request);
  void center();
  // Only the first of several clicks counts.
  void resolve(Decision decision);

  MainThread& mainThread_;
  Panels& panels_;
  Screens& screens_;
  Application& application_;
  const InsertionSettings& settings_;
  std::optional<Completion<Decision>> continuation_;
  // Kept until the next review: it is one of its own buttons that ends a review.
  std::unique_ptr<MacReviewView> view_;
  std::unique_ptr<Panel> panel_;
};

}  // namespace quillo
