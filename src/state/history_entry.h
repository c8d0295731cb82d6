// One dictation in history.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/bytes.h"
#include "base/time.h"

namespace quillo {

struct MacHistoryEntry {
  std::string id;  // UUID in canonical upper-case form
  Date date;
  std::string rawTranscript;  // as the service returned it
  std::string finalText;      // as it was inserted
  std::string inputLanguage;
  std::string outputLanguage;
  std::optional<std::string> targetAppName;

  // The same dictation.
  friend bool operator==(const MacHistoryEntry& a, const MacHistoryEntry& b) {
    return a.id == b.id;
  }
};

// Entries never change once made, so lists share them and a copy of a list is cheap.
using HistoryEntries = std::vector<std::shared_ptr<const MacHistoryEntry>>;

// A JSON array; dates in ISO 8601 lose their fractions of a second. Any thread.
Bytes encodeHistory(const HistoryEntries& entries);
// Strict: one missing or mistyped field makes the whole text unreadable.
std::optional<HistoryEntries> decodeHistory(std::string_view json);

}  // namespace quillo
