#include "shell/review/review_view.h"

#include <chrono>
#include <utility>

namespace quillo {
namespace {

// Keys on their way when the panel took the focus were meant for the application below.
constexpr Duration keysInFlight = std::chrono::milliseconds(250);

}  // namespace

MacReviewView::MacReviewView(const MainThread& mainThread, Fields fields)
    : mainThread_(mainThread),
      fields_(std::move(fields)),
      verdict_(reviewVerdict(fields_.youSaid, fields_.means)),
      keysCountFrom_(mainThread.now() + keysInFlight) {}

bool MacReviewView::acceptsKeys() const {
  return mainThread_.now() >= keysCountFrom_;
}

std::string MacReviewView::verdictText() const {
  return verdict_ == ReviewVerdict::matches ? "matches" : "may differ";
}

std::string MacReviewView::insertTitle() const {
  return fields_.escInserts ? "Insert · ⏎ Esc" : "Insert";
}

std::vector<std::string> MacReviewView::texts() const {
  std::vector<std::string> texts = {"Review translation", "You said", fields_.youSaidLanguage,
                                    fields_.youSaid};
  if (showsMeans()) texts.insert(texts.end(), {"Means", verdictText(), fields_.means});
  texts.insert(texts.end(), {"Will insert", fields_.insertLanguage, fields_.willInsert});
  return texts;
}

std::vector<PanelControl> MacReviewView::controls() const {
  return {
      {"Re-record", fields_.onReRecord},
      {"Discard", fields_.onDiscard},
      {insertTitle(), fields_.onInsert, KeyEquivalent::defaultAction},
      {"", fields_.escInserts ? fields_.onInsert : fields_.onDiscard, KeyEquivalent::cancelAction},
  };
}

}  // namespace quillo
