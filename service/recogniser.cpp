#include "service/recogniser.h"

#include <pocketsphinx.h>
#include <sphinxbase/err.h>

#include <cstdlib>
#include <stdexcept>

#include "base/text.h"
#include "service/utterances.h"
#include "service/vocabulary.h"

namespace quillo::service {
namespace {

constexpr const char* acousticModel = "/usr/share/pocketsphinx/model/en-us/en-us";
constexpr const char* languageModel = "/usr/share/pocketsphinx/model/en-us/en-us.lm.bin";
constexpr const char* dictionary = "/usr/share/pocketsphinx/model/en-us/cmudict-en-us.dict";

// A decoder that learned more starts again from its dictionary.
constexpr std::size_t maximumLearnedWords = 1000;

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
  cmd_ln_t* settings =
      cmd_ln_init(nullptr, ps_args(), TRUE, "-hmm", acousticModel, "-lm", languageModel, "-dict",
                  dictionary, "-ds", "2", "-topn", "2", "-maxhmmpf", "3000", "-bestpath", "0",
                  "-cmn", "batch", "-logfn", "/dev/null", nullptr);
  if (settings) decoder_.reset(ps_init(settings));
  cmd_ln_free_r(settings);
  if (!decoder_)
    throw std::runtime_error("the speech model is missing (package pocketsphinx-en-us)");
}

bool Recogniser::knows(const std::string& word) const {
  char* phones = ps_lookup_word(decoder_.get(), word.c_str());
  std::free(phones);
  return phones != nullptr;
}

std::vector<Recogniser::NewWord> Recogniser::newWords(
    const std::vector<std::string>& vocabulary) const {
  std::vector<NewWord> words;
  for (const std::string& spelling : wordsOf(vocabulary)) {
    const std::string word = lowercased(spelling);
    if (knows(word)) continue;
    std::string phones = pronunciation_.phones(spelling);
    if (!phones.empty()) words.push_back({word, std::move(phones)});
  }
  return words;
}

void Recogniser::learn(const std::vector<NewWord>& words) {
  for (const NewWord& word : words) {
    // The search network is rebuilt once, with the last word.
    const int rebuild = &word == &words.back() ? TRUE : FALSE;
    if (ps_add_word(decoder_.get(), word.word.c_str(), word.phones.c_str(), rebuild) >= 0)
      ++learned_;
  }
}

std::string Recogniser::transcribe(std::span<const std::int16_t> samples,
                                   const std::vector<std::string>& vocabulary) {
  auto words = newWords(vocabulary);
  if (learned_ + words.size() > maximumLearnedWords && learned_ > 0) {
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
