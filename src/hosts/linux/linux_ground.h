// What a program on this host has before it knows its desktop: enough to keep a log.
#pragma once

#include "hosts/linux/posix/console_system_log.h"
#include "hosts/linux/posix/posix_file_manager.h"
#include "hosts/linux/posix/system_clock.h"
#include "hosts/linux/posix/system_random.h"
#include "hosts/linux/posix/thread_serial_queues.h"
#include "hosts/linux/posix/xdg_directories.h"
#include "hosts/linux/qt/qt_main_thread.h"
#include "hosts/linux/session/xdg_opener.h"

namespace quillo::linux_host {

// Made after QApplication, and outlives everything else of this host.
struct LinuxGround {
  XdgDirectories directories = XdgDirectories::ofThisUser();
  ConsoleSystemLog systemLog;
  SystemClock clock;
  SystemRandom random;
  ThreadSerialQueues queues;
  PosixFileManager files{directories};
  XdgOpener opener;
  QtMainThread mainThread{systemLog};
};

}  // namespace quillo::linux_host
