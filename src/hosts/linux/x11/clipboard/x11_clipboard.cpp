#include "hosts/linux/x11/clipboard/x11_clipboard.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <xcb/xfixes.h>

#include <algorithm>
#include <chrono>
#include <utility>

#include "hosts/linux/posix/monotonic_clock.h"

namespace quillo::linux_host {
namespace {

using namespace std::chrono_literals;

// How long the caller waits for the thread when the X server does not answer.
constexpr Duration serverPatience = 1s;
// How long the end of the program waits for a clipboard manager.
constexpr Duration handOverLimit = 500ms;

constexpr std::uint32_t everyOwnerChange =
    XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
    XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
    XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE;

constexpr const char* timeProperty = "QUILLO_TIME";

xcb_window_t ownerOf(X11Connection& connection, xcb_atom_t selection) {
  const auto reply = owned(xcb_get_selection_owner_reply(
      connection.get(), xcb_get_selection_owner(connection.get(), selection), nullptr));
  return reply ? reply->owner : XCB_WINDOW_NONE;
}

}  // namespace

std::unique_ptr<X11Clipboard> X11Clipboard::open() {
  auto connection = X11Connection::open();
  if (!connection || connection->extension(&xcb_xfixes_id) == nullptr) return nullptr;
  FileDescriptor wake(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
  if (!wake) return nullptr;
  return std::unique_ptr<X11Clipboard>(new X11Clipboard(std::move(connection), std::move(wake)));
}

X11Clipboard::X11Clipboard(std::unique_ptr<X11Connection> connection, FileDescriptor wake)
    : connection_(std::move(connection)),
      wake_(std::move(wake)),
      window_(connection_->createHiddenWindow(XCB_EVENT_MASK_PROPERTY_CHANGE)),
      clipboard_(connection_->atom("CLIPBOARD")),
      primary_(XCB_ATOM_PRIMARY),
      fixesFirstEvent_(connection_->extension(&xcb_xfixes_id)->first_event),
      server_(*connection_, window_) {
  // The extension answers nobody who has not asked for its version.
  owned(xcb_xfixes_query_version_reply(
      connection_->get(),
      xcb_xfixes_query_version(connection_->get(), XCB_XFIXES_MAJOR_VERSION,
                               XCB_XFIXES_MINOR_VERSION),
      nullptr));
  xcb_xfixes_select_selection_input(connection_->get(), window_, clipboard_, everyOwnerChange);
  connection_->flush();
  thread_ = std::thread([this] { run(); });
}

X11Clipboard::~X11Clipboard() {
  {
    const std::lock_guard lock(mutex_);
    isStopping_ = true;
  }
  eventfd_write(wake_.get(), 1);
  thread_.join();
}

// --- The caller's side ---

void X11Clipboard::submit(std::function<void()> command) {
  {
    const std::lock_guard lock(mutex_);
    commands_.push_back(std::move(command));
  }
  eventfd_write(wake_.get(), 1);
}

template <class Answer>
Answer X11Clipboard::ask(std::function<Answer()> work, Answer otherwise) {
  const auto promise = std::make_shared<std::promise<Answer>>();
  std::future<Answer> result = promise->get_future();
  submit([promise, work = std::move(work)] { promise->set_value(work()); });
  return result.wait_for(serverPatience) == std::future_status::ready ? result.get() : otherwise;
}

void X11Clipboard::takeOwnership() {
  ask<bool>(
      [this] {
        const xcb_timestamp_t time = serverTime();
        server_.disown(primary_, time);
        const bool isOwned = server_.own(clipboard_, time);
        handleEvents();  // the change of ownership counts before the caller goes on
        return isOwned;
      },
      false);
}

bool X11Clipboard::setContent(SelectionContent content) {
  const auto shared = std::make_shared<const SelectionContent>(std::move(content));
  return ask<bool>([this, shared] { return ownsClipboard() && announce(shared); }, false);
}

// Programs ask for the types as soon as the owner changes, and some remember them: whoever asked
// between the clearing and the writing would know of no text. So the owner changes once more, with
// the time of the first change: a program that took the clipboard since then keeps it.
bool X11Clipboard::announce(std::shared_ptr<const SelectionContent> content) {
  if (!server_.ownAgain(clipboard_, std::move(content))) return false;
  isAnnouncing_ = true;
  handleEvents();
  isAnnouncing_ = false;
  return true;
}

void X11Clipboard::lendAsPrimary() {
  ask<bool>(
      [this] {
        if (!ownsClipboard() || !server_.own(primary_, serverTime())) return false;
        const auto content = server_.content(clipboard_);
        if (content) server_.setContent(primary_, content);
        return content != nullptr;
      },
      false);
}

ClipboardReading X11Clipboard::read(SelectionReader::Wanted wanted, ReadingLimits limits,
                                    Selection selection) {
  const auto promise = std::make_shared<std::promise<ClipboardReading>>();
  std::future<ClipboardReading> result = promise->get_future();
  const xcb_atom_t atom = selection == Selection::primary ? primary_ : clipboard_;
  submit([this, wanted, limits, atom, begun = monotonicNow(), promise] {
    startReading({wanted, limits, atom, begun, promise});
  });
  if (result.wait_for(limits.someForms + serverPatience) != std::future_status::ready) {
    return {ClipboardReading::Outcome::timedOut};
  }
  return result.get();
}

// --- The thread's side ---

void X11Clipboard::run() {
  for (;;) {
    // Whoever waits for a reply reads events as well, so both are tried until neither has any.
    for (bool isBusy = true; isBusy && !connection_->isBroken();) {
      isBusy = runCommands();
      isBusy = handleEvents() || isBusy;
    }
    if (reading_) lookAtReading();
    {
      const std::lock_guard lock(mutex_);
      if (isStopping_) break;
    }
    if (connection_->isBroken()) runCommands();  // they fail, but they come back
    waitForWork(nextDeadline());
  }
  if (reading_) finishReading(ClipboardReading::Outcome::timedOut);
  handOver();
}

bool X11Clipboard::runCommands() {
  std::vector<std::function<void()>> commands;
  {
    const std::lock_guard lock(mutex_);
    commands.swap(commands_);
  }
  for (const auto& command : commands) command();
  return !commands.empty();
}

bool X11Clipboard::handleEvents() {
  bool isBusy = false;
  while (const auto event = owned(xcb_poll_for_event(connection_->get()))) {
    handle(*event);
    isBusy = true;
  }
  connection_->flush();
  return isBusy;
}

void X11Clipboard::handle(const xcb_generic_event_t& event) {
  const std::uint8_t type = event.response_type & 0x7f;
  if (type == fixesFirstEvent_ + XCB_XFIXES_SELECTION_NOTIFY) {
    const auto& change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
    if (change.selection == clipboard_) clipboardOwnerChanged(change.owner);
    return;
  }
  if (type == XCB_PROPERTY_NOTIFY) {
    const auto& notify = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    if (notify.window == window_) arrivedTime_ = notify.time;
    if (abandonedWindows_.contains(notify.window) && notify.state == XCB_PROPERTY_NEW_VALUE) {
      xcb_delete_property(connection_->get(), notify.window, notify.atom);
    }
  }
  if (type == XCB_SELECTION_NOTIFY) {
    const auto& notify = reinterpret_cast<const xcb_selection_notify_event_t&>(event);
    if (notify.requestor == window_) isHandedOver_ = true;
  }
  server_.handle(event, monotonicNow());
  if (reading_ && reading_->reader) reading_->reader->handle(event);
}

void X11Clipboard::waitForWork(std::optional<MonotonicTime> until) {
  int timeout = -1;
  if (until) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*until - monotonicNow());
    timeout = static_cast<int>(std::max<std::int64_t>(0, left.count()));
  }
  // A connection that broke is always readable.
  const nfds_t count = connection_->isBroken() ? 1 : 2;
  pollfd descriptors[] = {{wake_.get(), POLLIN, 0},
                          {xcb_get_file_descriptor(connection_->get()), POLLIN, 0}};
  poll(descriptors, count, timeout);
  eventfd_t value = 0;
  eventfd_read(wake_.get(), &value);
}

