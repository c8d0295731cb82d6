// The applications that are installed (Desktop Entry Specification, freedesktop.org).
#pragma once

#include <ctime>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quillo::linux_host {

struct DesktopEntry {
  std::string identifier;  // the file's name without ".desktop"
  std::string name;        // in the user's language
  bool isTerminal = false;
};

// Main thread. Entries are read when they are first asked for, and again after a folder of
// entries has changed.
class DesktopEntries {
 public:
  // The folders of the XDG data directories, the user's own first.
  static std::vector<std::string> folders();
  // `locale` as in LC_MESSAGES, "de_AT.UTF-8".
  DesktopEntries(std::vector<std::string> folders, std::string locale);

  // Both ignore case.
  const DesktopEntry* withIdentifier(std::string_view identifier);
  const DesktopEntry* withWindowClass(std::string_view windowClass);

 private:
  void readIfChanged();
  void readFile(const std::string& path, std::string identifier);

  std::vector<std::string> folders_;
  std::vector<std::string> languages_;  // keys of a localised name, best first
  std::vector<std::int64_t> readTimes_;
  std::unordered_map<std::string, DesktopEntry> entries_;
  std::unordered_map<std::string, std::string> identifierOfClass_;
};

}  // namespace quillo::linux_host
