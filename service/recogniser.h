// English speech to words, on pocketsphinx.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "service/pronunciation.h"

struct ps_decoder_s;
struct ngram_model_s;

namespace quillo::service {

// Holds about 100 MB and takes half a second to make. One thread at a time.
class Recogniser {
 public:
  // `pronunciation` outlives this object. Throws std::runtime_error when the model is missing.
  explicit Recogniser(Pronunciation& pronunciation);
  ~Recogniser();

  // Lower-case words without punctuation; empty when no speech was heard. `samples` at 16 kHz.
  // The words of `vocabulary` are learned first, and stay known to this recogniser.
  std::string transcribe(std::span<const std::int16_t> samples,
                         const std::vector<std::string>& vocabulary);

 private:
  struct NewWord {
    std::string word;
    std::string phones;
  };

  void load();
  bool knows(const std::string& word) const;
  std::vector<NewWord> newWords(const std::vector<std::string>& vocabulary) const;
  void learn(const std::vector<NewWord>& words);
  std::string recognise(std::span<const std::int16_t> utterance);

  Pronunciation& pronunciation_;
  std::unique_ptr<ps_decoder_s, int (*)(ps_decoder_s*)> decoder_;
  ngram_model_s* languageModel_ = nullptr;  // the decoder's
  std::size_t learned_ = 0;
};

}  // namespace quillo::service
