#include "hosts/simulated/screen/key_windows.h"

#include <algorithm>

namespace quillo::simulated {

bool KeyWindows::isKey(const void* window) const {
  return !entries_.empty() && entries_.back().window == window &&
         workspace_.frontmost() == &workspace_.self();
}

void KeyWindows::take(const void* window) {
  const bool isInFront = workspace_.frontmost() == &workspace_.self();
  const auto found = std::ranges::find(entries_, window, &Entry::window);
  const bool wasInFront = isInFront && (found == entries_.end() || found->wasInFront);
  if (found != entries_.end()) entries_.erase(found);
  entries_.push_back({window, wasInFront});
  workspace_.focus(workspace_.self());
  if (changed_) changed_();
}

void KeyWindows::leave(const void* window) {
  const auto found = std::ranges::find(entries_, window, &Entry::window);
  if (found == entries_.end()) return;
  const bool wasKey = isKey(window);
  const bool staysInFront = found->wasInFront && entries_.size() > 1;
  entries_.erase(found);
  if (wasKey && !staysInFront) workspace_.leaveFront(workspace_.self());
  if (changed_) changed_();
}

}  // namespace quillo::simulated
