// Where the mouse is, in the plane of the screens.
#pragma once

#include <cstdint>
#include <functional>
#include <utility>

#include "platform/pointer.h"

namespace quillo::linux_host {

// Needs QGuiApplication.
class QtPointer final : public Pointer {
 public:
  using PressedButtons = std::function<std::uint32_t()>;
  // Of the whole desktop: the toolkit knows of its own windows alone.
  explicit QtPointer(PressedButtons pressedButtons) : pressedButtons_(std::move(pressedButtons)) {}

  Point location() const override;
  std::uint32_t pressedButtons() const override { return pressedButtons_(); }

 private:
  PressedButtons pressedButtons_;
};

// Whether the pointer is over a window of this program that takes clicks there.
bool isPointerOverOwnWindow();

}  // namespace quillo::linux_host
