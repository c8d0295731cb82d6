#include "hosts/linux/session/linux_machine.h"

#include <QCryptographicHash>
#include <QMessageAuthenticationCode>
#include <QString>
#include <QSysInfo>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>

#include "base/identifiers.h"
#include "base/text.h"

namespace quillo::linux_host {
namespace {

// This program's own key for hashing machine ids; it never changes.
constexpr auto applicationId =
    std::to_array<unsigned char>({0x5a, 0x1e, 0x93, 0xc4, 0x0b, 0x7d, 0x4f, 0x28, 0xa6, 0x31, 0xd8,
                                  0x6e, 0x92, 0x0c, 0xb5, 0x47});

struct ScriptOfModifier {
  std::string_view modifier;
  std::string_view script;
};
constexpr auto scripts = std::to_array<ScriptOfModifier>(
    {{"latin", "Latn"}, {"cyrillic", "Cyrl"}, {"devanagari", "Deva"}});

std::string variable(const char* name) {
  const char* const value = std::getenv(name);
  return value ? value : "";
}

std::uint64_t bigEndian(QByteArrayView bytes) {
  std::uint64_t value = 0;
  for (const char byte : bytes) value = value << 8 | static_cast<unsigned char>(byte);
  return value;
}

}  // namespace

std::optional<std::string> platformUUIDOf(std::string_view machineId) {
  const bool isId = machineId.size() == 32 &&
                    machineId.find_first_not_of("0123456789abcdef") == std::string_view::npos;
  if (!isId) return std::nullopt;
  const auto key =
      QByteArray::fromHex(QByteArray(machineId.data(), static_cast<qsizetype>(machineId.size())));
  const QByteArray message(reinterpret_cast<const char*>(applicationId.data()),
                           static_cast<qsizetype>(applicationId.size()));
  const QByteArray hash =
      QMessageAuthenticationCode::hash(message, key, QCryptographicHash::Sha256);
  return uuidText(bigEndian(QByteArrayView(hash).first(8)),
                  bigEndian(QByteArrayView(hash).sliced(8, 8)));
}

std::optional<std::string> LinuxMachine::platformUUID() const {
  std::ifstream file("/etc/machine-id");
  std::string id;
  std::getline(file, id);
  return platformUUIDOf(id);
}

std::optional<std::string> languageTag(std::string_view locale) {
  const auto end = std::min(locale.find('.'), locale.find('@'));
  const std::vector<std::string> parts = split(locale.substr(0, end), '_');
  if (parts.front().empty() || parts.front() == "C" || parts.front() == "POSIX")
    return std::nullopt;
  const auto at = locale.find('@');
  const std::string_view modifier = at == std::string_view::npos ? "" : locale.substr(at + 1);
  const auto* const script = std::ranges::find(scripts, modifier, &ScriptOfModifier::modifier);
  std::string tag = parts.front();
  if (script != scripts.end()) tag += "-" + std::string(script->script);
  if (parts.size() > 1) tag += "-" + parts[1];
  return tag;
}

std::vector<std::string> LinuxMachine::preferredLanguages() const {
  std::string locale = variable("LC_ALL");
  if (locale.empty()) locale = variable("LC_MESSAGES");
  if (locale.empty()) locale = variable("LANG");
  const auto ofLocale = languageTag(locale);
  if (!ofLocale) return {};  // without a locale, LANGUAGE does not count
  std::vector<std::string> tags;
  for (const std::string& preferred : split(variable("LANGUAGE"), ':'))
    if (const auto tag = languageTag(preferred)) tags.push_back(*tag);
  if (std::ranges::find(tags, *ofLocale) == tags.end()) tags.push_back(*ofLocale);
  return tags;
}

std::string LinuxMachine::operatingSystemVersion() const {
  return QSysInfo::prettyProductName().toStdString();
}

}  // namespace quillo::linux_host
