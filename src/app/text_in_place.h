// Text in place: the bubble beside a selection, the badge of a field, and the translate service.
#pragma once

#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "api/murmex_api.h"
#include "api/session_authority.h"
#include "app/host_ports.h"
#include "bubble/badge_computation.h"
#include "bubble/badge_corner.h"
#include "bubble/bubble_actions.h"
#include "bubble/context_keys.h"
#include "bubble/field_badge.h"
#include "bubble/selection_bubble.h"
#include "bubble/selection_gate.h"
#include "bubble/selection_reader.h"
#include "bubble/translate_service.h"
#include "core/navigator.h"
#include "input/global_hot_key.h"
#include "insertion/classification/field_classification.h"
#include "insertion/classification/window_classification.h"
#include "insertion/clipboard_capture.h"
#include "insertion/text_insertion.h"
#include "shell/bubble/bubble_toolbar.h"
#include "shell/bubble/field_badge_panel.h"
#include "shell/bubble/selection_bubble_panel.h"
#include "state/app_state.h"

namespace quillo {

// Main thread. The ports and rooms outlive it.
class TextInPlace {
 public:
  struct Rooms {
    MacAppState& state;
    MurmexAPI& api;
    SessionAuthority& authority;
    Navigator& navigator;
    MacClipboardGate& clipboardGate;
    MacTextInsertion& insertion;
    GlobalHotKey& globalHotKey;
    std::function<void(Words)> showToast;
  };

  TextInPlace(const HostPorts& ports, Rooms rooms);
  TextInPlace(const TextInPlace&) = delete;
  TextInPlace& operator=(const TextInPlace&) = delete;
  ~TextInPlace();

  // Steps of the launch.
  void provideServices();
  void startSelectionBubble() { bubble_.start(); }

  MacSelectionBubble& bubble() { return bubble_; }
  const FieldClassification& fields() const { return fields_; }
  const WindowClassification& windows() const { return windows_; }
  const SelectionBubblePanel& bubblePanel() const { return bubblePanel_; }
  const FieldBadgePanel& badgePanel() const { return badgePanel_; }

 private:
  BubbleToolbar::Callbacks toolbarCallbacks();
  void observeSettings(MacAppState& state);

  Services& services_;
  FieldClassification fields_;
  WindowClassification windows_;
  ContextKeys contexts_;
  ClipboardCapture clipboard_;
  SelectionReader reader_;
  SelectionGate gate_;
  SelectionBubblePanel bubblePanel_;
  FieldBadgePanel badgePanel_;
  BadgeComputation badgeComputation_;
  BadgeCorner badgeCorner_;
  FieldBadge badge_;
  MacSelectionBubble bubble_;
  BubbleActions actions_;
  BubbleToolbar toolbar_;
  MacTranslateService translateService_;
  std::vector<Subscription> effects_;
};

}  // namespace quillo
