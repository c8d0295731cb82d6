#include "state/plan_label.h"

#include "base/text.h"

namespace quillo {

std::string planLabel(std::string_view plan) {
  const std::string id = lowercased(plan);
  if (id == "pro") return "Pro";
  if (id == "premium") return "Premium";
  if (id.empty() || id == "free") return "Free";
  return capitalized(plan);
}

}  // namespace quillo
