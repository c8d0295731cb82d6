// Memory that holds code.
#pragma once

namespace quillo::linux_host {

// Lets go of all code that was read in so far; what runs on is read in again from the system's
// cache. To be called when a large piece of work that is not done again has ended, such as the
// launch: loading and linking a hundred libraries touches more code than all that follows.
void releaseCodePages();

}  // namespace quillo::linux_host
