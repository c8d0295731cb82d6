// What the windows and panels of the suites show.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/content.h"

namespace quillo::contracts {

// One control that fills the view, and one for each key.
class TestContent final : public Content {
 public:
  std::string_view viewName() const override { return "test"; }
  std::vector<Words> texts() const override { return {words("Press")}; }
  std::vector<Control> controls() const override {
    const auto note = [this](const char* what) {
      return [this, what] { pressed_->push_back(what); };
    };
    return {{.id = "button", .name = words("Press"), .press = note("button")},
            {.id = "return", .press = note("return"), .key = KeyEquivalent::defaultAction},
            {.id = "escape", .press = note("escape"), .key = KeyEquivalent::cancelAction}};
  }
  bool acceptsKeys() const override { return acceptsKeys_; }

  void setAcceptsKeys(bool accepts) { acceptsKeys_ = accepts; }
  const std::vector<std::string>& pressed() const { return *pressed_; }

 private:
  bool acceptsKeys_ = true;
  std::shared_ptr<std::vector<std::string>> pressed_ = std::make_shared<std::vector<std::string>>();
};

}  // namespace quillo::contracts
