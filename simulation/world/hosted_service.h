// The hosted service as the simulated network shows it: it hears what was said, gives texts back as
// they came, and keeps sessions alive, unless a scripted answer stands before that.
#pragma once

#include <array>
#include <deque>
#include <functional>
#include <optional>
#include <string>

#include "base/json.h"
#include "hosts/simulated/network/scripted_network.h"
#include "simulation/world/spoken_words.h"

namespace quillo::sim {

enum class Endpoint {
  transcribe,
  transform,
  usage,
  session,
  profile,
  config,
  signUp,
  verify,
  resend,
  recover,
  deleteUser
};

inline constexpr std::pair<std::string_view, Endpoint> endpointNames[] = {
    {"transcribe", Endpoint::transcribe}, {"transform", Endpoint::transform},
    {"usage", Endpoint::usage},           {"session", Endpoint::session},
    {"profile", Endpoint::profile},       {"config", Endpoint::config},
    {"signUp", Endpoint::signUp},         {"verify", Endpoint::verify},
    {"resend", Endpoint::resend},         {"recover", Endpoint::recover},
    {"deleteUser", Endpoint::deleteUser},
};
// As it ends the request's address.
std::string_view pathOf(Endpoint endpoint);

class HostedService {
 public:
  using Request = simulated::RecordedRequest;
  using MakeAnswer = std::function<simulated::Answer(const Request&)>;

  HostedService(simulated::ScriptedNetwork& network, const SpokenWords& words);
  HostedService(const HostedService&) = delete;
  HostedService& operator=(const HostedService&) = delete;

  // The next `times` requests that no earlier script answers.
  void script(Endpoint endpoint, MakeAnswer answer, int times = 1);
  // Asked before the default answer; nothing lets that stand.
  using Whim = std::function<std::optional<simulated::Answer>(Endpoint, const Request&)>;
  void setWhim(Whim whim) { whim_ = std::move(whim); }
  // Requests that no script is left for take this long.
  void setDelay(Duration delay) { delay_ = delay; }

  // What the service does by itself.
  simulated::Reply usualAnswer(Endpoint endpoint, const Request& request);
  // What was said in the file of a transcription request.
  std::string heardIn(const Request& request) const;
  // The text of a transform request.
  static std::string textOf(const Request& request);

  static simulated::Reply transcription(const std::string& text);
  static simulated::Reply transformation(const std::string& text);

 private:
  simulated::Answer answer(Endpoint endpoint, const Request& request);
  simulated::Reply newSession();
  // A request that changes the profile has a body.
  simulated::Reply profile(const Request& request);

  const SpokenWords& words_;
  std::array<std::deque<MakeAnswer>, std::size(endpointNames)> scripts_;
  Whim whim_;
  Duration delay_ = std::chrono::milliseconds(150);
  int sessions_ = 0;
  std::optional<std::string> fullName_;
};

}  // namespace quillo::sim
