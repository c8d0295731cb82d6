#include "service/recogniser.h"

#include <pocketsphinx.h>
#include <sphinxbase/err.h>

#include <cstdlib>
#include <set>
#include <stdexcept>

#include "base/text.h"
#include "service/speech_model.h"
#include "service/utterances.h"
#include "service/vocabulary.h"

namespace quillo::service {
namespace {

// New words are members of one class of the language model. Words of their own would be looked up
// among the sorted followers of other words, and this version of the library then reads beyond
// them, since new words have numbers beyond all that were sorted.
constexpr const char* vocabularyClass = "<vocabulary>";
// How likely the class is, relative to a word that the model knows nothing of. Users name words
// because they say them.
constexpr float vocabularyWeight = 100.0f;
// The class finds its members by a table of this size. A decoder that learned more starts again
// from its dictionary.
constexpr std::size_t maximumLearnedWords = 128;

ngram_model_t* onlyModel(ngram_model_t* set) {
  ngram_model_set_iter_t* models = ngram_model_set_iter(set);
  ngram_model_t* model = ngram_model_set_iter_model(models, nullptr);
  ngram_model_set_iter_free(models);
  return model;
}

}  // namespace

Recogniser::Recogniser(Pronunciation& pronunciation)
    : pronunciation_(pronunciation), decoder_(nullptr, ps_free) {
  load();
}

Recogniser::~Recogniser() = default;

void Recogniser::load() {
  decoder_.reset();
  learned_ = 0;
  err_set_logfp(nullptr);
  // Every second frame is scored in full and two densities a codebook: twice as fast, and the
  // texts are the same. The mean is taken over the whole utterance, so that no request depends on
  // the one before it.
  cmd_ln_t* settings = cmd_ln_init(nullptr, ps_args(), TRUE, "-hmm", speech_model::acoustics, "-lm",
                                   speech_model::language, "-dict", speech_model::dictionary, "-ds",
                                   "2", "-topn", "2", "-maxhmmpf", "3000", "-bestpath", "0", "-cmn",
                                   "batch", "-logfn", "/dev/null", nullptr);
  if (settings) decoder_.reset(ps_init(settings));
  cmd_ln_free_r(settings);
  if (!decoder_)
    throw std::runtime_error("the speech model is missing (package pocketsphinx-en-us)");
  languageModel_ = onlyModel(ps_get_lm(decoder_.get(), ps_get_search(decoder_.get())));
  ngram_model_add_class(languageModel_, vocabularyClass, vocabularyWeight, nullptr, nullptr, 0);
}

bool Recogniser::knows(const std::string& word) const {
  char* phones = ps_lookup_word(decoder_.get(), word.c_str());
  std::free(phones);
  return phones != nullptr;
}

std::vector<Recogniser::NewWord> Recogniser::newWords(
    const std::vector<std::string>& vocabulary) const {
  std::vector<NewWord> words;
  std::set<std::string> seen;
  for (const std::string& spelling : wordsOf(vocabulary)) {
    const std::string word = lowercased(spelling);
    if (knows(word) || !seen.insert(word).second) continue;
    std::string phones = pronunciation_.phones(spelling);
    if (!phones.empty()) words.push_back({word, std::move(phones)});
  }
  if (words.size() > maximumLearnedWords) words.resize(maximumLearnedWords);
  return words;
}

void Recogniser::learn(const std::vector<NewWord>& words) {
  for (const NewWord& word : words) {
    if (ngram_wid(languageModel_, word.word.c_str()) == ngram_unknown_wid(languageModel_))
      ngram_model_add_class_word(languageModel_, vocabularyClass, word.word.c_str(), 1.0f);
    // The search network is rebuilt once, with the last word.
    const int rebuild = &word == &words.back() ? TRUE : FALSE;
    if (ps_add_word(decoder_.get(), word.word.c_str(), word.phones.c_str(), rebuild) >= 0)
      ++learned_;
  }
}

std::string Recogniser::transcribe(std::span<const std::int16_t> samples,
                                   const std::vector<std::string>& vocabulary) {
  auto words = newWords(vocabulary);
  if (learned_ + words.size() > maximumLearnedWords) {
    load();
    words = newWords(vocabulary);
  }
  learn(words);

  ps_start_stream(decoder_.get());
  std::vector<std::string> texts;
  for (const auto utterance : utterances(samples)) {
    std::string text = recognise(utterance);
    if (!text.empty()) texts.push_back(std::move(text));
  }
  return joined(texts, " ");
}

std::string Recogniser::recognise(std::span<const std::int16_t> utterance) {
  if (ps_start_utt(decoder_.get()) < 0) throw std::runtime_error("the recogniser did not start");
  ps_process_raw(decoder_.get(), utterance.data(), utterance.size(), FALSE, TRUE);
  ps_end_utt(decoder_.get());
  const char* text = ps_get_hyp(decoder_.get(), nullptr);
  return text ? text : "";
}

}  // namespace quillo::service
