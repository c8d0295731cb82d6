// What a toast shows.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/published.h"
#include "platform/panels.h"

namespace quillo {

struct MacToastView final : Content {
  Published<std::string> text;

  static constexpr std::string_view name = "toast";
  std::string_view viewName() const override { return name; }
  std::vector<std::string> texts() const override { return {text.get()}; }
};

}  // namespace quillo
