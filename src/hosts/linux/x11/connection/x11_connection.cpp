#include "hosts/linux/x11/connection/x11_connection.h"

#include <cstring>
#include <limits>
#include <utility>

namespace quillo::linux_host {

std::vector<std::uint32_t> X11Property::words() const {
  if (format != 32) return {};
  std::vector<std::uint32_t> result(bytes.size() / sizeof(std::uint32_t));
  if (!result.empty()) {
    std::memcpy(result.data(), bytes.data(), result.size() * sizeof(std::uint32_t));
  }
  return result;
}

std::unique_ptr<X11Connection> X11Connection::open() {
  int screenNumber = 0;
  xcb_connection_t* connection = xcb_connect(nullptr, &screenNumber);
  if (xcb_connection_has_error(connection) != 0) {
    xcb_disconnect(connection);
    return nullptr;
  }
  xcb_screen_iterator_t screen = xcb_setup_roots_iterator(xcb_get_setup(connection));
  for (; screenNumber > 0 && screen.rem > 1; --screenNumber) xcb_screen_next(&screen);
  return std::unique_ptr<X11Connection>(new X11Connection(connection, screen.data));
}

X11Connection::X11Connection(xcb_connection_t* connection, xcb_screen_t* screen)
    : connection_(connection), screen_(screen) {}

X11Connection::~X11Connection() {
  xcb_disconnect(connection_);
}

void X11Connection::waitForServer() {
  // Any question will do.
  owned(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

const xcb_query_extension_reply_t* X11Connection::extension(xcb_extension_t* extension) const {
  const xcb_query_extension_reply_t* reply = xcb_get_extension_data(connection_, extension);
  return reply != nullptr && reply->present != 0 ? reply : nullptr;
}

void X11Connection::rememberAtom(xcb_atom_t atom, std::string name) {
  nameOfAtom_.emplace(atom, name);
  atomOfName_.emplace(std::move(name), atom);
}

xcb_atom_t X11Connection::atom(std::string_view name) {
  return atoms({std::string(name)}).front();
}

std::vector<xcb_atom_t> X11Connection::atoms(const std::vector<std::string>& names) {
  // All questions first, then all answers: one round trip.
  std::vector<std::pair<std::string, xcb_intern_atom_cookie_t>> asked;
  for (const std::string& name : names) {
    if (atomOfName_.contains(name)) continue;
    asked.emplace_back(name, xcb_intern_atom(connection_, 0,
                                             static_cast<std::uint16_t>(name.size()), name.data()));
  }
  for (auto& [name, cookie] : asked) {
    if (const auto reply = owned(xcb_intern_atom_reply(connection_, cookie, nullptr))) {
      rememberAtom(reply->atom, std::move(name));
    }
  }
  std::vector<xcb_atom_t> result;
  for (const std::string& name : names) {
    const auto found = atomOfName_.find(name);
    result.push_back(found == atomOfName_.end() ? XCB_ATOM_NONE : found->second);
  }
  return result;
}

std::string X11Connection::atomName(xcb_atom_t atom) {
  return atomNames({atom}).front();
}

std::vector<std::string> X11Connection::atomNames(const std::vector<xcb_atom_t>& atoms) {
  std::vector<std::pair<xcb_atom_t, xcb_get_atom_name_cookie_t>> asked;
  for (const xcb_atom_t atom : atoms) {
    if (!nameOfAtom_.contains(atom)) {
      asked.emplace_back(atom, xcb_get_atom_name(connection_, atom));
    }
  }
  for (const auto& [atom, cookie] : asked) {
    if (const auto reply = owned(xcb_get_atom_name_reply(connection_, cookie, nullptr))) {
      const auto length = static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get()));
      rememberAtom(atom, std::string(xcb_get_atom_name_name(reply.get()), length));
    }
  }
  std::vector<std::string> result;
  for (const xcb_atom_t atom : atoms) {
    const auto found = nameOfAtom_.find(atom);
    result.push_back(found == nameOfAtom_.end() ? std::string() : found->second);
  }
  return result;
}

std::optional<X11Property> X11Connection::property(xcb_window_t window, xcb_atom_t name,
                                                   AfterReading after) {
  constexpr std::uint32_t everything = std::numeric_limits<std::uint32_t>::max() / 4;
  const auto reply = owned(
      xcb_get_property_reply(connection_,
                             xcb_get_property(connection_, after == AfterReading::remove, window,
                                              name, XCB_GET_PROPERTY_TYPE_ANY, 0, everything),
                             nullptr));
  if (!reply || reply->type == XCB_ATOM_NONE) return std::nullopt;
  const auto length = static_cast<std::size_t>(xcb_get_property_value_length(reply.get()));
  return X11Property{reply->type, reply->format,
                     Bytes(static_cast<const char*>(xcb_get_property_value(reply.get())), length)};
}

std::optional<std::uint32_t> X11Connection::word(xcb_window_t window, std::string_view name) {
  const auto value = property(window, atom(name));
  if (!value) return std::nullopt;
  const std::vector<std::uint32_t> words = value->words();
  if (words.empty()) return std::nullopt;
  return words.front();
}

std::optional<std::string> X11Connection::text(xcb_window_t window, std::string_view name) {
  auto value = property(window, atom(name));
  if (!value || value->format != 8) return std::nullopt;
  return std::move(value->bytes);
}

xcb_window_t X11Connection::createHiddenWindow(std::uint32_t eventMask) {
  const xcb_window_t window = xcb_generate_id(connection_);
  const std::uint32_t values[] = {1, eventMask};
  xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, root(), -10, -10, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
                    XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
  return window;
}

bool X11Connection::succeeded(xcb_void_cookie_t cookie, std::uint8_t* error) {
  const auto failure = owned(xcb_request_check(connection_, cookie));
  if (error != nullptr) *error = failure ? failure->error_code : 0;
  return !failure && !isBroken();
}

}  // namespace quillo::linux_host
