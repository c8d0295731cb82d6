#include "simulation/faults/service_faults.h"

namespace quillo::sim {

using namespace std::chrono_literals;
using simulated::Answer;
using simulated::Reply;

namespace {

Reply usual(FaultScene& scene, const AskedOfService& asked) {
  return scene.world.service().usualAnswer(asked.endpoint, asked.request);
}

Answer after(Duration delay, Reply reply) {
  reply.delay = delay;
  return reply;
}

}  // namespace

Answer stall(FaultScene&, const AskedOfService&) {
  return simulated::Stall{};
}

Answer truncate(FaultScene& scene, const AskedOfService& asked) {
  Reply reply = usual(scene, asked);
  reply.transfer = asked.soon;
  return simulated::Truncated{std::move(reply)};
}

Answer answerLate(FaultScene& scene, const AskedOfService& asked) {
  Reply reply = usual(scene, asked);
  return after(scene.random.between(10ms, 55s), std::move(reply));
}

Answer fail(FaultScene& scene, const AskedOfService& asked) {
  return after(asked.soon, {.status = 500 + static_cast<int>(scene.random.below(5)), .body = ""});
}

Answer refuseToken(FaultScene&, const AskedOfService& asked) {
  return after(asked.soon, {.status = 401, .body = R"({"error":"invalid token"})"});
}

Answer reachLimit(FaultScene&, const AskedOfService& asked) {
  return after(asked.soon, {.status = 402, .body = R"({"error":"limit","message":"Used up."})"});
}

Answer sendPage(FaultScene&, const AskedOfService& asked) {
  return after(asked.soon, {.body = "<html>Welcome to our hotel</html>"});
}

Answer hearNothing(FaultScene&, const AskedOfService& asked) {
  return after(asked.soon, HostedService::transcription(""));
}

Answer refuseText(FaultScene&, const AskedOfService& asked) {
  return after(asked.soon, HostedService::transformation("I can't help with that."));
}

}  // namespace quillo::sim
