// The hosted transform of a transcript, and the check of a translation.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "api/murmex_api.h"
#include "api/session_authority.h"
#include "base/log.h"
#include "base/task.h"
#include "platform/workspace.h"
#include "state/account_state.h"
#include "state/writing_settings.h"

namespace quillo {

// The languages of one dictation.
struct LanguagePair {
  std::string input;  // "auto" is a language of its own here
  std::string output;

  bool areEqual() const { return input == output; }
};

// Main thread.
class TransformPipeline {
 public:
  struct Input {
    std::string rawText;
    std::vector<std::string> usedSnippets;
    std::optional<RunningApplication> target;
  };

  TransformPipeline(MurmexAPI& api, SessionAuthority& authority, const AccountState& account,
                    const WritingSettings& writing, Log& log)
      : api_(api), authority_(authority), account_(account), writing_(writing), log_(log) {}

  // What the service makes of the raw text, or the raw text itself when the output may not replace
  // it. Throws what the request throws.
  Task<std::string> transformText(Input input);

  // The same with one repeat. Nothing when both tries failed; throws a plan limit of the first try,
  // and a cancellation before the second.
  Task<std::optional<std::string>> transformTextTwice(Input input);

  // `finalText` translated back, as far as that tells anything.
  Task<std::string> verifyTranslation(std::string finalText, LanguagePair pair);

 private:
  TransformRequest requestFor(const Input& input) const;
  Task<std::string> send(TransformRequest request);
  std::string checkedOutput(const std::string& rawText, const std::string& reply) const;

  MurmexAPI& api_;
  SessionAuthority& authority_;
  const AccountState& account_;
  const WritingSettings& writing_;
  Log& log_;
};

}  // namespace quillo
