// The item in the bar, as a user finds it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/status_item.h"

namespace quillo::simulated {

class VirtualStatusItem final : public StatusItem {
 public:
  void setIcon(const std::string& symbol, const Words& description) override;
  void setMenu(std::vector<MenuItem> menu) override { menu_ = std::move(menu); }

  // --- Driver ---

  bool isShown() const { return !icon_.empty(); }
  const std::string& icon() const { return icon_; }
  const Words& description() const { return description_; }
  const std::vector<MenuItem>& menu() const { return menu_; }
  // "Title", or "Submenu/Title"; null when there is none.
  const MenuItem* item(std::string_view path) const;
  // Whether there is such an item that can be chosen; chooses it.
  bool choose(std::string_view path);

 private:
  std::string icon_;
  Words description_;
  std::vector<MenuItem> menu_;
};

}  // namespace quillo::simulated
