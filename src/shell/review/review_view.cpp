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

std::vector<MacReviewView::Section> MacReviewView::sections() const {
  std::vector<Section> sections = {
      {.title = words("You said"), .language = fields_.youSaidLanguage, .text = fields_.youSaid}};
  if (!fields_.means.empty())
    sections.push_back({.title = words("Means"), .verdict = verdict_, .text = fields_.means});
  sections.push_back({.title = words("Will insert"),
                      .language = fields_.insertLanguage,
                      .text = fields_.willInsert});
  return sections;
}

std::vector<Words> MacReviewView::texts() const {
  std::vector<Words> texts = {title()};
  for (Section& section : sections())
    texts.insert(texts.end(),
                 {section.title, section.verdict ? verdictText(*section.verdict) : section.language,
                  asItStands(section.text)});
  return texts;
}

std::vector<Control> MacReviewView::controls() const {
  return {
      {.id = "re-record", .name = words("Re-record"), .press = fields_.onReRecord},
      {.id = "discard", .name = words("Discard"), .press = fields_.onDiscard},
      {.id = "insert",
       .name = fields_.escInserts ? words("Insert · ⏎ Esc") : words("Insert"),
       .press = fields_.onInsert,
       .key = KeyEquivalent::defaultAction},
      {.id = "escape",
       .press = fields_.escInserts ? fields_.onInsert : fields_.onDiscard,
       .key = KeyEquivalent::cancelAction},
  };
}

}  // namespace quillo
