#include "hosts/linux/qt_alerts.h"

#include <QMessageBox>
#include <QPushButton>
#include <algorithm>
#include <vector>

namespace quillo::linux_host {

std::size_t QtAlerts::runModal(const Alert& alert) {
  QMessageBox box;
  box.setWindowTitle("Quillo");
  box.setText(QString::fromStdString(alert.messageText));
  box.setInformativeText(QString::fromStdString(alert.informativeText));
  std::vector<QAbstractButton*> buttons;
  for (const std::string& label : alert.buttons)
    buttons.push_back(box.addButton(QString::fromStdString(label), QMessageBox::ActionRole));
  if (buttons.empty()) buttons.push_back(box.addButton(QMessageBox::Ok));
  box.setDefaultButton(qobject_cast<QPushButton*>(buttons.front()));
  box.setEscapeButton(buttons.back());
  box.exec();
  const auto pressed = std::ranges::find(buttons, box.clickedButton());
  return pressed == buttons.end() ? buttons.size() - 1
                                  : static_cast<std::size_t>(pressed - buttons.begin());
}

}  // namespace quillo::linux_host
