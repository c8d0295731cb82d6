// The program's item in the desktop's bar, with its menu.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/words.h"

namespace quillo {

struct MenuItem {
  Words title;  // empty: a line between groups
  std::function<void()> action;
  std::vector<MenuItem> submenu;
  bool isEnabled = true;
  bool isChecked = false;

  static MenuItem separator() { return {}; }
  bool isSeparator() const { return title.empty(); }
};

// Main thread. Appears with the first icon. A desktop without a bar shows nothing.
class StatusItem {
 public:
  virtual ~StatusItem() = default;
  // `symbol` names one of the program's symbols, as "mic.circle.fill"; `description` is what it
  // means, for those who cannot see it.
  virtual void setIcon(const std::string& symbol, const Words& description) = 0;
  // Replaces the menu. A menu that is open keeps its shape until it is closed.
  virtual void setMenu(std::vector<MenuItem> menu) = 0;
};

}  // namespace quillo