std::optional<MonotonicTime> X11Clipboard::nextDeadline() {
  std::optional<MonotonicTime> deadline = server_.dropStalled(monotonicNow());
  if (!reading_) return deadline;
  const MonotonicTime look = nextLookAtReading();
  return deadline ? std::min(*deadline, look) : look;
}

xcb_timestamp_t X11Clipboard::serverTime() {
  // Nothing added to a property of one's own: the server tells of the change with its time.
  arrivedTime_.reset();
  xcb_change_property(connection_->get(), XCB_PROP_MODE_APPEND, window_,
                      connection_->atom(timeProperty), XCB_ATOM_STRING, 8, 0, nullptr);
  connection_->flush();
  while (!arrivedTime_) {
    const auto event = owned(xcb_wait_for_event(connection_->get()));
    if (!event) return XCB_CURRENT_TIME;  // the server has gone
    handle(*event);
  }
  return *arrivedTime_;
}

bool X11Clipboard::ownsClipboard() {
  const bool isOwner = ownerOf(*connection_, clipboard_) == window_;
  handleEvents();
  return isOwner && server_.isOwned(clipboard_);
}

void X11Clipboard::startReading(ReadJob job) {
  if (reading_) finishReading(ClipboardReading::Outcome::timedOut);  // nobody waits for it any more
  const auto own = connection_->isBroken() ? nullptr : server_.content(job.selection);
  if (own) {
    job.promise->set_value({ClipboardReading::Outcome::complete, *own});
    return;
  }
  reading_ = std::move(job);
  if (ownerOf(*connection_, reading_->selection) == XCB_WINDOW_NONE) {
    finishReading(ClipboardReading::Outcome::complete);
  } else {
    restartReading();
  }
}

