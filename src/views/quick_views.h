// The views of the panels in Qt Quick.
#pragma once

#include <memory>

#include "base/catalog.h"
#include "hosts/linux/qt/views.h"

class QQmlEngine;

namespace quillo::views {

class Theme;

// Made after QGuiApplication. The engine is started with the first view.
class QuickViews final : public linux_host::Views {
 public:
  // Texts are shown as `catalog` has them.
  explicit QuickViews(Catalog catalog = {});
  ~QuickViews() override;

  // For every content whose view is known by name (see the table in the source).
  std::unique_ptr<linux_host::PanelView> makePanelView(Content& content) override;
  std::unique_ptr<linux_host::WindowView> makeWindowView() override;
  QIcon barIcon(const std::string& symbol) override;
  QString text(const Words& words) const override;

 private:
  void startEngine();

  Catalog catalog_;
  std::unique_ptr<Theme> theme_;
  std::unique_ptr<QQmlEngine> engine_;
};

}  // namespace quillo::views
