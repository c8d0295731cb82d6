// What the bubble shows: a mark, or the buttons, with the list of saved prompts below them.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/main_thread.h"
#include "base/published.h"
#include "bubble/bubble_model.h"
#include "platform/content.h"
#include "state/prompt_instruction.h"

namespace quillo {

// Main thread.
class BubbleToolbar final : public Content {
 public:
  struct Callbacks {
    std::function<void(BubbleAction)> perform;
    std::function<void(const std::string& prompt)> performCustom;
    std::function<std::vector<PromptInstruction>()> customPrompts;
    std::function<void()> requestResize;
    std::function<void()> mute;
  };

  // `model` outlives the toolbar.
  BubbleToolbar(MainThread& mainThread, BubbleModel& model, Callbacks callbacks);
  BubbleToolbar(const BubbleToolbar&) = delete;
  BubbleToolbar& operator=(const BubbleToolbar&) = delete;

  const BubbleModel& model() const { return model_; }
  bool isCustomOpen() const { return isCustomOpen_; }
  std::vector<PromptInstruction> customPrompts() const { return callbacks_.customPrompts(); }
  Words muteToolTip() const;
  static Words emptyListText() { return words("No saved prompts"); }
  // Something of what it shows has changed.
  [[nodiscard]] Subscription observe(std::function<void()> changed);

  static constexpr std::string_view name = "bubble";
  std::string_view viewName() const override { return name; }
  std::vector<Words> texts() const override;
  std::vector<Control> controls() const override;
  // A mark opens under the pointer, and stays open.
  void setHovered(bool isHovered) override;

 private:
  void expand();
  void pressCustom();
  void closeSoon();
  void setCustomOpen(bool isOpen);
  std::vector<Control> promptControls() const;

  MainThread& mainThread_;
  BubbleModel& model_;
  Callbacks callbacks_;
  // What the controls do; they are made anew at each look.
  const std::function<void()> open_ = [this] { expand(); };
  const std::function<void()> toggleCustom_ = [this] { pressCustom(); };
  const std::function<void(const std::string&)> pickPrompt_ = [this](const std::string& prompt) {
    closeSoon();
    callbacks_.performCustom(prompt);
  };
  Published<bool> isCustomOpen_;
  Timer closeWork_;
  Subscription presentations_;
};

}  // namespace quillo
