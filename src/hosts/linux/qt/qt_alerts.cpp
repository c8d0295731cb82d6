#include "hosts/linux/qt/qt_alerts.h"

#include <QEventLoop>
#include <memory>
#include <optional>

#include "hosts/linux/qt/alert_content.h"

namespace quillo::linux_host {
namespace {

constexpr Size initialSize{400, 10};

}  // namespace

std::size_t QtAlerts::runModal(const Alert& alert) {
  QEventLoop untilAnswered;
  std::optional<std::size_t> answer;
  AlertContent content(alert, [&](std::size_t button) {
    answer = answer.value_or(button);
    untilAnswered.quit();
  });
  const std::unique_ptr<Panel> panel = panels_.make({initialSize, PanelStyle::dialog}, content);
  panel->setContentSize(panel->fittingSize());
  center(*panel);
  panel->makeKeyAndOrderFront();
  untilAnswered.exec();
  return answer.value_or(content.alert().buttons.size() - 1);
}

void QtAlerts::center(Panel& panel) const {
  const auto screen = screens_.mainScreen();
  if (!screen) return;
  const Size size = panel.frame().size;
  panel.setFrameOrigin({screen->visibleFrame.midX() - size.width / 2,
                        screen->visibleFrame.midY() - size.height / 2});
}

}  // namespace quillo::linux_host
