#include "hosts/linux/curl/default_route.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace quillo::linux_host {
namespace {

std::vector<std::string> words(const std::string& line) {
  std::istringstream stream(line);
  std::vector<std::string> found;
  for (std::string word; stream >> word;) found.push_back(std::move(word));
  return found;
}

// Columns: interface, destination, gateway, flags, use, references, metric, mask...
bool isDefaultRouteV4(const std::vector<std::string>& route) {
  return route.size() > 7 && route[0] != "lo" && route[1] == "00000000" && route[7] == "00000000";
}

// Columns: destination, prefix length, ..., flags, interface. Unreachable routes are on "lo".
bool isDefaultRouteV6(const std::vector<std::string>& route) {
  return route.size() > 9 && route[9] != "lo" && route[1] == "00" &&
         route[0].find_first_not_of('0') == std::string::npos;
}

bool anyRoute(const char* table, bool (*isWanted)(const std::vector<std::string>&)) {
  std::ifstream routes(table);
  for (std::string line; std::getline(routes, line);)
    if (isWanted(words(line))) return true;
  return false;
}

}  // namespace

bool hasDefaultRoute() {
  return anyRoute("/proc/net/route", isDefaultRouteV4) ||
         anyRoute("/proc/net/ipv6_route", isDefaultRouteV6);
}

}  // namespace quillo::linux_host
