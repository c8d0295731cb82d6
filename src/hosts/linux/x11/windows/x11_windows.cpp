#include "hosts/linux/x11/windows/x11_windows.h"

#include <xcb/res.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <utility>
#include <vector>

namespace quillo::linux_host {
namespace {

// Where a message to the window manager comes from: a pager acts for the user.
constexpr std::uint32_t sourcePager = 2;

std::string executableName(std::int32_t processIdentifier) {
  std::error_code error;
  const auto path =
      std::filesystem::read_symlink("/proc/" + std::to_string(processIdentifier) + "/exe", error);
  return error ? std::string() : path.filename().string();
}

}  // namespace

X11Windows::X11Windows(X11Connection& connection, DesktopEntries& entries)
    : connection_(connection),
      entries_(entries),
      canAskForProcesses_(connection.extension(&xcb_res_id) != nullptr) {
  if (canAskForProcesses_) {
    const auto version = owned(xcb_res_query_version_reply(
        connection.get(), xcb_res_query_version(connection.get(), 1, 2), nullptr));
    canAskForProcesses_ = version && (version->server_major > 1 || version->server_minor >= 2);
  }
}

std::optional<xcb_window_t> X11Windows::active() {
  if (!windowManager()) return focused();
  const auto window = connection_.word(connection_.root(), "_NET_ACTIVE_WINDOW");
  if (!window || *window == XCB_WINDOW_NONE) return std::nullopt;
  return *window;
}

std::optional<xcb_window_t> X11Windows::windowManager() {
  // The window that vouches for the window manager outlives it on the root, but not itself.
  const auto vouches = [this](xcb_window_t window) {
    return connection_.word(window, "_NET_SUPPORTING_WM_CHECK") == window;
  };
  if (voucher_ != XCB_WINDOW_NONE && vouches(voucher_)) return voucher_;
  const auto check = connection_.word(connection_.root(), "_NET_SUPPORTING_WM_CHECK");
  voucher_ = check && vouches(*check) ? *check : XCB_WINDOW_NONE;
  return voucher_ == XCB_WINDOW_NONE ? std::nullopt : std::optional(voucher_);
}

std::optional<xcb_window_t> X11Windows::focused() {
  const auto focus = owned(xcb_get_input_focus_reply(
      connection_.get(), xcb_get_input_focus(connection_.get()), nullptr));
  if (!focus) return std::nullopt;
  // The focus may lie on a part of the application's window.
  for (xcb_window_t window = focus->focus;
       window > XCB_INPUT_FOCUS_POINTER_ROOT && window != connection_.root();) {
    if (windowClass(window)) return window;
    const auto tree = owned(xcb_query_tree_reply(
        connection_.get(), xcb_query_tree(connection_.get(), window), nullptr));
    if (!tree) return std::nullopt;
    window = tree->parent;
  }
  return std::nullopt;
}

std::optional<WindowApplication> X11Windows::application(xcb_window_t window) {
  const auto windowClassName = windowClass(window);
  WindowApplication result;
  result.window = window;
  result.processIdentifier = processOf(window);
  // The server knows a process for the number of a window that has gone, too, and it may be that of
  // another program by now.
  if (!windowClassName && !exists(window)) return std::nullopt;
  const std::string className = windowClassName.value_or("");

  const auto toolkitIdentifier = connection_.text(window, "_GTK_APPLICATION_ID");
  const DesktopEntry* entry =
      toolkitIdentifier ? entries_.withIdentifier(*toolkitIdentifier) : nullptr;
  if (entry == nullptr && !className.empty()) entry = entries_.withWindowClass(className);
  if (entry == nullptr && !className.empty()) entry = entries_.withIdentifier(className);

  const std::string executable =
      entry == nullptr ? executableName(result.processIdentifier) : std::string();
  std::string identifier;
  if (entry != nullptr) {
    identifier = entry->identifier;
  } else if (toolkitIdentifier) {
    identifier = *toolkitIdentifier;
  } else {
    identifier = executable.empty() ? className : executable;
  }
  if (entry != nullptr && !entry->name.empty()) {
    result.name = entry->name;
  } else {
    result.name = className.empty() ? executable : className;
  }

  const KnownApplication* known = knownApplication(identifier);
  if (known == nullptr) known = knownApplication(className);
  result.bundleIdentifier = known == nullptr ? identifier : std::string(known->bundleIdentifier);
  if (known != nullptr) {
    result.pasteShortcut = known->pasteShortcut;
  } else if (entry != nullptr && entry->isTerminal) {
    result.pasteShortcut = PasteShortcut::controlShift;
  }
  return result;
}

std::int32_t X11Windows::processOf(xcb_window_t window) {
  // The server knows the process of a local connection; the property is the program's own word,
  // which inside a container is a number of another world.
  if (canAskForProcesses_) {
    const xcb_res_client_id_spec_t question = {window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const auto reply = owned(xcb_res_query_client_ids_reply(
        connection_.get(), xcb_res_query_client_ids(connection_.get(), 1, &question), nullptr));
    if (reply) {
      for (auto id = xcb_res_query_client_ids_ids_iterator(reply.get()); id.rem > 0;
           xcb_res_client_id_value_next(&id)) {
        if (id.data->spec.mask != XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) continue;
        if (xcb_res_client_id_value_value_length(id.data) > 0) {
          return static_cast<std::int32_t>(*xcb_res_client_id_value_value(id.data));
        }
      }
    }
  }
  return static_cast<std::int32_t>(connection_.word(window, "_NET_WM_PID").value_or(0));
}

std::optional<std::string> X11Windows::windowClass(xcb_window_t window) {
  // Instance and class, each with a final zero.
  const auto value = connection_.property(window, XCB_ATOM_WM_CLASS);
  if (!value) return std::nullopt;
  const std::size_t end = value->bytes.find('\0');
  if (end == std::string::npos) return std::nullopt;
  return std::string(value->bytes.c_str() + end + 1);
}

bool X11Windows::exists(xcb_window_t window) {
  return owned(xcb_get_window_attributes_reply(
             connection_.get(), xcb_get_window_attributes(connection_.get(), window), nullptr)) !=
         nullptr;
}

std::optional<xcb_window_t> X11Windows::windowOf(std::int32_t processIdentifier) {
  auto windows =
      connection_.property(connection_.root(), connection_.atom("_NET_CLIENT_LIST_STACKING"));
  std::vector<std::uint32_t> candidates = windows ? windows->words() : std::vector<std::uint32_t>();
  if (!windowManager()) {
    const auto tree = owned(xcb_query_tree_reply(
        connection_.get(), xcb_query_tree(connection_.get(), connection_.root()), nullptr));
    if (tree) {
      const xcb_window_t* children = xcb_query_tree_children(tree.get());
      candidates.assign(children, children + xcb_query_tree_children_length(tree.get()));
      std::erase_if(candidates, [this](xcb_window_t window) { return !windowClass(window); });
    }
  }
  const auto found = std::find_if(candidates.rbegin(), candidates.rend(), [&](xcb_window_t window) {
    return processOf(window) == processIdentifier;
  });
  if (found == candidates.rend()) return std::nullopt;
  return *found;
}

void X11Windows::activate(xcb_window_t window) {
  if (windowManager()) {
    sendToRoot(window, connection_.atom("_NET_ACTIVE_WINDOW"),
               {sourcePager, XCB_CURRENT_TIME, active().value_or(XCB_WINDOW_NONE), 0, 0});
  } else {
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(connection_.get(), window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    xcb_set_input_focus(connection_.get(), XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
  }
  connection_.flush();
}

void X11Windows::sendToRoot(xcb_window_t window, xcb_atom_t message,
                            const std::uint32_t (&data)[5]) {
  xcb_client_message_event_t event{};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = window;
  event.type = message;
  std::copy(std::begin(data), std::end(data), std::begin(event.data.data32));
  xcb_send_event(connection_.get(), 0, connection_.root(),
                 XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&event));
}

}  // namespace quillo::linux_host
