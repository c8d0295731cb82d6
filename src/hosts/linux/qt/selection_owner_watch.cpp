#include "hosts/linux/qt/selection_owner_watch.h"

#include <xcb/xcb.h>
#include <xcb/xfixes.h>

#include <QGuiApplication>

#include "hosts/linux/x11/connection/x11_connection.h"

namespace quillo::linux_host {
namespace {

constexpr std::uint8_t eventTypeMask = 0x7f;  // without the mark of a sent event

}  // namespace

SelectionOwnerWatch::SelectionOwnerWatch(std::string_view selectionName) {
  const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  if (!x11) return;
  connection_ = x11->connection();
  const auto atom = owned(xcb_intern_atom_reply(
      connection_,
      xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(selectionName.size()),
                      selectionName.data()),
      nullptr));
  const xcb_query_extension_reply_t* const fixes =
      xcb_get_extension_data(connection_, &xcb_xfixes_id);
  if (!atom || !fixes || !fixes->present) return;
  selection_ = atom->atom;
  selectionEvent_ = fixes->first_event + XCB_XFIXES_SELECTION_NOTIFY;
  xcb_xfixes_select_selection_input(
      connection_, xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root, selection_,
      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
  // Asked after the events were, so that no owner comes in between unseen.
  hasOwner_ = isThereAnOwner();
  qGuiApp->installNativeEventFilter(this);
}

SelectionOwnerWatch::~SelectionOwnerWatch() {
  if (connection_ && qGuiApp) qGuiApp->removeNativeEventFilter(this);
}

bool SelectionOwnerWatch::isThereAnOwner() const {
  const auto owner = owned(xcb_get_selection_owner_reply(
      connection_, xcb_get_selection_owner(connection_, selection_), nullptr));
  return owner && owner->owner != XCB_WINDOW_NONE;
}

bool SelectionOwnerWatch::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
  const auto* const event = static_cast<const xcb_generic_event_t*>(message);
  if ((event->response_type & eventTypeMask) != selectionEvent_) return false;
  const auto* const change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t*>(event);
  if (change->selection != selection_) return false;
  hasOwner_ = change->owner != XCB_WINDOW_NONE;
  observers_.notify();
  return false;
}

}  // namespace quillo::linux_host
