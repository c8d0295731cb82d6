// A desktop session with or without a limitation.
#pragma once

#include <utility>

#include "platform/desktop_session.h"

namespace quillo::simulated {

// Everything works everywhere at first.
class ScriptedSession final : public DesktopSession {
 public:
  std::optional<std::string> limitation() const override { return limitation_; }

  // --- Driver ---

  void setLimitation(std::optional<std::string> sentence) { limitation_ = std::move(sentence); }

 private:
  std::optional<std::string> limitation_;
};

}  // namespace quillo::simulated
