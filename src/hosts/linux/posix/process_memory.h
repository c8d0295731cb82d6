// What the memory of the whole process costs the desktop, and how it is given back.
#pragma once

namespace quillo::linux_host {

// To be called once, before the first thread is made. A recording is held in large blocks for a
// moment; each gets memory of its own that goes back with it, and threads share two heaps. As the C
// library comes, its limit for such blocks rises with the first one freed, so that they leave holes
// between the small ones: 11 MB after 25 dictations.
void boundHeap();

// Lets go of all code and constants that were read in so far; what is used again is read in again
// from the system's cache. To be called when a large piece of work that is not done again has
// ended, such as the launch: loading and linking a hundred libraries touches more of both than all
// that follows.
void releaseLoadedPages();

}  // namespace quillo::linux_host
