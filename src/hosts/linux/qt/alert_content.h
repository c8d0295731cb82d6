// What a question's panel shows.
#pragma once

#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "base/time.h"
#include "platform/alerts.h"
#include "platform/panels.h"

namespace quillo::linux_host {

// Return presses the first button, Escape the last. Keys count a little after it was made, when
// those on their way to the application below have passed.
class AlertContent final : public Content {
 public:
  AlertContent(Alerts::Alert alert, std::function<void(std::size_t button)> answered);

  const Alerts::Alert& alert() const { return alert_; }

  static constexpr std::string_view name = "alert";
  std::string_view viewName() const override { return name; }
  std::vector<Words> texts() const override;
  std::vector<Control> controls() const override;
  bool acceptsKeys() const override;

 private:
  Alerts::Alert alert_;
  std::function<void(std::size_t)> answered_;
  MonotonicTime keysCountFrom_;
};

}  // namespace quillo::linux_host
