// Whether this machine has a way to the Internet at all.
#pragma once

namespace quillo::linux_host {

// A default route, of either family, that does not end in the machine itself. Any thread; reads two
// files of the kernel.
bool hasDefaultRoute();

}  // namespace quillo::linux_host
