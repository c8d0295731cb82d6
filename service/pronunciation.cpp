#include "service/pronunciation.h"

extern "C" {
#include <flite/flite.h>
cst_lexicon* cmu_lex_init(void);
}

#include <cctype>

#include "base/text.h"

namespace quillo::service {
namespace {

constexpr std::size_t maximumLetters = 40;
constexpr std::size_t longestSpelledOut = 5;
constexpr std::size_t maximumGuesses = 20'000;
constexpr std::string_view vowelLetters = "AEIOU";  // every vowel phone begins with one of them

bool isAsciiLetter(char c) {
  return std::isalpha(static_cast<unsigned char>(c)) && (c & 0x80) == 0;
}

bool isSpeakable(std::string_view word) {
  return !word.empty() && word.size() <= maximumLetters && isAsciiLetter(word.front()) &&
         std::all_of(word.begin(), word.end(),
                     [](char c) { return isAsciiLetter(c) || c == '\''; });
}

bool isSpelledOut(std::string_view word) {
  return word.size() >= 2 && word.size() <= longestSpelledOut &&
         std::all_of(word.begin(), word.end(), [](char c) { return c >= 'A' && c <= 'Z'; });
}

// flite's "ih1" is the dictionary's "IH", and its reduced vowel "ax0" the dictionary's "AH".
std::string dictionaryPhone(std::string phone) {
  if (std::isdigit(static_cast<unsigned char>(phone.back()))) phone.pop_back();
  return phone == "ax" ? "AH" : uppercased(phone);
}

}  // namespace

Pronunciation::Pronunciation() {
  flite_init();
}

std::string Pronunciation::phones(std::string_view word) {
  if (!isSpeakable(word)) return {};
  const std::lock_guard lock(mutex_);
  if (!isSpelledOut(word)) return lookUp(lowercased(word));
  std::vector<std::string> letters;
  for (const char letter : word) letters.push_back(lookUp(std::string(1, letter)));
  return joined(letters, " ");
}

bool Pronunciation::beginsWithVowelSound(std::string_view word) {
  const std::string spoken = phones(word);
  return !spoken.empty() && vowelLetters.find(spoken.front()) != std::string_view::npos;
}

std::string Pronunciation::lookUp(const std::string& word) {
  const auto known = guessed_.find(word);
  if (known != guessed_.end()) return known->second;
  if (guessed_.size() >= maximumGuesses) guessed_.clear();
  return guessed_.emplace(word, guess(word)).first->second;
}

std::string Pronunciation::guess(const std::string& word) {
  const std::string lower = lowercased(word);
  // The article "a" is spoken otherwise than the letter.
  if (word == "A") return "EY";
  cst_val* list = lex_lookup(cmu_lex_init(), lower.c_str(), nullptr, nullptr);
  std::vector<std::string> phones;
  for (const cst_val* item = list; item; item = val_cdr(item))
    phones.push_back(dictionaryPhone(val_string(val_car(item))));
  delete_val(list);
  return joined(phones, " ");
}

}  // namespace quillo::service
