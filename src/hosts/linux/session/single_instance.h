// One program a session.
#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

#include "base/time.h"
#include "hosts/linux/posix/file_descriptor.h"
#include "platform/file_path.h"

namespace quillo::linux_host {

// A lock, which goes with its process however that ends, says who is the first; a socket beside it
// carries the second one's request. A socket left over by a dead program is replaced.
class SingleInstance {
 public:
  enum class Claim {
    first,             // this is the program
    runningElsewhere,  // another one runs, and was asked to come forward
    unresponsive,      // another one runs and does not answer
    impossible,        // the folder cannot be used: nothing is known, go on
  };

  // `directory` is private to the user and gone with the session, as the runtime directory.
  explicit SingleInstance(FilePath directory);
  ~SingleInstance();

  // Waits for the other program at most `limit`.
  Claim claim(Duration limit = std::chrono::seconds(2));
  // Calls `asked` on this thread, by Qt's event loop, whenever somebody starts the program again.
  void onReopen(std::function<void()> asked);

 private:
  FileDescriptor listen() const;
  bool askToReopen() const;
  void answer();

  const FilePath directory_;
  FileDescriptor lock_;
  FileDescriptor socket_;
  std::unique_ptr<QSocketNotifier> notifier_;
  std::function<void()> asked_;
};

}  // namespace quillo::linux_host
