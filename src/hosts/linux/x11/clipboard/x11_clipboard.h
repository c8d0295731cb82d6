// The clipboard on a connection and a thread of its own, so that other programs are served while
// the main thread works, and the main thread waits for no hanging program.
#pragma once

#include <xcb/xcb.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <unordered_set>
#include <vector>

#include "base/time.h"
#include "hosts/linux/posix/file_descriptor.h"
#include "hosts/linux/x11/clipboard/selection_reader.h"
#include "hosts/linux/x11/clipboard/selection_representation.h"
#include "hosts/linux/x11/clipboard/selection_server.h"
#include "hosts/linux/x11/connection/x11_connection.h"

namespace quillo::linux_host {

// What a reading of the clipboard brought.
struct ClipboardReading {
  enum class Outcome {
    complete,   // everything that the owner has to give; nothing when there is no owner
    allButOne,  // the reading goes on for the missing one
    timedOut,   // what came within the limit
  };
  Outcome outcome = Outcome::complete;
  SelectionContent content{};
  std::vector<std::string> missingTargets{};  // announced, but not come in time
  // Of allButOne: the missing form, known within ReadingLimits::lastForm; else not valid.
  std::future<std::optional<SelectionRepresentation>> lastForm{};
};

// How long a reading goes on, from its beginning.
struct ReadingLimits {
  Duration allForms;   // for all of them; from here on all but one are enough
  Duration someForms;  // then it ends with what has come
  Duration lastForm;   // for the one form that was missing
};

// Used by one other thread, the caller. Every call comes back: readings after their limit, the
// others when the server does not answer for a second.
class X11Clipboard {
 public:
  // Null without a display or with one that does not tell of selections (XFixes).
  static std::unique_ptr<X11Clipboard> open();
  // Gives what it holds to the clipboard manager, if there is one.
  ~X11Clipboard();

  std::int64_t changeCount() const { return changeCount_.load(); }
  // Ends what a reading before it still waits for.
  enum class Selection { clipboard, primary };
  ClipboardReading read(SelectionReader::Wanted wanted, ReadingLimits limits,
                        Selection selection = Selection::clipboard);
  // Takes an empty clipboard, and lets the primary selection go.
  void takeOwnership();
  // False when this program does not own the clipboard any more.
  bool setContent(SelectionContent content);
  // Makes the clipboard's own content the primary selection as well.
  void lendAsPrimary();

 private:
  struct ReadJob {
    SelectionReader::Wanted wanted;
    ReadingLimits limits;
    xcb_atom_t selection;
    MonotonicTime begun;
    std::shared_ptr<std::promise<ClipboardReading>> promise;
    // Once all but one form were given to the caller.
    std::optional<std::promise<std::optional<SelectionRepresentation>>> lastForm{};
    xcb_window_t window = XCB_WINDOW_NONE;
    std::unique_ptr<SelectionReader> reader{};
  };

  X11Clipboard(std::unique_ptr<X11Connection> connection, FileDescriptor wake);

  // --- The caller's side ---
  template <class Answer>
  Answer ask(std::function<Answer()> work, Answer otherwise);
  void submit(std::function<void()> command);

  // --- The thread's side ---
  void run();
  bool runCommands();
  bool handleEvents();
  void handle(const xcb_generic_event_t& event);
  void waitForWork(std::optional<MonotonicTime> until);
  std::optional<MonotonicTime> nextDeadline();
  xcb_timestamp_t serverTime();
  bool ownsClipboard();
  bool announce(std::shared_ptr<const SelectionContent> content);
  void startReading(ReadJob job);
  void restartReading();
  void lookAtReading();
  MonotonicTime nextLookAtReading() const;
  void giveAllButOne();
  void finishReading(ClipboardReading::Outcome outcome);
  void clipboardOwnerChanged(xcb_window_t owner);
  void handOver();

  std::unique_ptr<X11Connection> connection_;
  FileDescriptor wake_;
  xcb_window_t window_;
  xcb_atom_t clipboard_;
  xcb_atom_t primary_;
  std::uint8_t fixesFirstEvent_ = 0;
  SelectionServer server_;
  std::optional<ReadJob> reading_;
  // Windows of readings that were given up: a late owner may still write to them.
  std::unordered_set<xcb_window_t> abandonedWindows_;
  std::optional<xcb_timestamp_t> arrivedTime_;
  bool isHandedOver_ = false;
  bool isAnnouncing_ = false;  // the clipboard that is ours already: that is no change
  std::atomic<std::int64_t> changeCount_ = 0;

  std::mutex mutex_;
  std::vector<std::function<void()>> commands_;  // guarded by mutex_
  bool isStopping_ = false;                      // guarded by mutex_
  std::thread thread_;
};

}  // namespace quillo::linux_host
