#include "account/auth_records.h"

namespace quillo {
namespace {

template <class Record>
std::optional<Record> decodeIfPresent(const std::optional<JsonReader>& json) {
  if (!json) return std::nullopt;
  return Record::decode(*json);
}

}  // namespace

SupabaseUser SupabaseUser::decode(const JsonReader& json) {
  return {
      .id = json.text("id"),
      .email = json.optionalText("email"),
      .emailConfirmedAt = json.optionalText("email_confirmed_at"),
      .createdAt = json.optionalText("created_at"),
  };
}

SupabaseAuthResponse SupabaseAuthResponse::decode(const JsonReader& json) {
  return {
      .accessToken = json.optionalText("access_token"),
      .refreshToken = json.optionalText("refresh_token"),
      .expiresIn = json.optionalInteger("expires_in"),
      .tokenType = json.optionalText("token_type"),
      .user = decodeIfPresent<SupabaseUser>(json.optionalObject("user")),
  };
}

SupabaseError SupabaseError::decode(const JsonReader& json) {
  return {
      .error = json.optionalText("error"),
      .errorDescription = json.optionalText("error_description"),
      .msg = json.optionalText("msg"),
      .message = json.optionalText("message"),
  };
}

SupabaseUserProfile SupabaseUserProfile::decode(const JsonReader& json) {
  SupabaseUserProfile profile{.email = json.optionalText("email")};
  if (const auto metadata = json.optionalObject("user_metadata")) {
    profile.userMetadata = Metadata{.fullName = metadata->optionalText("full_name"),
                                    .avatarUrl = metadata->optionalText("avatar_url")};
  }
  return profile;
}

}  // namespace quillo
