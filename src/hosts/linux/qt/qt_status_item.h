// The item in the desktop's bar: StatusNotifierItem where the desktop has it, the older system tray
// elsewhere.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "hosts/linux/qt/views.h"
#include "platform/status_item.h"

namespace quillo::linux_host {

// Made after QApplication. The bar may come some time after the program, and go and come again.
class QtStatusItem final : public StatusItem {
 public:
  // `views` outlives this.
  explicit QtStatusItem(Views& views);
  ~QtStatusItem() override;

  void setIcon(const std::string& symbol, const Words& description) override;
  void setMenu(std::vector<MenuItem> menu) override;

 private:
  struct Bar;

  void makeBar();
  void lookForBar();
  void makeItem();
  void showIcon();
  void showMenu();

  Views& views_;
  std::string symbol_;
  Words description_;
  std::vector<MenuItem> entries_;
  bool needsBuilding_ = false;
  std::unique_ptr<Bar> bar_;  // made with the first icon
};

}  // namespace quillo::linux_host
