// Starting with the session, by an autostart entry (Desktop Application Autostart,
// freedesktop.org).
#pragma once

#include "platform/file_path.h"
#include "platform/login_item.h"

namespace quillo::linux_host {

class AutostartLoginItem final : public LoginItem {
 public:
  // The user's own folder of entries, and what the entry starts.
  AutostartLoginItem(FilePath autostartDirectory, FilePath executable);

  bool isEnabled() const override;
  Result<void, Problem> registerItem() override;
  Result<void, Problem> unregisterItem() override;

 private:
  const FilePath entry_;
  const FilePath executable_;
};

}  // namespace quillo::linux_host
