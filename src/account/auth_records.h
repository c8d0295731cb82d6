// The JSON records of the account service. Read strictly; nearly every field may be missing.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/json.h"

namespace quillo {

struct SupabaseUser {
  std::string id;
  std::optional<std::string> email;
  std::optional<std::string> emailConfirmedAt;
  std::optional<std::string> createdAt;

  static SupabaseUser decode(const JsonReader& json);
};

// A session, or a user who has to confirm the address first.
struct SupabaseAuthResponse {
  std::optional<std::string> accessToken;
  std::optional<std::string> refreshToken;
  std::optional<std::int64_t> expiresIn;  // seconds
  std::optional<std::string> tokenType;
  std::optional<SupabaseUser> user;

  bool hasAccessToken() const { return accessToken && !accessToken->empty(); }
  bool hasTokens() const { return hasAccessToken() && refreshToken && !refreshToken->empty(); }

  static SupabaseAuthResponse decode(const JsonReader& json);
};

struct SupabaseError {
  std::optional<std::string> error;
  std::optional<std::string> errorDescription;
  std::optional<std::string> msg;
  std::optional<std::string> message;

  static SupabaseError decode(const JsonReader& json);
};

struct SupabaseUserProfile {
  struct Metadata {
    std::optional<std::string> fullName;
    std::optional<std::string> avatarUrl;
  };

  std::optional<std::string> email;
  std::optional<Metadata> userMetadata;

  static SupabaseUserProfile decode(const JsonReader& json);
};

}  // namespace quillo
