// The views of the panels in Qt Quick.
#pragma once

#include <memory>

#include "hosts/linux/qt/views.h"

class QQmlEngine;

namespace quillo::views {

class Theme;

// Made after QGuiApplication. The engine is started with the first view.
class QuickViews final : public linux_host::Views {
 public:
  QuickViews();
  ~QuickViews() override;

  // For the contents of the shell (status, toast, review), and for the host's questions.
  std::unique_ptr<linux_host::PanelView> makePanelView(Content& content) override;
  QIcon barIcon(const std::string& symbol) override;

 private:
  void startEngine();

  std::unique_ptr<Theme> theme_;
  std::unique_ptr<QQmlEngine> engine_;
};

}  // namespace quillo::views
