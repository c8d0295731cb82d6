// How an English word is spoken, guessed by the lexicon and letter-to-sound rules of flite.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace quillo::service {

class Pronunciation {
 public:
  Pronunciation();

  // The phones of the recogniser's dictionary (ARPAbet without stress), as "D IH B IY AH N".
  // A word in capitals is spelled out, as "USB". Empty for what has no letters of English. Any
  // thread.
  std::string phones(std::string_view word);

  // Whether the word begins with the sound of a vowel, as "hour" and "MP" do.
  bool beginsWithVowelSound(std::string_view word);

 private:
  std::string lookUp(const std::string& word);
  std::string guess(const std::string& word);

  std::mutex mutex_;  // the library makes no promise for threads
  std::map<std::string, std::string, std::less<>> guessed_;
};

}  // namespace quillo::service
