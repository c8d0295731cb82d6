// Translates the text that is selected in any application, on the user's demand from the desktop.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "api/murmex_api.h"
#include "api/session_authority.h"
#include "base/task.h"
#include "core/navigator.h"
#include "insertion/text_insertion.h"
#include "platform/alerts.h"
#include "platform/application.h"
#include "state/account_state.h"
#include "state/writing_settings.h"

namespace quillo {

// The result is not written back: it is copied, and shown. Main thread.
class MacTranslateService {
 public:
  struct Rooms {
    MurmexAPI& api;
    SessionAuthority& authority;
    const AccountState& account;
    const WritingSettings& writing;
    Navigator& navigator;
    MacTextInsertion& insertion;
    std::function<void(Words)> showToast;
  };

  MacTranslateService(MainThread& mainThread, Application& application, Alerts& alerts, Rooms rooms)
      : mainThread_(mainThread),
        application_(application),
        alerts_(alerts),
        rooms_(std::move(rooms)) {}

  // Why it was refused, in words; nothing when the translation has begun.
  std::optional<std::string> translateSelection(const std::optional<std::string>& selection);

 private:
  Task<> translate(std::string text);
  Task<> translateSignedIn(std::string text);
  void showResult(const std::string& text, const std::string& language);
  // A warning.
  void showAlert(Words message);

  MainThread& mainThread_;
  Application& application_;
  Alerts& alerts_;
  Rooms rooms_;
  bool working_ = false;  // also while the result is on the screen
};

}  // namespace quillo
