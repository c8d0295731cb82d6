#include "state/history_store.h"

#include <algorithm>
#include <iterator>

#include "base/text.h"

namespace quillo {
namespace {

// Longer than any history; keeps the arithmetic on dates within the calendar.
constexpr std::int64_t longestRetentionDays = 36'500;

FilePath historyDirectory(const FileManager& files) {
  return files.directory(UserDirectory::applicationSupport).value_or(files.temporaryDirectory()) /
         "Quillo";
}

std::string safeKey(std::string_view key) {
  std::string safe(key);
  std::ranges::replace_if(safe, [](char c) { return c == '/' || c == '\\' || c == ':'; }, '_');
  return safe;
}

}  // namespace

MacHistoryStore::MacHistoryStore(const HistorySettings& settings, const AccountState& account,
                                 UserDefaults& defaults, FileManager& files, SerialQueues& queues,
                                 Clock& clock, Random& random)
    : settings_(settings),
      account_(account),
      defaults_(defaults),
      files_(files),
      clock_(clock),
      random_(random),
      directory_(historyDirectory(files)),
      queue_(queues.make("com.murmex.mac.history-io")) {
  files_.createDirectory(directory_);  // without it nothing is kept, and nothing fails
  takeOverSingleUserFile();
  switchToCurrentKey();
  retentionChanged_ = settings_.historyRetentionDays.observe([this](auto) { purgeExpired(); });
  accountCleared_ = account_.observeAccountCleared([this] { switchToCurrentKey(); });
}

// --- Files ---

std::string MacHistoryStore::keyOfAccount() const {
  const std::string user = defaults_.text("mac.userId").value_or("");
  return user.empty() ? "device-" + account_.deviceId() : "user-" + user;
}

FilePath MacHistoryStore::fileOf(std::string_view key) const {
  return directory_ / ("history-" + safeKey(key) + ".json");
}

void MacHistoryStore::takeOverSingleUserFile() {
  const FilePath older = directory_ / "history.json";
  if (!files_.exists(older)) return;
  const FilePath target = fileOf("device-" + account_.deviceId());
  // What fails here is tried again at the next start.
  if (files_.exists(target)) {
    files_.remove(older);
  } else {
    files_.move(older, target);
  }
}

HistoryEntries MacHistoryStore::load(std::string_view key) const {
  const auto bytes = files_.read(fileOf(key));
  if (!bytes) return {};
  return decodeHistory(*bytes).value_or(HistoryEntries());
}

void MacHistoryStore::switchToCurrentKey() {
  std::string key = keyOfAccount();
  if (currentKey_ == key) return;
  currentKey_ = std::move(key);
  entries = load(*currentKey_);
  purgeExpired();
}

void MacHistoryStore::save(const std::string& key) {
  queue_->post([&files = files_, file = fileOf(key), snapshot = entries.get()] {
    files.writeAtomically(file, encodeHistory(snapshot));
  });
}

// --- Entries ---

void MacHistoryStore::record(std::string rawTranscript, std::string finalText,
                             std::string inputLanguage, std::string outputLanguage,
                             std::optional<std::string> targetAppName) {
  if (isBlank(finalText)) return;
  switchToCurrentKey();  // the user may have changed since the last one

  HistoryEntries kept = entries;
  if (const auto cutoff = retentionCutoff())
    kept = remaining([&](const MacHistoryEntry& entry) { return entry.date < *cutoff; });
  kept.insert(kept.begin(), std::make_shared<const MacHistoryEntry>(MacHistoryEntry{
                                .id = random_.newUuid(),
                                .date = clock_.now(),
                                .rawTranscript = std::move(rawTranscript),
                                .finalText = std::move(finalText),
                                .inputLanguage = std::move(inputLanguage),
                                .outputLanguage = std::move(outputLanguage),
                                .targetAppName = std::move(targetAppName),
                            }));
  if (kept.size() > maxEntries) kept.resize(maxEntries);
  entries = std::move(kept);
  save(*currentKey_);
}

std::optional<Date> MacHistoryStore::retentionCutoff() const {
  const std::int64_t days = settings_.historyRetentionDays;
  if (days < 1) return std::nullopt;
  return clock_.daysBefore(clock_.now(), std::min(days, longestRetentionDays));
}

std::int64_t MacHistoryStore::purge(Date olderThan) {
  if (!currentKey_) return 0;
  HistoryEntries kept =
      remaining([&](const MacHistoryEntry& entry) { return entry.date < olderThan; });
  const auto removed = static_cast<std::int64_t>(entries->size() - kept.size());
  if (removed == 0) return 0;
  entries = std::move(kept);
  save(*currentKey_);
  return removed;
}

void MacHistoryStore::purgeExpired() {
  if (const auto cutoff = retentionCutoff()) purge(*cutoff);
}

void MacHistoryStore::removeEntries(const std::unordered_set<std::string>& ids) {
  if (!currentKey_) return;
  entries = remaining([&](const MacHistoryEntry& entry) { return ids.contains(entry.id); });
  save(*currentKey_);
}

void MacHistoryStore::removeEntry(std::string_view id) {
  removeEntries({std::string(id)});
}

void MacHistoryStore::removeAll() {
  if (!currentKey_) return;
  entries = HistoryEntries();
  save(*currentKey_);
}

HistoryEntries MacHistoryStore::remaining(const IsRemoved& isRemoved) const {
  HistoryEntries kept;
  std::ranges::copy_if(entries.get(), std::back_inserter(kept),
                       [&](const auto& entry) { return !isRemoved(*entry); });
  return kept;
}

}  // namespace quillo
