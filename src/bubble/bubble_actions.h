// What the user picks in the bubble: one request to the hosted service, and one paste.
#pragma once

#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "api/murmex_api.h"
#include "base/log.h"
#include "base/task.h"
#include "bubble/selection_bubble.h"
#include "insertion/text_insertion.h"
#include "state/account_state.h"
#include "state/writing_settings.h"

namespace quillo {

// Main thread.
class BubbleActions {
 public:
  BubbleActions(MainThread& mainThread, MacSelectionBubble& bubble, BubblePanel& panel,
                MurmexAPI& api, const AccountState& account, const WritingSettings& writing,
                const Workspace& workspace, MacTextInsertion& insertion, Log& log)
      : mainThread_(mainThread),
        bubble_(bubble),
        panel_(panel),
        api_(api),
        account_(account),
        writing_(writing),
        workspace_(workspace),
        insertion_(insertion),
        log_(log) {}

  void perform(BubbleAction action);
  // A saved prompt, by its text.
  void performCustom(const std::string& prompt);
  std::vector<PromptInstruction> customPrompts() const { return writing_.savedPrompts(); }

 private:
  struct Rewrite {
    std::string mode;
    std::optional<StylePrompt> prompt;
    Words failure;  // what the user is told when it comes to nothing
  };

  bool mustCapture() const;
  bool mayRewrite() const;
  void captureFirst(std::function<void()> next);
  void rewrite(Rewrite rewrite);
  TransformRequest requestFor(const Rewrite& rewrite) const;
  Task<> send(TransformRequest request, Words failureText);
  Task<> writeBack(std::string text);
  void fail(Words message);

  MainThread& mainThread_;
  MacSelectionBubble& bubble_;
  BubblePanel& panel_;
  MurmexAPI& api_;
  const AccountState& account_;
  const WritingSettings& writing_;
  const Workspace& workspace_;
  MacTextInsertion& insertion_;
  Log& log_;
  std::optional<std::string> capturingFor_;  // the showing of the bubble that waits for a capture
  Timer clearing_;
};

// The status of a request that failed because the plan's limit is reached.
bool isPlanLimit(const std::exception_ptr& failure);
Words planLimitText();

}  // namespace quillo
