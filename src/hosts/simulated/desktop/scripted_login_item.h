// The login item, which the system may refuse.
#pragma once

#include <optional>
#include <string>

#include "platform/login_item.h"

namespace quillo::simulated {

class ScriptedLoginItem final : public LoginItem {
 public:
  bool isEnabled() const override { return enabled_; }
  Result<void, Problem> registerItem() override { return change(true); }
  Result<void, Problem> unregisterItem() override { return change(false); }

  // --- Driver ---

  void setEnabled(bool enabled) { enabled_ = enabled; }
  // Every change fails with these words; nothing ends that.
  void refuse(std::optional<std::string> error) { error_ = std::move(error); }

 private:
  Result<void, Problem> change(bool enabled) {
    if (error_) return Problem{*error_};
    enabled_ = enabled;
    return {};
  }

  bool enabled_ = false;
  std::optional<std::string> error_;
};

}  // namespace quillo::simulated
