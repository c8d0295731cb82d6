// Everything that can be seen of the program from outside, in the order of happening.
#pragma once

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "base/json.h"
#include "base/time.h"

namespace quillo::sim {

// One thing that happened. docs/scenarios.md lists the kinds and their fields.
struct Event {
  MonotonicTime time;
  std::string_view what;  // a literal
  Json fields;

  // {"t": seconds, "what": ..., fields...}
  std::string line() const;
};

class Trace {
 public:
  using Watcher = std::function<void(const Event&)>;

  // `now` tells the virtual time.
  explicit Trace(std::function<MonotonicTime()> now) : now_(std::move(now)) {}
  Trace(const Trace&) = delete;
  Trace& operator=(const Trace&) = delete;

  // `what` is a literal.
  void tell(std::string_view what, Json fields = Json::object());
  // Watchers see every later event, in the order of their coming.
  void watch(Watcher watcher) { watchers_.push_back(std::move(watcher)); }
  // Every later event as a line. The stream outlives the trace.
  void printTo(std::ostream& stream) { stream_ = &stream; }

  std::uint64_t count() const { return count_; }
  // Of all lines so far: 64-bit FNV-1a (Fowler, Noll and Vo).
  std::uint64_t digest() const { return digest_; }

 private:
  std::function<MonotonicTime()> now_;
  std::vector<Watcher> watchers_;
  std::ostream* stream_ = nullptr;
  std::uint64_t count_ = 0;
  std::uint64_t digest_ = 0xcbf29ce484222325;
};

}  // namespace quillo::sim
