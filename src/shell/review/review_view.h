// What the review panel shows.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/main_thread.h"
#include "platform/panels.h"
#include "shell/review/review_verdict.h"

namespace quillo {

// Main thread.
class MacReviewView final : public PanelContent {
 public:
  struct Fields {
    std::string youSaid;
    std::string youSaidLanguage;  // a label
    std::string means;            // translated back; may be empty
    std::string willInsert;
    std::string insertLanguage;  // a label
    bool escInserts = false;
    std::function<void()> onInsert;
    std::function<void()> onReRecord;
    std::function<void()> onDiscard;
  };

  // Takes the focus now: keys count a little later.
  MacReviewView(const MainThread& mainThread, Fields fields);

  const Fields& fields() const { return fields_; }
  bool showsMeans() const { return !fields_.means.empty(); }
  ReviewVerdict verdict() const { return verdict_; }
  std::string verdictText() const;
  std::string insertTitle() const;

  std::vector<std::string> texts() const override;
  std::vector<PanelControl> controls() const override;
  bool acceptsKeys() const override;

 private:
  const MainThread& mainThread_;
  Fields fields_;
  ReviewVerdict verdict_;
  MonotonicTime keysCountFrom_;
};

}  // namespace quillo
