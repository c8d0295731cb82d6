// What the bubble is about now; views observe it.
#pragma once

#include <optional>
#include <string>

#include "base/published.h"
#include "base/words.h"

namespace quillo {

enum class BubbleAction { fix, improve };

// Main thread.
struct BubbleModel {
  Published<bool> working;  // a rewrite runs, and keeps its bubble
  // Which button shows progress; absent for a saved prompt.
  Published<std::optional<BubbleAction>> activeAction;
  Published<std::optional<Words>> error;
  Published<std::string> muteLabel;       // the site or application; may be empty
  Published<bool> isCollapsed;            // a small mark, until the pointer comes
  Published<std::string> presentationID;  // another one at each show
};

}  // namespace quillo
