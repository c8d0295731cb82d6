#include "hosts/linux/session/autostart_login_item.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <utility>

#include "hosts/linux/posix/file_replacement.h"
#include "hosts/linux/posix/posix_file_manager.h"

namespace quillo::linux_host {
namespace {

// Lines by which a desktop switches an entry off without removing it.
constexpr auto switchedOff =
    std::to_array<std::string_view>({"Hidden=true", "X-GNOME-Autostart-enabled=false"});

// Quoting of the Exec key, and then that of a text value (freedesktop.org, Desktop Entry): in
// quotes a backslash goes before `"`, "`", "$" and "\", and a value doubles each backslash. "%" is
// doubled.
std::string quoted(const std::string& path) {
  std::string text = "\"";
  for (const char c : path) {
    if (c == '%')
      text += "%%";
    else if (c == '\\')
      text += R"(\\\\)";
    else if (c == '"' || c == '`' || c == '$')
      (text += R"(\\)") += c;
    else
      text += c;
  }
  return text + "\"";
}

std::string entryText(const FilePath& executable) {
  return "[Desktop Entry]\nType=Application\nName=Quillo\nComment=Dictation\nExec=" +
         quoted(executable.string()) + "\nTerminal=false\n";
}

}  // namespace

AutostartLoginItem::AutostartLoginItem(FilePath autostartDirectory, FilePath executable)
    : entry_(std::move(autostartDirectory) / "quillo.desktop"),
      executable_(std::move(executable)) {}

bool AutostartLoginItem::isEnabled() const {
  std::ifstream entry(entry_);
  if (!entry) return false;
  for (std::string line; std::getline(entry, line);)
    if (std::ranges::find(switchedOff, line) != switchedOff.end()) return false;
  return true;
}

Result<void, Problem> AutostartLoginItem::registerItem() {
  if (makePrivateDirectory(entry_.parent_path()) &&
      replaceFile(entry_, entryText(executable_), Durability::powerCut))
    return {};
  return Problem{std::strerror(errno)};
}

Result<void, Problem> AutostartLoginItem::unregisterItem() {
  std::error_code error;
  std::filesystem::remove(entry_, error);
  if (error) return Problem{error.message()};
  return {};
}

}  // namespace quillo::linux_host
