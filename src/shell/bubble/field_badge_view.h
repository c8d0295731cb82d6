// What the badge shows: the mark.
#pragma once

#include <functional>
#include <string_view>
#include <utility>
#include <vector>

#include "base/published.h"
#include "platform/content.h"

namespace quillo {

// Main thread.
class FieldBadgeView final : public Content {
 public:
  explicit FieldBadgeView(std::function<void()> onClick) : onClick_(std::move(onClick)) {}

  Published<bool> hovering;

  static constexpr std::string_view name = "fieldBadge";
  std::string_view viewName() const override { return name; }
  std::vector<Words> texts() const override { return {}; }
  std::vector<Control> controls() const override {
    return {{.id = "badge",
             .name = words("Quillo: fix or improve this text"),
             .press = onClick_,
             .help = words("Quillo - click or hover to Fix / Improve the selection")}};
  }
  void setHovered(bool isHovered) override { hovering = isHovered; }

 private:
  std::function<void()> onClick_;
};

}  // namespace quillo
