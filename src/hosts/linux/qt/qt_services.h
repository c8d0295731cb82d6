// The program's offers to the desktop, on the session bus.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/services.h"

namespace quillo::linux_host {

// Linux desktops have no menu of services. The program answers as org.freedesktop.Application
// (freedesktop.org, Desktop Entries, D-Bus activation): a desktop's own shortcuts, a launcher or
// `gapplication action com.murmex.Quillo translate-selection` reach it. The selection is the
// primary one; a refusal is the call's error. Without a bus nothing is offered.
class QtServices final : public Services {
 public:
  using ReadSelection = std::function<std::optional<std::string>()>;
  struct Asks {
    ReadSelection readSelection;
    std::function<void()> activate;  // somebody started the program once more
  };

  explicit QtServices(Asks asks);
  ~QtServices() override;

  void provideTranslation(TranslateSelection translate) override;

  static constexpr const char* busName = "com.murmex.Quillo";
  static constexpr const char* objectPath = "/com/murmex/Quillo";

 private:
  class Endpoint;
  std::unique_ptr<Endpoint> endpoint_;
  bool isServing_ = false;
};

}  // namespace quillo::linux_host
