// The status item in a bar of the older kind, as it is drawn and clicked.
#include <gtest/gtest.h>

#include <QApplication>
#include <QProcess>
#include <QScreen>
#include <QWidget>

#include "contracts/linux/linux_window_below.h"
#include "contracts/linux/linux_x11_host.h"
#include "hosts/linux/qt/qt_status_item.h"
#include "views/quick_views.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;

// Virtual key codes.

TEST(StatusItemOnScreen, IsDrawnAndOpensItsMenuAtAClick) {
  struct Host final : contracts::LinuxContractHost<contracts::ContractHost> {
  } host;
  QProcess bar;
  bar.start("trayer", {"--edge", "top", "--align", "right", "--widthtype", "request", "--height",
                       "28", "--SetDockType", "true"});
  ASSERT_TRUE(bar.waitForStarted());
  const auto connection = linux_host::X11Connection::open();
  PhysicalKeyboard keyboard(*connection);

  views::QuickViews views;
  linux_host::QtStatusItem item(views);
  std::string chosen;
  item.setMenu({{.title = words("Start Dictation"), .action = [&] { chosen = "start"; }},
                {.title = words("Quit Quillo"), .action = [&] { chosen = "quit"; }}});

  // Where a pixel of that colour is drawn in the bar.
  const auto find = [](QRgb color) -> std::optional<QPoint> {
    const int right = QGuiApplication::primaryScreen()->geometry().width();
    const QRect bar_(right - 100, 0, 100, 28);
    const QImage picture = QGuiApplication::primaryScreen()
                               ->grabWindow(0, bar_.x(), bar_.y(), bar_.width(), bar_.height())
                               .toImage();
    for (int y = 0; y < picture.height(); ++y)
      for (int x = 0; x < picture.width(); ++x)
        if (picture.pixel(x, y) == color) return bar_.topLeft() + QPoint(x, y);
    return std::nullopt;
  };
  constexpr QRgb resting = 0xff3f4350, recording = 0xffe5383b;
  item.setIcon("waveform.circle", words("Quillo"));
  ASSERT_TRUE(host.runUntil([&] { return find(resting).has_value(); }, 20s));
  item.setIcon("mic.circle.fill", words("Quillo: recording"));
  ASSERT_TRUE(host.runUntil([&] { return find(recording) && !find(resting); }, 20s));

  contracts::clickAt(*connection, *find(recording));
  ASSERT_TRUE(host.runUntil(
      [] {
        return QApplication::activePopupWidget() && QApplication::activePopupWidget()->isVisible();
      },
      20s));
  for (const Key key : {Key::down, Key::down, Key::returnKey}) {
    keyboard.change(key, KeyDirection::down);
    host.runFor(contracts::KeyboardHost::shortPress);
    keyboard.change(key, KeyDirection::up);
  }
  EXPECT_TRUE(host.runUntil([&] { return chosen == "quit"; }, 20s));
  bar.terminate();
  bar.waitForFinished();
}

}  // namespace
}  // namespace quillo
