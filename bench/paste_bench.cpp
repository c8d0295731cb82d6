// bench_paste EDITOR FILE PASTES PASTES: whether each paste arrives once while the user holds keys,
// in the editor that is in front on a real desktop (bench/paste starts it).
//
// The keys come from the server's own keyboard. These are done the first and the second number of
// times, and what came into the editor and what the clipboard holds afterwards are looked at each
// time:
//   Paste Last Result, its chord held for 40, 120, 300 and 900 ms
//   a paste while another chord that this program has bound is held and repeats
//
// FILE is what the editor saves its text to, and "-" when its window's title is its number of
// characters. Ends with 1 when a paste was lost or came twice, or the clipboard did not come back.
#include <QApplication>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "app/program.h"
#include "hosts/linux/linux_desktop.h"
#include "hosts/linux/session/bundle.h"
#include "physical_keyboard.h"
#include "shell/diagnostics/diagnostics_log.h"
#include "unasking_desktop.h"
#include "views/quick_views.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using Keys = std::vector<Key>;

constexpr Duration briefly = 30ms;
constexpr Duration longEnoughToRepeat = 900ms;
constexpr std::string_view text =
    "Hello.";  // no blank at the end: some editors drop it as they save
constexpr std::string_view usersClipboard = "what the user copied";

bool await(Duration limit, const std::function<bool()>& holds) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (!holds()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(5ms);
  }
  return true;
}

std::string clipboard() {
  std::string content;
  std::FILE* const tool = popen("timeout 2 xclip -o -selection clipboard 2>&1", "r");
  for (int c = std::fgetc(tool); c != EOF; c = std::fgetc(tool)) content += static_cast<char>(c);
  pclose(tool);
  return content;
}

// The person at the keyboard. Belongs to one thread.
class User {
 public:
  explicit User(std::string file) : file_(std::move(file)) {}

  void press(const Keys& keys) {
    for (const Key key : keys) keyboard_.change(key, KeyDirection::down);
  }
  void release(const Keys& keys) {
    for (auto key = keys.rbegin(); key != keys.rend(); ++key)
      keyboard_.change(*key, KeyDirection::up);
  }

  // Of the editor's text, once it is no longer `before`.
  std::size_t lengthAfter(std::size_t before) {
    std::size_t length = before;
    await(2s, [&] {
      length = file_ == "-" ? titledLength() : savedLength();
      return length > before;
    });
    return length;
  }

 private:
  std::size_t titledLength() {
    const auto window = x11_->word(x11_->root(), "_NET_ACTIVE_WINDOW");
    const auto title = window ? x11_->text(*window, "_NET_WM_NAME") : std::nullopt;
    return title ? static_cast<std::size_t>(std::atoi(title->c_str())) : 0;
  }
  std::size_t savedLength() {
    press({Key::control, Key::s});
    std::this_thread::sleep_for(briefly);
    release({Key::control, Key::s});
    std::this_thread::sleep_for(briefly);
    std::ifstream file(file_);
    std::string saved{std::istreambuf_iterator<char>(file), {}};
    std::erase(saved, '\n');  // some editors end the last line each time that they save
    return saved.size();
  }

  std::string file_;
  std::unique_ptr<linux_host::X11Connection> x11_ = linux_host::X11Connection::open();
  PhysicalKeyboard keyboard_{*x11_};
};

struct Tally {
  int once = 0, lost = 0, otherwise = 0, clipboardsLost = 0;

  bool isClean() const { return lost + otherwise + clipboardsLost == 0; }
  void print(const std::string& what) const {
    std::printf("%s: %d once, %d lost, %d otherwise, clipboard lost %d times\n", what.c_str(), once,
                lost, otherwise, clipboardsLost);
    std::fflush(stdout);
  }
};

class Pastes {
 public:
  Pastes(Program& program, std::string file) : program_(program), user_(std::move(file)) {}

  // On a thread of its own, with the main thread running; whether all of them were right.
  bool take(const std::string& editor, int own, int others) {
    std::this_thread::sleep_for(2s);  // the launch's own tasks end
    bool isClean = true;
    for (const Duration hold : {40ms, 120ms, 300ms, 900ms}) {
      const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(hold).count();
      isClean &=
          repeat(editor + ", its own chord held " + std::to_string(milliseconds) + " ms", own, [&] {
            user_.press({Key::control, Key::command, Key::v});
            std::this_thread::sleep_for(hold);
            user_.release({Key::control, Key::command, Key::v});
          });
    }
    isClean &= repeat(editor + ", while another chord of ours repeats", others, [&] {
      user_.press({Key::control, Key::g});
      std::this_thread::sleep_for(longEnoughToRepeat);
      const int before = inserted_;
      QMetaObject::invokeMethod(qApp,
                                [&] { program_.dictation().insertLastResult(std::string(text)); });
      await(5s, [&] { return inserted_ > before; });
      user_.release({Key::control, Key::g});
    });
    return isClean;
  }
  void count(const std::string& status) {
    if (status == "Inserted") ++inserted_;
  }

 private:
  bool repeat(const std::string& what, int times, const std::function<void()>& paste) {
    Tally tally;
    for (int i = 0; i < times; ++i) {
      const int before = inserted_;
      paste();
      await(5s, [&] { return inserted_ > before; });
      const std::size_t length = user_.lengthAfter(length_);
      const std::size_t came = length - length_;
      ++(came == text.size() ? tally.once : came == 0 ? tally.lost : tally.otherwise);
      if (came != text.size()) {
        std::fprintf(stderr, "paste %d: %zu characters came, status %s\n", i, came,
                     inserted_ > before ? "Inserted" : "unchanged");
      }
      length_ = length;
      if (clipboard() != usersClipboard) ++tally.clipboardsLost;
    }
    tally.print(what);
    return tally.isClean();
  }

  Program& program_;
  User user_;
  std::size_t length_ = 0;
  std::atomic<int> inserted_ = 0;
};

int run(int argumentCount, char** arguments) {
  QApplication qt(argumentCount, arguments);
  if (argumentCount != 5)
    return std::fputs("usage: bench_paste EDITOR FILE PASTES PASTES\n", stderr), 2;
  linux_host::LinuxGround ground;
  DiagnosticsLog log(ground.mainThread, ground.clock, ground.files, ground.queues, ground.opener);
  const BundleInformation bundle = linux_host::bundleOfThisProgram();
  auto opened = linux_host::X11Desktop::open({.mainThread = ground.mainThread,
                                              .log = log,
                                              .ownBundleIdentifier = bundle.bundleIdentifier,
                                              .lost = {}});
  if (!opened.desktop) return std::fprintf(stderr, "%s\n", opened.refusal.c_str()), 1;
  views::QuickViews views;
  UnaskingDesktop desktop(ground, log, bundle, std::move(opened.desktop), views);
  Program program(portsOf(desktop), Backend{"http://127.0.0.1:9", "nobody"});
  program.launch();
  program.dictation().lastResult = std::string(text);

  Pastes pastes(program, arguments[2]);
  const auto counting = program.dictation().statusText.observe(
      [&](const Words& status) { pastes.count(status.english()); });
  std::thread user([&] {
    const int status =
        pastes.take(arguments[1], std::atoi(arguments[3]), std::atoi(arguments[4])) ? 0 : 1;
    QMetaObject::invokeMethod(qApp, [status] { QCoreApplication::exit(status); });
  });
  const int status = QApplication::exec();
  user.join();
  return status;
}

}  // namespace
}  // namespace quillo

int main(int argumentCount, char** arguments) {
  return quillo::run(argumentCount, arguments);
}
