#include "simulation/scenarios/memory.h"

namespace quillo::sim {

void Past::see(const Event& event) {
  if (const auto* status = event.as<events::Status>())
    statuses.push_back({event.time, status->text});
  if (const auto* request = event.as<events::Request>())
    (request->isWarmUp() ? warmUps : requests).push_back({event.time, event.fields()});
  if (const auto* sound = event.as<events::Sound>()) sounds.push_back(sound->name);
  if (event.as<events::Alert>()) alerts.push_back(event.fields());
  if (event.as<events::Account>()) accountResults.push_back(event.fields());
  if (const auto* output = event.as<events::StandardOutput>())
    standardOutput.push_back(output->line);
  if (const auto* written = event.as<events::SystemLog>()) log.push_back(written->line);
  if (const auto* written = event.as<events::Log>())
    log.push_back("[" + written->category + "] " + written->message);
}

}  // namespace quillo::sim
