// The login item, which the system may refuse.
#pragma once

#include <optional>
#include <string>

#include "platform/login_item.h"

namespace quillo::simulated {

class ScriptedLoginItem final : public LoginItem {
 public:
  bool isEnabled() const override { return enabled_; }
  std::optional<std::string> registerItem() override { return change(true); }
  std::optional<std::string> unregisterItem() override { return change(false); }

  // --- Driver ---

  void setEnabled(bool enabled) { enabled_ = enabled; }
  // Every change fails with these words; nothing ends that.
  void refuse(std::optional<std::string> error) { error_ = std::move(error); }

 private:
  std::optional<std::string> change(bool enabled) {
    if (!error_) enabled_ = enabled;
    return error_;
  }

  bool enabled_ = false;
  std::optional<std::string> error_;
};

}  // namespace quillo::simulated
