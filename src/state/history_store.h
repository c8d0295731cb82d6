// The user's recent dictations on this machine, one plain file an account.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>

#include "base/published.h"
#include "platform/clock.h"
#include "platform/file_manager.h"
#include "platform/random.h"
#include "platform/serial_queue.h"
#include "platform/user_defaults.h"
#include "state/account_state.h"
#include "state/history_entry.h"
#include "state/history_settings.h"

namespace quillo {

// Main thread, but for the encoding and writing of files. Nothing leaves the machine, nothing is
// enciphered. A file that cannot be read counts as empty, and is overwritten by the next dictation.
class MacHistoryStore {
 public:
  static constexpr std::int64_t maxEntries = 500;

  // Takes over the history of versions without accounts, and loads the current account's.
  MacHistoryStore(const HistorySettings& settings, const AccountState& account,
                  UserDefaults& defaults, FileManager& files, SerialQueues& queues, Clock& clock,
                  Random& random);

  Published<HistoryEntries> entries;  // newest first

  // Loads the file of whoever is signed in, unless that is what `entries` holds already.
  void switchToCurrentKey();
  // A blank text is not kept.
  void record(std::string rawTranscript, std::string finalText, std::string inputLanguage,
              std::string outputLanguage, std::optional<std::string> targetAppName);

  // Nothing when history is kept for ever.
  std::optional<Date> retentionCutoff() const;
  // The number of entries removed.
  std::int64_t purge(Date olderThan);
  void removeEntries(const std::unordered_set<std::string>& ids);
  void removeEntry(std::string_view id);
  void removeAll();

  // Queues a write of `entries` as they are now to the file of `key`. A failure is not told.
  void save(const std::string& key);

  const std::optional<std::string>& currentKey() const { return currentKey_; }

 private:
  using IsRemoved = std::function<bool(const MacHistoryEntry&)>;

  std::string keyOfAccount() const;
  FilePath fileOf(std::string_view key) const;
  void takeOverSingleUserFile();
  HistoryEntries load(std::string_view key) const;
  void purgeExpired();
  // `entries` without some of them, in their order.
  HistoryEntries remaining(const IsRemoved& isRemoved) const;

  const HistorySettings& settings_;
  const AccountState& account_;
  UserDefaults& defaults_;
  FileManager& files_;
  Clock& clock_;
  Random& random_;
  FilePath directory_;
  std::optional<std::string> currentKey_;
  Subscription retentionChanged_;
  Subscription accountCleared_;
  // Last, so that it finishes its work before the rest goes.
  std::unique_ptr<SerialQueue> queue_;
};

}  // namespace quillo
