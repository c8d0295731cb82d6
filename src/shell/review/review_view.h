// What the review panel shows.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/main_thread.h"
#include "platform/panels.h"
#include "shell/review/review_verdict.h"

namespace quillo {

// Main thread.
class MacReviewView final : public Content {
 public:
  struct Fields {
    std::string youSaid;
    Words youSaidLanguage;  // a label
    std::string means;      // translated back; may be empty
    std::string willInsert;
    Words insertLanguage;  // a label
    bool escInserts = false;
    std::function<void()> onInsert;
    std::function<void()> onReRecord;
    std::function<void()> onDiscard;
  };

  // Takes the focus now: keys count a little later.
  MacReviewView(const MainThread& mainThread, Fields fields);

  // A text with what it is. Beside its title stands its language, or else a verdict on it.
  struct Section {
    Words title;
    Words language;
    std::optional<ReviewVerdict> verdict;
    std::string text;
  };
  Words title() const { return words("Review translation"); }
  std::vector<Section> sections() const;

  static constexpr std::string_view name = "review";
  std::string_view viewName() const override { return name; }
  std::vector<Words> texts() const override;
  std::vector<Control> controls() const override;
  bool acceptsKeys() const override;

 private:
  const MainThread& mainThread_;
  Fields fields_;
  ReviewVerdict verdict_;
  MonotonicTime keysCountFrom_;
};

}  // namespace quillo
