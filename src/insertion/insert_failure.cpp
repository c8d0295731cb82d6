#include "insertion/insert_failure.h"

namespace quillo {
namespace {

struct Texts {
  std::string_view name;
  Literal message;
};

// In the order of the reasons.
constexpr Texts failures[] = {
    {"accessibility",
     words("Text was copied. Turn on Accessibility access for Quillo to paste automatically.")},
    {"invalidTarget",
     words("Text was copied. Click where you want it, then use Paste Last Result from the menu "
           "bar.")},
    {"secureInput",
     words("Text was copied. Secure keyboard entry is on (a password field, or an app like "
           "Terminal or a "
           "password manager), so macOS blocks auto-paste — press Cmd+V to paste it.")},
};
constexpr Texts noFailure{"none", words("Text was copied. If the target app blocked auto-paste, "
                                        "use Paste Last Result from the menu "
                                        "bar.")};

const Texts& textsOf(std::optional<InsertFailureReason> reason) {
  return reason ? failures[static_cast<std::size_t>(*reason)] : noFailure;
}

}  // namespace

Literal insertFailureMessage(std::optional<InsertFailureReason> reason) {
  return textsOf(reason).message;
}

std::string_view insertFailureName(std::optional<InsertFailureReason> reason) {
  return textsOf(reason).name;
}

}  // namespace quillo
