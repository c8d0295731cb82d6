#include "simulation/world/hosted_service.h"

#include "simulation/world/form_parts.h"

namespace quillo::sim {

using simulated::Answer;
using simulated::Reply;

namespace {

const Json usage = {{"userId", "ada"},
                    {"plan", "free"},
                    {"dailyMinutes", 1.0},
                    {"monthlyChars", 10},
                    {"limits", {{"dailyMinutes", 10}, {"monthlyChars", 1000}}},
                    {"remainingMinutes", 9.0},
                    {"remainingChars", 990},
                    {"isGuest", false},
                    {"updatedAt", "2026-03-04T09:00:00Z"}};
const Json config = {{"plans", Json::array()}};

Reply json(const Json& body) {
  return {.body = encodeJson(body)};
}

}  // namespace

std::string_view pathOf(Endpoint endpoint) {
  switch (endpoint) {
    case Endpoint::transcribe:
      return "/transcribe";
    case Endpoint::transform:
      return "/transform";
    case Endpoint::usage:
      return "/get-usage";
    case Endpoint::session:
      return "/auth/v1/token";
    case Endpoint::profile:
      return "/auth/v1/user";
    case Endpoint::config:
      return "/get-config";
    case Endpoint::signUp:
      return "/auth/v1/signup";
    case Endpoint::verify:
      return "/auth/v1/verify";
    case Endpoint::resend:
      return "/auth/v1/resend";
    case Endpoint::recover:
      return "/auth/v1/recover";
    case Endpoint::deleteUser:
      return "/functions/v1/delete-user";
  }
}

HostedService::HostedService(simulated::ScriptedNetwork& network, const SpokenWords& words)
    : words_(words) {
  for (const auto& [name, endpoint] : endpointNames) {
    network.handle(std::string(pathOf(endpoint)), [this, asked = endpoint](const Request& request) {
      return answer(asked, request);
    });
  }
}

void HostedService::script(Endpoint endpoint, MakeAnswer answer, int times) {
  auto& scripts = scripts_[static_cast<std::size_t>(endpoint)];
  for (int i = 0; i < times; ++i) scripts.push_back(answer);
}

Answer HostedService::answer(Endpoint endpoint, const Request& request) {
  auto& scripts = scripts_[static_cast<std::size_t>(endpoint)];
  if (!scripts.empty()) {
    const MakeAnswer make = std::move(scripts.front());
    scripts.pop_front();
    return make(request);
  }
  if (whim_) {
    if (auto odd = whim_(endpoint, request)) return std::move(*odd);
  }
  Reply reply = usualAnswer(endpoint, request);
  reply.delay = delay_;
  return reply;
}

Reply HostedService::usualAnswer(Endpoint endpoint, const Request& request) {
  switch (endpoint) {
    case Endpoint::transcribe:
      return transcription(heardIn(request));
    case Endpoint::transform:
      return transformation(textOf(request));
    case Endpoint::usage:
      return json(usage);
    case Endpoint::session:
    case Endpoint::verify:
      return newSession();
    case Endpoint::profile:
      return profile(request);
    case Endpoint::config:
      return json(config);
    case Endpoint::signUp:
      return json({{"id", "ada"}, {"email", "ada@example.org"}});
    case Endpoint::resend:
    case Endpoint::recover:
    case Endpoint::deleteUser:
      return json(Json::object());
  }
}

std::string HostedService::heardIn(const Request& request) const {
  const Json parts = formParts(request.header("Content-Type").value_or(""), request.body);
  return words_.heardIn(lenientText(parts, "file").value_or(""));
}

std::string HostedService::textOf(const Request& request) {
  return JsonReader::parseObject(request.body).text("text");
}

Reply HostedService::transcription(const std::string& text) {
  return json({{"text", text}, {"duration", 1.0}});
}

Reply HostedService::transformation(const std::string& text) {
  return json({{"text", text}, {"charactersUsed", 1}});
}

Reply HostedService::profile(const Request& request) {
  const Json body = parseJson(request.body).value_or(Json::object());
  if (body.contains("data")) fullName_ = body.at("data").at("full_name").get<std::string>();
  Json profile = {{"email", "ada@example.org"}};
  if (fullName_) profile["user_metadata"] = {{"full_name", *fullName_}};
  return json(profile);
}

Reply HostedService::newSession() {
  const std::string number = std::to_string(++sessions_ + 1);
  return json({{"access_token", "secret-access-" + number},
               {"refresh_token", "secret-refresh-" + number},
               {"expires_in", 3600},
               {"user", {{"id", "ada"}, {"email", "ada@example.org"}}}});
}

}  // namespace quillo::sim
