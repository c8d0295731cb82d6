// The applications that run on the desktop.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/result.h"

namespace quillo {

// A running application, as it was when it was asked for; its process may have ended since.
struct RunningApplication {
  std::int32_t processIdentifier = 0;
  std::optional<std::string> bundleIdentifier;
  std::optional<std::string> localizedName;
  // Tells the windows of one process apart where the desktop activates windows; 0 if it does not.
  std::uint64_t window = 0;

  friend bool operator==(const RunningApplication& a, const RunningApplication& b) {
    return a.processIdentifier == b.processIdentifier;
  }
};

enum class WorkspaceFailure {
  nothingToShow,  // the application has ended, or has no window
  refused,        // the application does not want to
};

// Main thread; no call blocks for longer than a round trip to the window system.
class Workspace {
 public:
  virtual ~Workspace() = default;

  virtual std::optional<RunningApplication> frontmostApplication() const = 0;
  // Asks that the application come to the front, ignoring others. It may come later, or never.
  virtual Result<void, WorkspaceFailure> activate(const RunningApplication& application) = 0;
  virtual bool isTerminated(const RunningApplication& application) const = 0;
  // Calls `activated` on the main thread whenever an application comes to the front, until the
  // result is dropped.
  [[nodiscard]] virtual std::shared_ptr<void> observeActivation(
      std::function<void(const RunningApplication&)> activated) = 0;
};

}  // namespace quillo
