#include "simulation/scenarios/memory.h"

namespace quillo::sim {

void Past::see(const Event& event) {
  const Json& fields = event.fields;
  if (event.what == "status") statuses.push_back({event.time, fields.at("text")});
  if (event.what == "request")
    (fields.at("method") == "OPTIONS" ? warmUps : requests).push_back({event.time, fields});
  if (event.what == "sound") sounds.push_back(fields.at("name"));
  if (event.what == "alert") alerts.push_back(fields);
  if (event.what == "account") accountResults.push_back(fields);
  if (event.what == "standardOutput") standardOutput.push_back(fields.at("line"));
  if (event.what == "systemLog") log.push_back(fields.at("line"));
  if (event.what == "log") {
    log.push_back("[" + fields.at("category").get<std::string>() + "] " +
                  fields.at("message").get<std::string>());
  }
}

}  // namespace quillo::sim