void X11Clipboard::restartReading() {
  if (reading_->window != XCB_WINDOW_NONE) abandonedWindows_.insert(reading_->window);
  reading_->window = connection_->createHiddenWindow(XCB_EVENT_MASK_PROPERTY_CHANGE);
  reading_->reader = std::make_unique<SelectionReader>(*connection_, reading_->selection,
                                                       reading_->window, reading_->wanted);
  connection_->flush();
}

// Ends the reading when it is done or its time is over.
void X11Clipboard::lookAtReading() {
  if (reading_->reader && reading_->reader->isDone()) {
    return finishReading(ClipboardReading::Outcome::complete);
  }
  const Duration elapsed = monotonicNow() - reading_->begun;
  const Duration end = reading_->lastForm ? reading_->limits.lastForm : reading_->limits.someForms;
  if (elapsed >= end || connection_->isBroken()) {
    finishReading(ClipboardReading::Outcome::timedOut);
  } else if (!reading_->lastForm && elapsed >= reading_->limits.allForms) {
    if (reading_->reader->missingTargets().size() == 1) giveAllButOne();
  }
}

MonotonicTime X11Clipboard::nextLookAtReading() const {
  const auto& [allForms, someForms, lastForm] = reading_->limits;
  if (reading_->lastForm) return reading_->begun + lastForm;
  const bool isOneEnough = monotonicNow() - reading_->begun >= allForms;
  return reading_->begun + (isOneEnough ? someForms : allForms);
}

void X11Clipboard::giveAllButOne() {
  SelectionReader& reader = *reading_->reader;
  ClipboardReading reading{ClipboardReading::Outcome::allButOne, reader.takeContent(),
                           reader.missingTargets()};
  reading.lastForm = reading_->lastForm.emplace().get_future();
  reading_->promise->set_value(std::move(reading));
}

void X11Clipboard::finishReading(ClipboardReading::Outcome outcome) {
  ReadJob job = std::move(*reading_);
  reading_.reset();
  ClipboardReading reading{outcome};
  if (job.reader) {
    reading.content = job.reader->takeContent();
    if (outcome == ClipboardReading::Outcome::timedOut) {
      reading.missingTargets = job.reader->missingTargets();
    }
    // Destroying a window to which the owner may still write would be an error of the owner's.
    if (job.reader->isAnswered()) {
      xcb_destroy_window(connection_->get(), job.window);
    } else {
      abandonedWindows_.insert(job.window);
    }
    connection_->flush();
  }
  if (!job.lastForm) return job.promise->set_value(std::move(reading));
  std::optional<SelectionRepresentation> last;
  if (!reading.content.empty()) last = std::move(reading.content.front());
  job.lastForm->set_value(std::move(last));
}

void X11Clipboard::clipboardOwnerChanged(xcb_window_t owner) {
  if (isAnnouncing_ && owner == window_) return;
  ++changeCount_;
  if (!reading_ || reading_->selection != clipboard_) return;
  // What came so far is not on the clipboard any more.
  if (owner == XCB_WINDOW_NONE || reading_->lastForm) {
    if (reading_->window != XCB_WINDOW_NONE) abandonedWindows_.insert(reading_->window);
    reading_->reader.reset();
    finishReading(ClipboardReading::Outcome::complete);
  } else {
    restartReading();
  }
}

void X11Clipboard::handOver() {
  const xcb_atom_t manager = connection_->atom("CLIPBOARD_MANAGER");
  const auto content = server_.content(clipboard_);
  if (!content || content->empty() || ownerOf(*connection_, manager) == XCB_WINDOW_NONE) return;
  std::vector<std::string> names;
  for (const SelectionRepresentation& form : *content) names.push_back(form.target);
  const std::vector<xcb_atom_t> targets = connection_->atoms(names);
  const xcb_atom_t property = connection_->atom("QUILLO_SAVED_TARGETS");
  xcb_change_property(connection_->get(), XCB_PROP_MODE_REPLACE, window_, property, XCB_ATOM_ATOM,
                      32, static_cast<std::uint32_t>(targets.size()), targets.data());
  xcb_convert_selection(connection_->get(), window_, manager, connection_->atom("SAVE_TARGETS"),
                        property, serverTime());
  const MonotonicTime deadline = monotonicNow() + handOverLimit;
  while (!isHandedOver_ && monotonicNow() < deadline && !connection_->isBroken()) {
    if (!handleEvents()) waitForWork(deadline);
  }
}

}  // namespace quillo::linux_host
