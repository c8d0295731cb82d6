#include "state/device_identity.h"

#include <algorithm>
#include <limits>
#include <string_view>

#include "base/text.h"

namespace quillo {
namespace {

constexpr const char* deviceIdKey = "mac.deviceId";
constexpr std::string_view prefix = "qd_";
constexpr std::string_view olderPrefix = "qm_";
constexpr std::size_t timeDigits = 8;
constexpr std::size_t randomCharacters = 11;

std::string base36(std::uint64_t number) {
  std::string digits;
  do {
    digits.push_back("0123456789abcdefghijklmnopqrstuvwxyz"[number % 36]);
    number /= 36;
  } while (number > 0);
  std::ranges::reverse(digits);
  return digits;
}

// Uniform: the incomplete last run of 36 values is drawn again.
char randomCharacter(Random& random) {
  constexpr std::string_view alphabet = "abcdefghijklmnopqrstuvwxyz0123456789";
  constexpr std::uint64_t all = std::numeric_limits<std::uint64_t>::max();
  constexpr std::uint64_t limit = all - all % alphabet.size();
  std::uint64_t drawn = random.next();
  while (drawn >= limit) drawn = random.next();
  return alphabet[drawn % alphabet.size()];
}

std::string newIdentity(const Clock& clock, Random& random) {
  const auto seconds = static_cast<std::uint64_t>(secondsSince1970(clock.now()));
  std::string identity(prefix);
  identity += suffixCharacters(base36(seconds), timeDigits);
  identity += '_';
  for (std::size_t i = 0; i < randomCharacters; ++i) identity += randomCharacter(random);
  return identity;
}

}  // namespace

std::string deviceIdentity(UserDefaults& defaults, const Clock& clock, Random& random) {
  const std::string stored = defaults.text(deviceIdKey).value_or("");
  const bool isOlder = textHasPrefix(stored, olderPrefix);
  if (!stored.empty() && !isOlder) return stored;

  std::string identity = isOlder
                             ? std::string(prefix) + dropFirstCharacters(stored, olderPrefix.size())
                             : newIdentity(clock, random);
  defaults.setText(deviceIdKey, identity);
  return identity;
}

}  // namespace quillo
