#include "state/writing_profile.h"

#include <algorithm>

#include "base/json.h"
#include "base/text.h"
#include "state/language_labels.h"
#include "state/lenient_records.h"
#include "state/list_setting.h"
#include "state/writing_material.h"

namespace quillo {
namespace {

WritingProfile decodeProfile(const Json& object) {
  return {
      .id = lenientId(object),
      .name = lenientText(object, "name").value_or(""),
      .inputLanguage = lenientText(object, "inputLanguage").value_or(defaultLanguage),
      .outputLanguage = lenientText(object, "outputLanguage").value_or(defaultLanguage),
      .transformMode = lenientText(object, "transformMode").value_or("auto"),
      .tone = lenientText(object, "tone").value_or("neutral"),
      .formatStyle = lenientText(object, "formatStyle").value_or("auto"),
  };
}

Json encodeProfile(const WritingProfile& profile) {
  return {
      {"id", profile.id},
      {"name", profile.name},
      {"inputLanguage", profile.inputLanguage},
      {"outputLanguage", profile.outputLanguage},
      {"transformMode", profile.transformMode},
      {"tone", profile.tone},
      {"formatStyle", profile.formatStyle},
  };
}

std::vector<WritingProfile> profilesFromPairs(const std::vector<TextDictionary>& pairs,
                                              const WritingProfile& current, Random& random) {
  std::vector<WritingProfile> profiles;
  for (const TextDictionary& pair : pairs) {
    const std::string_view input = textUnder(pair, "input");
    const std::string_view output = textUnder(pair, "output");
    if (input.empty() || output.empty()) continue;
    WritingProfile profile = current;
    profile.id = random.newUuid();
    profile.name.clear();
    profile.inputLanguage = input;
    profile.outputLanguage = output;
    profiles.push_back(std::move(profile));
  }
  return profiles;
}

}  // namespace

bool isSameSetting(const WritingProfile& a, const WritingProfile& b) {
  return textEquals(a.inputLanguage, b.inputLanguage) &&
         textEquals(a.outputLanguage, b.outputLanguage) &&
         normalizedMode(a.transformMode) == normalizedMode(b.transformMode) &&
         textEquals(a.tone, b.tone) && textEquals(a.formatStyle, b.formatStyle);
}

std::optional<std::size_t> indexOfSameSetting(const std::vector<WritingProfile>& profiles,
                                              const WritingProfile& wanted) {
  const auto found = std::ranges::find_if(
      profiles, [&](const WritingProfile& each) { return isSameSetting(each, wanted); });
  if (found == profiles.end()) return std::nullopt;
  return static_cast<std::size_t>(found - profiles.begin());
}

Words profileDisplayName(const WritingProfile& profile) {
  const std::string name = trimmed(profile.name);
  return name.empty() ? languagePairLabel(profile.inputLanguage, profile.outputLanguage)
                      : asItStands(name);
}

Words profileSummary(const WritingProfile& profile) {
  const Words style =
      words("{mode} · {tone} · {format}", {{"mode", modeLabel(profile.transformMode)},
                                           {"tone", toneLabel(profile.tone)},
                                           {"format", formatLabel(profile.formatStyle)}});
  if (isBlank(profile.name)) return style;
  return words("{languages} · {style}",
               {{"languages", languagePairLabel(profile.inputLanguage, profile.outputLanguage)},
                {"style", style}});
}

Bytes encodeProfiles(const std::vector<WritingProfile>& profiles) {
  return encodeRecords(profiles, encodeProfile);
}

std::optional<std::vector<WritingProfile>> decodeProfiles(std::string_view json) {
  return decodeRecords<WritingProfile>(json, decodeProfile);
}

std::optional<std::vector<WritingProfile>> StoredForm<std::vector<WritingProfile>>::read(
    const UserDefaults& defaults, std::string_view key) {
  return identified(decodeProfiles(defaults.data(key).value_or("")));
}

std::vector<WritingProfile> loadProfiles(const UserDefaults& defaults, const char* key,
                                         const std::vector<TextDictionary>& savedLanguagePairs,
                                         const WritingProfile& current, Random& random) {
  auto profiles = decodeProfiles(defaults.data(key).value_or(""));
  if (!profiles) return profilesFromPairs(savedLanguagePairs, current, random);
  identify(*profiles, random);
  for (WritingProfile& profile : *profiles)
    profile.transformMode = normalizedMode(profile.transformMode);
  return *std::move(profiles);
}

}  // namespace quillo
