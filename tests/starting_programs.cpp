// Part of the desktop's tests under the thread sanitizer alone. Its interceptor of clone() takes
// the child that borrows its parent's memory, which is how Qt starts programs, for a thread that it
// does not know, and ends the process. The C library's own function is called instead.
#include <dlfcn.h>

#include <cstdarg>

extern "C" int clone(int (*function)(void*), void* stack, int flags, void* argument, ...) {
  std::va_list rest;
  va_start(rest, argument);
  void* const parent = va_arg(rest, void*);
  void* const storage = va_arg(rest, void*);
  void* const child = va_arg(rest, void*);
  va_end(rest);
  using Clone = int (*)(int (*)(void*), void*, int, void*, ...);
  static const auto original = reinterpret_cast<Clone>(dlsym(RTLD_NEXT, "clone"));
  return original(function, stack, flags, argument, parent, storage, child);
}
