// How likely English words follow each other: the trigram model of the recogniser.
#pragma once

#include <memory>
#include <mutex>
#include <string>

struct ngram_model_s;
struct logmath_s;

namespace quillo::service {

class LanguageModel {
 public:
  // Throws std::runtime_error when the model is missing.
  LanguageModel();
  ~LanguageModel();

  // Lower-case words with their neighbours, empty ones beyond the ends of a sentence.
  struct Place {
    std::string beforeLast;
    std::string last;
    std::string next;
  };
  // The logarithm of the likelihood of `word` at `place`, to a base of the model's own; for
  // comparison. Any thread.
  int score(const std::string& word, const Place& place) const;

 private:
  mutable std::mutex mutex_;  // the library caches what it was last asked
  std::unique_ptr<logmath_s, int (*)(logmath_s*)> logarithms_;
  std::unique_ptr<ngram_model_s, int (*)(ngram_model_s*)> model_;
};

}  // namespace quillo::service
