// A diagnostics log for rooms that run without the real one.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/log.h"
#include "hosts/simulated/time/timeline.h"

namespace quillo::simulated {

class RecordedLog final : public Log {
 public:
  explicit RecordedLog(const Timeline& timeline) : timeline_(timeline) {}

  void log(std::string_view category, std::string_view message) override {
    entries_.push_back({timeline_.now(), std::string(category), std::string(message)});
  }

  // --- Driver ---

  struct Entry {
    MonotonicTime time;
    std::string category;
    std::string message;
  };
  const std::vector<Entry>& entries() const { return entries_; }
  // As "[category] message".
  std::vector<std::string> lines() const {
    std::vector<std::string> lines;
    for (const Entry& entry : entries_)
      lines.push_back("[" + entry.category + "] " + entry.message);
    return lines;
  }

 private:
  const Timeline& timeline_;
  std::vector<Entry> entries_;
};

}  // namespace quillo::simulated
