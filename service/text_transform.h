// Fix, Improve and translation, by rules.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "service/dictionary.h"
#include "service/instructions.h"
#include "service/language_model.h"
#include "service/layout_rules.h"
#include "service/polish_rules.h"
#include "service/pronunciation.h"
#include "service/spelling_rules.h"
#include "service/terms.h"
#include "service/translator.h"

namespace quillo::service {

enum class TransformMode {
  direct,     // the same words: spelling, capitals, marks
  improve,    // without hesitations and repetitions, in the tone asked for
  automatic,  // improve for a text with hesitations or repetitions, else direct
};

enum class PromptUse {
  augment,  // beside the mode
  alone,    // in place of it
};

struct TransformRequest {
  std::string text;
  TransformMode mode = TransformMode::automatic;
  Tone tone = Tone::neutral;
  Layout layout = Layout::asItIs;
  std::string targetLanguage;                 // a code, as "en"
  std::optional<std::string> sourceLanguage;  // to be told from the text when absent
  TextOrigin origin = TextOrigin::typed;
  std::string prompt;  // empty for none
  PromptUse promptUse = PromptUse::augment;
  std::vector<Term> terms;
};

class TextTransform {
 public:
  // All outlive this object.
  TextTransform(const Dictionaries& dictionaries, Pronunciation& pronunciation,
                const Translator& translator);

  // Throws ServiceError for a language pair or a prompt that is beyond it. Any thread.
  std::string transformed(const TransformRequest& request) const;

 private:
  void clean(Pieces& pieces, const std::string& language, const TransformRequest& request,
             const Instructions& instructions) const;
  void correct(Pieces& pieces, const std::string& language, TextOrigin origin) const;
  void demandPair(const std::string& from, const std::string& to) const;

  const Dictionaries& dictionaries_;
  Pronunciation& pronunciation_;
  const Translator& translator_;
  LanguageModel englishModel_;
};

}  // namespace quillo::service
