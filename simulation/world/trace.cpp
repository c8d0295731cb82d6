#include "simulation/world/trace.h"

#include <ostream>

namespace quillo::sim {

std::string Event::line() const {
  Json line = {{"t", toSeconds(time.sinceStart)}, {"what", what}};
  line.update(fields);
  return encodeJson(line);
}

void Trace::tell(std::string_view what, Json fields) {
  const Event event{now_(), what, std::move(fields)};
  const std::string line = event.line();
  for (const char character : line)
    digest_ = (digest_ ^ static_cast<unsigned char>(character)) * 0x100000001b3;
  ++count_;
  if (stream_) *stream_ << line << '\n';
  for (const Watcher& watcher : watchers_) watcher(event);
}

}  // namespace quillo::sim
