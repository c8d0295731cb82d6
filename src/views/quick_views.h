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

  // For every content whose view is known by name (see the table in the source).
  std::unique_ptr<linux_host::PanelView> makePanelView(Content& content) override;
  std::unique_ptr<linux_host::WindowView> makeWindowView() override;
  QIcon barIcon(const std::string& symbol) override;

 private:
  void startEngine();

  std::unique_ptr<Theme> theme_;
  std::unique_ptr<QQmlEngine> engine_;
};

}  // namespace quillo::views
