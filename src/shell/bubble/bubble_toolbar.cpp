#include "shell/bubble/bubble_toolbar.h"

#include <chrono>
#include <memory>

namespace quillo {
namespace {

constexpr Duration closesAfter = std::chrono::milliseconds(200);

}  // namespace

BubbleToolbar::BubbleToolbar(MainThread& mainThread, BubbleModel& model, Callbacks callbacks)
    : mainThread_(mainThread), model_(model), callbacks_(std::move(callbacks)) {
  presentations_ = model_.presentationID.observe([this](const auto&) {
    closeWork_.invalidate();
    if (isCustomOpen_) isCustomOpen_ = false;
  });
}

Words BubbleToolbar::muteToolTip() const {
  const std::string& label = model_.muteLabel;
  if (label.empty()) return words("Turn the bubble off here");
  return words("Turn the bubble off on {place}", {{"place", asItStands(label)}});
}

Subscription BubbleToolbar::observe(std::function<void()> changed) {
  auto all = std::make_shared<std::vector<Subscription>>();
  const auto add = [&](auto& published) {
    all->push_back(published.observe([changed](const auto&) { changed(); }));
  };
  add(model_.working);
  add(model_.activeAction);
  add(model_.error);
  add(model_.muteLabel);
  add(model_.isCollapsed);
  add(model_.presentationID);
  add(isCustomOpen_);
  return Subscription(std::move(all));
}

std::vector<Words> BubbleToolbar::texts() const {
  if (model_.isCollapsed) return {};
  std::vector<Words> texts;
  if (model_.error.get()) texts.push_back(*model_.error.get());
  if (isCustomOpen_ && customPrompts().empty()) texts.push_back(emptyListText());
  return texts;
}

std::vector<Control> BubbleToolbar::controls() const {
  // The pointer does the same; this is for those who have none.
  if (model_.isCollapsed) return {{.id = "open", .name = words("Quillo"), .press = open_}};
  const bool isIdle = !model_.working;
  std::vector<Control> controls = {
      {.id = "fix",
       .name = words("Fix"),
       .press = [this] { callbacks_.perform(BubbleAction::fix); },
       .isEnabled = isIdle,
       .help = words("Correct spelling, grammar and punctuation — keeps your wording")},
      {.id = "improve",
       .name = words("Improve"),
       .press = [this] { callbacks_.perform(BubbleAction::improve); },
       .isEnabled = isIdle,
       .help = words("Rewrite it to read clearer and more fluent")},
      {.id = "custom",
       .name = words("Custom"),
       .press = toggleCustom_,
       .isEnabled = isIdle,
       .help = words("Apply one of your saved prompts")},
      {.id = "mute",
       .name = muteToolTip(),
       .press = callbacks_.mute,
       .isEnabled = isIdle,
       .help = muteToolTip()},
  };
  if (isCustomOpen_)
    for (Control& prompt : promptControls()) controls.push_back(std::move(prompt));
  return controls;
}

std::vector<Control> BubbleToolbar::promptControls() const {
  std::vector<Control> controls;
  for (const PromptInstruction& prompt : customPrompts())
    controls.push_back({.id = "prompt:" + prompt.id,
                        .name = asItStands(prompt.name),
                        .press = [pick = pickPrompt_, text = prompt.text] { pick(text); },
                        .isEnabled = !model_.working});
  return controls;
}

// --- Growing and shrinking ---

void BubbleToolbar::setHovered(bool isHovered) {
  if (isHovered && model_.isCollapsed) expand();
}

void BubbleToolbar::expand() {
  model_.isCollapsed = false;
  callbacks_.requestResize();
}

void BubbleToolbar::pressCustom() {
  if (isCustomOpen_) return closeSoon();
  closeWork_.invalidate();
  setCustomOpen(true);
}

void BubbleToolbar::closeSoon() {
  closeWork_ = Timer(mainThread_, closesAfter, [this] { setCustomOpen(false); });
}

void BubbleToolbar::setCustomOpen(bool isOpen) {
  if (isCustomOpen_ == isOpen) return;
  isCustomOpen_ = isOpen;
  callbacks_.requestResize();
}

}  // namespace quillo
