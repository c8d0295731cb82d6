#include "service/account_routes.h"

#include "base/iso8601.h"
#include "service/service_error.h"

namespace quillo::service {
namespace {

Json userJson(const Account& account) {
  Json user{{"id", account.id}, {"email", account.email}};
  if (account.confirmedAt) user["email_confirmed_at"] = iso8601(*account.confirmedAt);
  user["created_at"] = iso8601(account.createdAt);
  user["user_metadata"] = Json::object();
  if (account.fullName) user["user_metadata"]["full_name"] = *account.fullName;
  return user;
}

HttpReply sessionReply(const Account& account, const Tokens& tokens) {
  return {200, Json{{"access_token", tokens.access},
                    {"refresh_token", tokens.refresh},
                    {"expires_in", tokens.lifetime.count()},
                    {"token_type", "bearer"},
                    {"user", userJson(account)}}};
}

HttpReply sessionReply(const Session& session) {
  return sessionReply(session.account, session.tokens);
}

std::optional<std::string> fullNameOf(const JsonReader& body) {
  const auto data = body.optionalObject("data");
  return data ? data->optionalText("full_name") : std::nullopt;
}

Accounts::Authenticated demandSignIn(const HttpRequest& request, Accounts& accounts) {
  const auto token = request.bearerToken();
  auto who = token ? accounts.authenticate(*token) : std::nullopt;
  if (!who) throw ServiceError(401, "bad_jwt", "The access token is missing, unknown or expired.");
  return *std::move(who);
}

HttpReply token(const HttpRequest& request, Accounts& accounts) {
  const auto grant = request.query.find("grant_type");
  const std::string type = grant == request.query.end() ? "" : grant->second;
  const auto body = JsonReader::parseObject(request.body);
  if (type == "password")
    return sessionReply(accounts.signIn(body.text("email"), body.text("password")));
  if (type == "refresh_token") return sessionReply(accounts.refresh(body.text("refresh_token")));
  throw ServiceError(400, "unsupported_grant_type",
                     "The development service knows the grants password and refresh_token.");
}

HttpReply signUp(const HttpRequest& request, Accounts& accounts) {
  const auto body = JsonReader::parseObject(request.body);
  const auto signUp = accounts.signUp(body.text("email"), body.text("password"), fullNameOf(body));
  if (signUp.tokens) return sessionReply(signUp.account, *signUp.tokens);
  return {200, Json{{"user", userJson(signUp.account)}}};
}

HttpReply verify(const HttpRequest& request, Accounts& accounts) {
  const auto body = JsonReader::parseObject(request.body);
  const std::string type = body.text("type");
  if (type != "signup" && type != "recovery")
    throw badRequest("The verification type is neither signup nor recovery.");
  const CodePurpose purpose = type == "signup" ? CodePurpose::signup : CodePurpose::recovery;
  return sessionReply(accounts.verify(body.text("email"), purpose, body.text("token")));
}

HttpReply recover(const HttpRequest& request, Accounts& accounts) {
  accounts.sendRecovery(JsonReader::parseObject(request.body).text("email"));
  return {};
}

HttpReply resend(const HttpRequest& request, Accounts& accounts) {
  const auto body = JsonReader::parseObject(request.body);
  if (body.text("type") != "signup") throw badRequest("Only the type signup is sent again.");
  accounts.resendConfirmation(body.text("email"));
  return {};
}

HttpReply profile(const HttpRequest& request, Accounts& accounts) {
  return {200, userJson(demandSignIn(request, accounts).account)};
}

HttpReply updateUser(const HttpRequest& request, Accounts& accounts) {
  const auto who = demandSignIn(request, accounts);
  const auto body = JsonReader::parseObject(request.body);
  return {200, userJson(accounts.update(who, body.optionalText("password"), fullNameOf(body)))};
}

HttpReply deleteUser(const HttpRequest& request, Accounts& accounts) {
  accounts.remove(demandSignIn(request, accounts));
  return {};
}

}  // namespace

void addAccountRoutes(HttpServer& server, Accounts& accounts) {
  using Route = HttpReply (*)(const HttpRequest&, Accounts&);
  const auto add = [&](const char* method, const char* path, Route route) {
    server.route(method, path, [&accounts, route](const HttpRequest& request) {
      return route(request, accounts);
    });
  };
  add("POST", "/auth/v1/token", token);
  add("POST", "/auth/v1/signup", signUp);
  add("POST", "/auth/v1/verify", verify);
  add("POST", "/auth/v1/recover", recover);
  add("POST", "/auth/v1/resend", resend);
  add("GET", "/auth/v1/user", profile);
  add("PUT", "/auth/v1/user", updateUser);
  add("POST", "/functions/v1/delete-user", deleteUser);
}

}  // namespace quillo::service
