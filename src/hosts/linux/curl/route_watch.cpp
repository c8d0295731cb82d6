#include "hosts/linux/curl/route_watch.h"

#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>

namespace quillo::linux_host {
namespace {

constexpr unsigned watchedGroups =
    RTMGRP_LINK | RTMGRP_IPV4_IFADDR | RTMGRP_IPV4_ROUTE | RTMGRP_IPV6_IFADDR | RTMGRP_IPV6_ROUTE;

}  // namespace

RouteWatch::RouteWatch()
    : socket_(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_ROUTE)) {
  sockaddr_nl groups{};
  groups.nl_family = AF_NETLINK;
  groups.nl_groups = watchedGroups;
  if (socket_ &&
      ::bind(socket_.get(), reinterpret_cast<const sockaddr*>(&groups), sizeof groups) != 0)
    socket_ = FileDescriptor();
}

bool RouteWatch::takeNews() const {
  if (!socket_) return false;
  bool isAny = false;
  std::array<char, 8192> message;
  while (true) {
    const ssize_t size = ::recv(socket_.get(), message.data(), message.size(), 0);
    if (size > 0 || (size < 0 && errno == ENOBUFS)) {
      isAny = true;  // what was lost to a full buffer was news as well
    } else if (size == 0 || errno != EINTR) {
      return isAny;
    }
  }
}

}  // namespace quillo::linux_host
