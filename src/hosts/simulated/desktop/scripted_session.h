// A desktop session with or without a limitation.
#pragma once

#include <utility>

#include "platform/desktop_session.h"

namespace quillo::simulated {

// Everything works everywhere at first.
class ScriptedSession final : public DesktopSession {
 public:
  std::optional<Words> limitation() const override { return limitation_; }

  // --- Driver ---

  void setLimitation(std::optional<Words> sentence) { limitation_ = std::move(sentence); }

 private:
  std::optional<Words> limitation_;
};

}  // namespace quillo::simulated
