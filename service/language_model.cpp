#include "service/language_model.h"

#include <sphinxbase/err.h>
#include <sphinxbase/logmath.h>
#include <sphinxbase/ngram_model.h>

#include <stdexcept>

#include "service/speech_model.h"

namespace quillo::service {
namespace {

constexpr double logarithmBase = 1.0001;

const char* orBoundary(const std::string& word, const char* boundary) {
  return word.empty() ? boundary : word.c_str();
}

}  // namespace

LanguageModel::LanguageModel()
    : logarithms_(nullptr, logmath_free), model_(nullptr, ngram_model_free) {
  err_set_logfp(nullptr);
  logarithms_.reset(logmath_init(logarithmBase, 0, 0));
  model_.reset(ngram_model_read(nullptr, speech_model::language, NGRAM_AUTO, logarithms_.get()));
  if (!model_)
    throw std::runtime_error("the language model is missing (package pocketsphinx-en-us)");
}

LanguageModel::~LanguageModel() = default;

int LanguageModel::score(const std::string& word, const Place& place) const {
  const std::lock_guard lock(mutex_);
  const char* last = orBoundary(place.last, "<s>");
  const char* next = orBoundary(place.next, "</s>");
  const char* none = nullptr;
  const int here = place.beforeLast.empty() ? ngram_score(model_.get(), word.c_str(), last, none)
                                            : ngram_score(model_.get(), word.c_str(), last,
                                                          place.beforeLast.c_str(), none);
  return here + ngram_score(model_.get(), next, word.c_str(), last, none);
}

}  // namespace quillo::service
