// The applications that run on the desktop.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

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

// Main thread; no call blocks for longer than a round trip to the window system.
class Workspace {
 public:
  virtual ~Workspace() = default;

  virtual std::optional<RunningApplication> frontmostApplication() const = 0;
  // Brings the application to the front, ignoring others; true when the request was accepted.
  virtual bool activate(const RunningApplication& application) = 0;
  virtual bool isTerminated(const RunningApplication& application) const = 0;
  // Calls `activated` on the main thread whenever an application comes to the front, until the
  // result is dropped.
  [[nodiscard]] virtual std::shared_ptr<void> observeActivation(
      std::function<void(const RunningApplication&)> activated) = 0;
};

}  // namespace quillo
