#include "app/text_in_place.h"

#include <utility>

namespace quillo {

TextInPlace::TextInPlace(const HostPorts& ports, Rooms rooms)
    : services_(ports.services),
      fields_(ports.accessibility, ports.screens),
      windows_(ports.accessibility, ports.workspace, ports.application, ports.log),
      contexts_(ports.accessibility, ports.workspace),
      clipboard_(ports.mainThread, ports.pasteboard, ports.keyPoster, ports.keyboardState,
                 rooms.clipboardGate, ports.log),
      reader_(ports.accessibility, ports.screens, fields_, windows_, ports.log),
      gate_(ports.accessibility, ports.screens, ports.pointer, reader_, fields_, windows_,
            contexts_, ports.log),
      bubblePanel_(ports.mainThread, ports.panels, ports.screens,
                   [this]() -> Content& { return toolbar_; }),
      badgePanel_(ports.panels, [this] { bubble_.openFromBadge(); }),
      badgeComputation_({.mainThread = ports.mainThread,
                         .accessibility = ports.accessibility,
                         .screens = ports.screens,
                         .workspace = ports.workspace,
                         .application = ports.application,
                         .log = ports.log},
                        reader_, fields_, windows_, contexts_),
      badgeCorner_(ports.accessibility, ports.screens,
                   [&accessibility = *ports.accessibility,
                    &application = *ports.application](const AccessibilityElement& element) {
                     return accessibility.processIdentifier(element) ==
                            application.processIdentifier();
                   }),
      badge_(ports.mainThread, ports.mouseMonitors, ports.pointer, ports.screens, rooms.state,
             badgeComputation_, badgeCorner_, badgePanel_),
      bubble_({.mainThread = ports.mainThread,
               .random = ports.random,
               .workspace = ports.workspace,
               .application = ports.application,
               .permissions = ports.permissions,
               .pointer = ports.pointer,
               .keyboardState = ports.keyboardState,
               .mouseMonitors = ports.mouseMonitors,
               .eventMonitors = ports.eventMonitors,
               .log = ports.log},
              {.settings = rooms.state,
               .reader = reader_,
               .gate = gate_,
               .windows = windows_,
               .contexts = contexts_,
               .clipboard = clipboard_,
               .hotKeys = rooms.globalHotKey,
               .panel = bubblePanel_,
               .badge = badge_}),
      actions_(ports.mainThread, bubble_, bubblePanel_, rooms.api, rooms.state, rooms.state,
               ports.workspace, rooms.insertion, ports.log),
      toolbar_(ports.mainThread, bubble_.model(), toolbarCallbacks()),
      translateService_(ports.mainThread, ports.application, ports.alerts,
                        {.api = rooms.api,
                         .authority = rooms.authority,
                         .account = rooms.state,
                         .writing = rooms.state,
                         .navigator = rooms.navigator,
                         .insertion = rooms.insertion,
                         .showToast = std::move(rooms.showToast)}) {
  observeSettings(rooms.state);
}

TextInPlace::~TextInPlace() {
  services_.provideTranslation({});
}

BubbleToolbar::Callbacks TextInPlace::toolbarCallbacks() {
  return {.perform = [this](BubbleAction action) { actions_.perform(action); },
          .performCustom = [this](const std::string& prompt) { actions_.performCustom(prompt); },
          .customPrompts = [this] { return actions_.customPrompts(); },
          .requestResize = [this] { bubblePanel_.requestResize(); },
          .mute = [this] { bubble_.muteCurrentContext(); }};
}

void TextInPlace::observeSettings(MacAppState& state) {
  effects_.push_back(state.selectionBubbleEnabled.observe([this](bool isEnabled) {
    if (isEnabled) {
      bubble_.start();
    } else {
      bubble_.stop();
    }
  }));
  effects_.push_back(state.fieldBadgeEnabled.observe([this](bool isEnabled) {
    if (!isEnabled) badge_.hideBadge();
  }));
}

void TextInPlace::provideServices() {
  services_.provideTranslation([this](const std::optional<std::string>& selection) {
    return translateService_.translateSelection(selection);
  });
}

}  // namespace quillo
