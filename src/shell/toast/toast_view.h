// What a toast shows.
#pragma once

#include <string>
#include <vector>

#include "base/published.h"
#include "platform/panels.h"

namespace quillo {

struct MacToastView final : PanelContent {
  Published<std::string> text;

  std::vector<std::string> texts() const override { return {text.get()}; }
};

}  // namespace quillo
