// What a toast shows.
#pragma once

#include <string_view>
#include <vector>

#include "base/published.h"
#include "platform/panels.h"

namespace quillo {

struct MacToastView final : Content {
  Published<Words> text;

  static constexpr std::string_view name = "toast";
  std::string_view viewName() const override { return name; }
  std::vector<Words> texts() const override { return {text.get()}; }
};

}  // namespace quillo
