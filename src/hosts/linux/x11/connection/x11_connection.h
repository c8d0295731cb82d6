// A connection to the X server.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/bytes.h"

namespace quillo::linux_host {

struct FreeReply {
  void operator()(void* reply) const { std::free(reply); }
};
// Replies, events and errors come from malloc.
template <class T>
using X11Reply = std::unique_ptr<T, FreeReply>;
template <class T>
X11Reply<T> owned(T* reply) {
  return X11Reply<T>(reply);
}

// A window's property with its whole value.
struct X11Property {
  xcb_atom_t type = XCB_ATOM_NONE;
  int format = 8;  // bits of a unit
  Bytes bytes;

  // The units of a property of format 32; none for another format.
  std::vector<std::uint32_t> words() const;
};

// Used by one thread. Requests that fail give nothing; once the server has gone, all of them do.
class X11Connection {
 public:
  // To the display that DISPLAY names; null when there is none.
  static std::unique_ptr<X11Connection> open();
  X11Connection(const X11Connection&) = delete;
  X11Connection& operator=(const X11Connection&) = delete;
  ~X11Connection();

  xcb_connection_t* get() const { return connection_; }
  xcb_window_t root() const { return screen_->root; }
  bool isBroken() const { return xcb_connection_has_error(connection_) != 0; }
  void flush() const { xcb_flush(connection_); }
  // Returns when the server has done everything that was asked of it so far.
  void waitForServer();

  // The extension's first event and major opcode; null when the server does not have it.
  const xcb_query_extension_reply_t* extension(xcb_extension_t* extension) const;

  xcb_atom_t atom(std::string_view name);
  std::vector<xcb_atom_t> atoms(const std::vector<std::string>& names);
  // Empty for an atom that the server does not know.
  std::string atomName(xcb_atom_t atom);
  std::vector<std::string> atomNames(const std::vector<xcb_atom_t>& atoms);

  enum class AfterReading { keep, remove };
  std::optional<X11Property> property(xcb_window_t window, xcb_atom_t name,
                                      AfterReading after = AfterReading::keep);
  // The first unit of a property of format 32.
  std::optional<std::uint32_t> word(xcb_window_t window, std::string_view name);
  std::optional<std::string> text(xcb_window_t window, std::string_view name);

  // A window that nobody sees, for properties, selections and messages.
  xcb_window_t createHiddenWindow(std::uint32_t eventMask);
  // True when the request was done; `error` receives the error's code otherwise.
  bool succeeded(xcb_void_cookie_t cookie, std::uint8_t* error = nullptr);

 private:
  X11Connection(xcb_connection_t* connection, xcb_screen_t* screen);
  void rememberAtom(xcb_atom_t atom, std::string name);

  xcb_connection_t* connection_;
  xcb_screen_t* screen_;
  std::unordered_map<std::string, xcb_atom_t> atomOfName_;
  std::unordered_map<xcb_atom_t, std::string> nameOfAtom_;
};

}  // namespace quillo::linux_host
