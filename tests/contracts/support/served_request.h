// What the server of a contract host is told to do, and what it saw.
#pragma once

#include <string>
#include <variant>

#include "platform/url_session.h"

namespace quillo::contracts {

// What the server of a host does with a request.
struct ServedReply {
  int status = 200;
  HeaderFields headers{};
  Bytes body{};
  Duration delay{};     // before the first byte
  Duration transfer{};  // the body trickles in evenly over it
};
enum class Misbehaviour {
  stall,     // never a byte
  drop,      // the connection ends without a reply
  truncate,  // the connection ends amid the body
  gibberish  // something that is not HTTP
};
using Served = std::variant<ServedReply, Misbehaviour>;

struct SeenRequest {
  std::string method;
  std::string path;
  HeaderFields headers;
  Bytes body;
};

}  // namespace quillo::contracts
