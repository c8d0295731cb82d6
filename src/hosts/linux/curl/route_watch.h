// News of the network from the kernel (rtnetlink(7)).
#pragma once

#include "hosts/linux/posix/file_descriptor.h"

namespace quillo::linux_host {

// One thread at a time.
class RouteWatch {
 public:
  // Where the kernel refuses, there is never any news.
  RouteWatch();

  bool isOpen() const { return static_cast<bool>(socket_); }
  // Readable when there is news; -1 when it is not open.
  int descriptor() const { return socket_.get(); }
  // Whether links, addresses or routes changed since the last call.
  bool takeNews() const;

 private:
  FileDescriptor socket_;
};

}  // namespace quillo::linux_host
