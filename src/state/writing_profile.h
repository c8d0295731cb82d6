// A saved way of writing: two languages, a polish mode, a tone and a format under one name.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/words.h"
#include "platform/random.h"
#include "state/setting.h"

namespace quillo {

struct WritingProfile {
  std::string id;  // UUID in canonical upper-case form
  std::string name;
  std::string inputLanguage;
  std::string outputLanguage;
  std::string transformMode;
  std::string tone;
  std::string formatStyle;
};

// Id and name do not count, and modes compare normalised.
bool isSameSetting(const WritingProfile& a, const WritingProfile& b);
std::optional<std::size_t> indexOfSameSetting(const std::vector<WritingProfile>& profiles,
                                              const WritingProfile& wanted);

// The name, or the two languages when it is blank.
Words profileDisplayName(const WritingProfile& profile);
// "Improve · Friendly · Smart", with the languages in front when the profile has a name.
Words profileSummary(const WritingProfile& profile);

// A JSON array of objects.
Bytes encodeProfiles(const std::vector<WritingProfile>& profiles);
// Field by field: what is missing or mistyped gets its default, a missing identifier empty text.
// Nothing when this is no array of objects.
std::optional<std::vector<WritingProfile>> decodeProfiles(std::string_view json);

// The stored profiles. An installation from before profiles gets one for each of its saved
// language pairs, with mode, tone and format of `current`; that is not written back.
std::vector<WritingProfile> loadProfiles(const UserDefaults& defaults, const char* key,
                                         const std::vector<TextDictionary>& savedLanguagePairs,
                                         const WritingProfile& current, Random& random);

template <>
struct StoredForm<std::vector<WritingProfile>> {
  // Nothing also when one has no identifier.
  static std::optional<std::vector<WritingProfile>> read(const UserDefaults& defaults,
                                                         std::string_view key);
  static void write(UserDefaults& defaults, std::string_view key,
                    const std::vector<WritingProfile>& profiles) {
    defaults.setData(key, encodeProfiles(profiles));
  }
};

}  // namespace quillo
