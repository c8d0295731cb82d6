// The real desktop for figures of the whole program.
#pragma once

#include "hosts/linux/linux_desktop.h"

namespace quillo {

// Questions are answered at once: they would take the focus.
class NoQuestions final : public Alerts {
 public:
  std::size_t runModal(const Alert&) override { return 0; }
};

class UnaskingDesktop final : public linux_host::LinuxDesktop {
 public:
  using LinuxDesktop::LinuxDesktop;
  Alerts& alerts() { return noQuestions_; }

 private:
  NoQuestions noQuestions_;
};

}  // namespace quillo
