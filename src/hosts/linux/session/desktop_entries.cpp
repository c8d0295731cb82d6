#include "hosts/linux/session/desktop_entries.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <utility>

#include "base/text.h"

namespace quillo::linux_host {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view suffix = ".desktop";

std::string environment(const char* name, const std::string& otherwise) {
  const char* value = std::getenv(name);
  return value != nullptr && *value != '\0' ? value : otherwise;
}

std::string lowered(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), [](unsigned char character) {
    return static_cast<char>(std::tolower(character));
  });
  return result;
}

// "de_AT.UTF-8@euro" asks for "de_AT@euro", "de_AT", "de@euro" and "de".
std::vector<std::string> localeKeys(const std::string& locale) {
  const std::size_t at = locale.find('@');
  const std::string modifier = at == std::string::npos ? "" : locale.substr(at);
  const std::string country = locale.substr(0, std::min(locale.find('.'), at));
  const std::string language = country.substr(0, country.find('_'));
  std::vector<std::string> keys;
  for (const std::string& key : {country + modifier, country, language + modifier, language}) {
    const bool isKnown = std::find(keys.begin(), keys.end(), key) != keys.end();
    if (!key.empty() && !isKnown) keys.push_back(key);
  }
  return keys;
}

std::int64_t changeTime(const std::string& folder) {
  std::error_code error;
  const auto time = fs::last_write_time(folder, error);
  return error ? 0 : time.time_since_epoch().count();
}

// The values of the group [Desktop Entry].
std::unordered_map<std::string, std::string> values(std::istream& file) {
  std::unordered_map<std::string, std::string> result;
  bool isInGroup = false;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with('[')) isInGroup = line == "[Desktop Entry]";
    const std::size_t equals = line.find('=');
    if (!isInGroup || line.starts_with('#') || equals == std::string::npos) continue;
    result.emplace(trimmed(line.substr(0, equals)), trimmed(line.substr(equals + 1)));
  }
  return result;
}

}  // namespace

std::vector<std::string> DesktopEntries::folders() {
  std::vector<std::string> result;
  const std::string home = environment("HOME", "");
  result.push_back(environment("XDG_DATA_HOME", home + "/.local/share") + "/applications");
  for (const std::string& directory :
       split(environment("XDG_DATA_DIRS", "/usr/local/share:/usr/share"), ':')) {
    if (!directory.empty()) result.push_back(directory + "/applications");
  }
  return result;
}

DesktopEntries::DesktopEntries(std::vector<std::string> folders, std::string locale)
    : folders_(std::move(folders)), languages_(localeKeys(locale)) {}

const DesktopEntry* DesktopEntries::withIdentifier(std::string_view identifier) {
  readIfChanged();
  const auto found = entries_.find(lowered(identifier));
  return found == entries_.end() ? nullptr : &found->second;
}

const DesktopEntry* DesktopEntries::withWindowClass(std::string_view windowClass) {
  readIfChanged();
  const auto found = identifierOfClass_.find(lowered(windowClass));
  return found == identifierOfClass_.end() ? nullptr : withIdentifier(found->second);
}

void DesktopEntries::readIfChanged() {
  std::vector<std::int64_t> times;
  for (const std::string& folder : folders_) times.push_back(changeTime(folder));
  if (times == readTimes_) return;
  readTimes_ = std::move(times);
  entries_.clear();
  identifierOfClass_.clear();
  for (const std::string& folder : folders_) {
    std::error_code error;
    for (fs::directory_iterator file(folder, error), end; !error && file != end;
         file.increment(error)) {
      std::string name = file->path().filename().string();
      if (!name.ends_with(suffix)) continue;
      name.resize(name.size() - suffix.size());
      readFile(file->path().string(), std::move(name));
    }
  }
}

void DesktopEntries::readFile(const std::string& path, std::string identifier) {
  std::ifstream file(path);
  const auto value = values(file);
  const auto valueOf = [&value](const std::string& key) {
    const auto found = value.find(key);
    return found == value.end() ? std::string() : found->second;
  };
  DesktopEntry entry;
  entry.name = valueOf("Name");
  for (const std::string& language : languages_) {
    const std::string localised = valueOf("Name[" + language + "]");
    if (localised.empty()) continue;
    entry.name = localised;
    break;
  }
  const auto categories = split(valueOf("Categories"), ';');
  entry.isTerminal =
      std::find(categories.begin(), categories.end(), "TerminalEmulator") != categories.end();

  // The first folder that has an entry decides it.
  const std::string key = lowered(identifier);
  const std::string windowClass = valueOf("StartupWMClass");
  if (!windowClass.empty()) identifierOfClass_.emplace(lowered(windowClass), key);
  entry.identifier = std::move(identifier);
  entries_.emplace(key, std::move(entry));
}

}  // namespace quillo::linux_host
