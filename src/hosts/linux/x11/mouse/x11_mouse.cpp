#include "hosts/linux/x11/mouse/x11_mouse.h"

#include <xcb/xinput.h>

#include <algorithm>
#include <utility>

#include "platform/pointer.h"

namespace quillo::linux_host {
namespace {

// Buttons of the server, after the user's arrangement.
constexpr std::uint8_t leftButton = 1;
constexpr std::uint8_t rightButton = 3;
constexpr std::uint8_t firstWheelButton = 4;
constexpr std::uint8_t lastWheelButton = 7;

// Raw events are lost while any program holds a grab where XInput 2.0 is asked for.
constexpr std::uint16_t inputMajorVersion = 2;
constexpr std::uint16_t inputMinorVersion = 2;

enum class Movement { ignored, told };

bool isWheel(std::uint8_t button) {
  return button >= firstWheelButton && button <= lastWheelButton;
}

}  // namespace

class X11Mouse::RawEvents {
 public:
  // Null when the server cannot tell.
  static std::shared_ptr<RawEvents> open(MainThread& mainThread, IsOverOwnWindow isOverOwnWindow) {
    auto connection = X11Connection::open();
    if (!connection) return nullptr;
    const auto* extension = connection->extension(&xcb_input_id);
    const auto version = owned(xcb_input_xi_query_version_reply(
        connection->get(),
        xcb_input_xi_query_version(connection->get(), inputMajorVersion, inputMinorVersion),
        nullptr));
    if (extension == nullptr || !version) return nullptr;
    return std::make_shared<RawEvents>(mainThread, std::move(connection), extension->major_opcode,
                                       std::move(isOverOwnWindow));
  }

  RawEvents(MainThread& mainThread, std::unique_ptr<X11Connection> connection, std::uint8_t opcode,
            IsOverOwnWindow isOverOwnWindow)
      : mainThread_(mainThread),
        connection_(std::move(connection)),
        inputOpcode_(opcode),
        isOverOwnWindow_(std::move(isOverOwnWindow)),
        events_(*connection_, {}),
        subscription_(
            events_.observe([this](const xcb_generic_event_t& event) { handle(event); })) {
    select(Movement::ignored);
  }

  using Receiver = std::function<void(MouseEvent::Type)>;
  std::shared_ptr<void> add(Receiver receiver) { return receivers_.add(std::move(receiver)); }

 private:
  void select(Movement movement) {
    struct {
      xcb_input_event_mask_t header;
      std::uint32_t mask;
    } selected = {
        {XCB_INPUT_DEVICE_ALL_MASTER, 1},
        XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE};
    if (movement == Movement::told) selected.mask |= XCB_INPUT_XI_EVENT_MASK_RAW_MOTION;
    xcb_input_xi_select_events(connection_->get(), connection_->root(), 1, &selected.header);
    connection_->flush();
  }

  void handle(const xcb_generic_event_t& event) {
    if ((event.response_type & 0x7f) != XCB_GE_GENERIC) return;
    const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
    if (generic.extension != inputOpcode_) return;
    if (generic.event_type == XCB_INPUT_RAW_MOTION) return moved();
    const auto& raw = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event);
    const std::uint8_t button = arranged(static_cast<std::uint8_t>(raw.detail));
    if (generic.event_type == XCB_INPUT_RAW_BUTTON_PRESS) pressed(button);
    if (generic.event_type == XCB_INPUT_RAW_BUTTON_RELEASE) released(button);
  }

  // Raw events tell the button of the device.
  std::uint8_t arranged(std::uint8_t button) const {
    const auto mapping = owned(xcb_get_pointer_mapping_reply(
        connection_->get(), xcb_get_pointer_mapping(connection_->get()), nullptr));
    if (!mapping || button == 0 || button > xcb_get_pointer_mapping_map_length(mapping.get()))
      return button;
    return xcb_get_pointer_mapping_map(mapping.get())[button - 1];
  }

  void pressed(std::uint8_t button) {
    if (isWheel(button)) {
      if (!isOverOwnWindow_()) tellSoon(MouseEvent::Type::scrollWheel);
      return;
    }
    if (down_.empty()) beganOnOwnWindow_ = isOverOwnWindow_();
    down_.insert(button);
    if (beganOnOwnWindow_) return;
    if (button == rightButton) receivers_.notify(MouseEvent::Type::rightDown);
    if (button != leftButton) return;
    select(Movement::told);
    receivers_.notify(MouseEvent::Type::leftDown);
  }

  void released(std::uint8_t button) {
    down_.erase(button);
    if (button != leftButton || beganOnOwnWindow_) return;
    select(Movement::ignored);
    receivers_.notify(MouseEvent::Type::leftUp);
  }

  void moved() {
    if (down_.contains(leftButton) && !beganOnOwnWindow_) tellSoon(MouseEvent::Type::leftDragged);
  }

  // A mouse may tell a thousand times a second that it moved: once a turn is enough.
  void tellSoon(MouseEvent::Type type) {
    bool& isPlanned = type == MouseEvent::Type::scrollWheel ? wheelPlanned_ : dragPlanned_;
    if (std::exchange(isPlanned, true)) return;
    mainThread_.post([this, type, alive = std::weak_ptr(alive_), &isPlanned] {
      if (alive.expired()) return;
      isPlanned = false;
      receivers_.notify(type);
    });
  }

  MainThread& mainThread_;
  std::unique_ptr<X11Connection> connection_;
  std::uint8_t inputOpcode_;
  IsOverOwnWindow isOverOwnWindow_;
  std::set<std::uint8_t> down_;
  bool beganOnOwnWindow_ = false;
  bool dragPlanned_ = false;
  bool wheelPlanned_ = false;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
  ObserverList<MouseEvent::Type> receivers_;
  X11EventSource events_;
  std::shared_ptr<void> subscription_;
};

std::shared_ptr<void> X11Mouse::addGlobalMonitor(std::vector<MouseEvent::Type> types,
                                                 std::function<void(const MouseEvent&)> seen) {
  using Seen = std::function<void(const MouseEvent&)>;
  struct Monitor {
    std::shared_ptr<RawEvents> raw;
    std::shared_ptr<Seen> seen;
    std::shared_ptr<void> subscription;
  };
  auto raw = raw_.lock();
  if (!raw) raw = RawEvents::open(mainThread_, isOverOwnWindow_);
  if (!raw) return nullptr;
  raw_ = raw;
  auto monitor = std::make_shared<Monitor>();
  monitor->raw = raw;
  monitor->seen = std::make_shared<Seen>(std::move(seen));
  monitor->subscription = raw->add(
      [this, types = std::move(types), weak = std::weak_ptr(monitor->seen)](MouseEvent::Type type) {
        if (std::ranges::find(types, type) == types.end()) return;
        mainThread_.post([weak, type] {
          if (const auto callback = weak.lock()) (*callback)({type});
        });
      });
  return monitor;
}

std::uint32_t X11Mouse::pressedButtons() const {
  const auto pointer = owned(xcb_query_pointer_reply(
      connection_.get(), xcb_query_pointer(connection_.get(), connection_.root()), nullptr));
  if (!pointer) return 0;
  return ((pointer->mask & XCB_BUTTON_MASK_1) != 0 ? mouse_buttons::left : 0) |
         ((pointer->mask & XCB_BUTTON_MASK_3) != 0 ? mouse_buttons::right : 0);
}

}  // namespace quillo::linux_host
