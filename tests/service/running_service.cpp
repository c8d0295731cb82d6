#include "service/running_service.h"

#include <stdexcept>

namespace quillo::service {
namespace {

Answer answerOf(const httplib::Result& result) {
  if (!result) throw std::runtime_error("no reply: " + httplib::to_string(result.error()));
  return {result->status, result->body, parseJson(result->body).value_or(Json())};
}

}  // namespace

Identity guest(const std::string& deviceId, const std::string& hardwareId) {
  return {"mx_" + deviceId, deviceId, hardwareId};
}

ServiceOptions testOptions() {
  ServiceOptions options;
  options.port = 0;
  options.recognisers = 1;
  options.accounts.passwordCost = {.passes = 1, .memoryBytes = 8192};
  return options;
}

RunningService::RunningService(ServiceOptions options)
    : service_(std::make_unique<Service>(
          options, clock.clock(),
          [this](const Mail& mail) {
            const std::lock_guard lock(mailMutex_);
            mails_.push_back(mail);
          },
          nullptr)) {
  service_->start();
}

httplib::Client RunningService::client() const {
  httplib::Client client("127.0.0.1", port());
  client.set_read_timeout(60);
  return client;
}

httplib::Headers RunningService::key(httplib::Headers more) {
  more.emplace("apikey", Service::anonymousKey());
  return more;
}

httplib::Headers RunningService::bearer(const std::string& accessToken) {
  return {{"Authorization", "Bearer " + accessToken}};
}

httplib::Headers RunningService::headersOf(const Identity& who) {
  httplib::Headers headers{{"X-Quillo-API-Key", who.apiKey}, {"X-Quillo-Device-ID", who.deviceId}};
  if (!who.hardwareId.empty()) headers.emplace("X-Quillo-Hardware-ID", who.hardwareId);
  return headers;
}

Answer RunningService::get(const std::string& path, const httplib::Headers& headers) {
  return answerOf(client().Get(path, key(headers)));
}

Answer RunningService::post(const std::string& path, const Json& body,
                            const httplib::Headers& headers) {
  return postText(path, encodeJson(body), headers);
}

Answer RunningService::put(const std::string& path, const Json& body,
                           const httplib::Headers& headers) {
  return answerOf(client().Put(path, key(headers), encodeJson(body), "application/json"));
}

Answer RunningService::postText(const std::string& path, const std::string& body,
                                const httplib::Headers& headers) {
  return answerOf(client().Post(path, key(headers), body, "application/json"));
}

Answer RunningService::usage(const Identity& who) {
  return get("/functions/v1/get-usage", headersOf(who));
}

Answer RunningService::transform(const Identity& who, Json changes) {
  Json body{{"text", "hello"},           {"transformMode", "direct"},
            {"tone", "neutral"},         {"readingLevel", "standard"},
            {"targetLanguage", "en-US"}, {"inputLanguage", "auto"},
            {"accuracyMode", "balanced"}};
  for (const auto& [name, value] : changes.items()) {
    if (value.is_null()) {
      body.erase(name);
    } else {
      body[name] = value;
    }
  }
  return post("/functions/v1/transform", body, headersOf(who));
}

Answer RunningService::transcribe(const Identity& who, const std::string& file,
                                  const std::vector<FormField>& more) {
  httplib::MultipartFormDataItems items{{"file", file, "recording.m4a", "audio/mp4"},
                                        {"durationMinutes", "0.05", "", ""}};
  for (const FormField& field : more)
    items.push_back({field.name, field.content, field.filename, ""});
  return answerOf(client().Post("/functions/v1/transcribe", key(headersOf(who)), items));
}

Answer RunningService::signUp(const std::string& email, const std::string& password) {
  return post("/auth/v1/signup",
              {{"email", email}, {"password", password}, {"data", {{"full_name", "Ada Byron"}}}});
}

Answer RunningService::signIn(const std::string& email, const std::string& password) {
  return post("/auth/v1/token?grant_type=password", {{"email", email}, {"password", password}});
}

Answer RunningService::refresh(const std::string& refreshToken) {
  return post("/auth/v1/token?grant_type=refresh_token", {{"refresh_token", refreshToken}});
}

Identity RunningService::identity(const Answer& session, const std::string& deviceId,
                                  const std::string& hardwareId) {
  return {session.at("access_token"), deviceId, hardwareId};
}

std::vector<Mail> RunningService::mails() const {
  const std::lock_guard lock(mailMutex_);
  return mails_;
}

std::string RunningService::lastCode() const {
  return mails().back().code;
}

}  // namespace quillo::service
