#include "hosts/simulated/screen/virtual_status_item.h"

namespace quillo::simulated {
namespace {

const MenuItem* find(const std::vector<MenuItem>& menu, std::string_view path) {
  for (const MenuItem& item : menu) {
    const std::string title = item.title.english();
    if (item.isSeparator() || !path.starts_with(title)) continue;
    const std::string_view rest = path.substr(title.size());
    if (rest.empty()) return &item;
    if (!rest.starts_with('/')) continue;
    if (const MenuItem* below = find(item.submenu, rest.substr(1))) return below;
  }
  return nullptr;
}

}  // namespace

void VirtualStatusItem::setIcon(const std::string& symbol, const Words& description) {
  icon_ = symbol;
  description_ = description;
}

const MenuItem* VirtualStatusItem::item(std::string_view path) const {
  return find(menu_, path);
}

bool VirtualStatusItem::choose(std::string_view path) {
  const MenuItem* chosen = item(path);
  if (!chosen || !chosen->isEnabled || !chosen->action) return false;
  // A copy: the action may replace the menu.
  const auto action = chosen->action;
  action();
  return true;
}

}  // namespace quillo::simulated
