// Spelling, on hunspell.
#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class Hunspell;

namespace quillo::service {

// Any thread.
class Dictionary {
 public:
  // `name` as "en_US". Throws std::runtime_error when it is not installed.
  explicit Dictionary(const std::string& name);
  ~Dictionary();

  bool knows(const std::string& word) const;
  // Words of like spelling; the likeliest slips first.
  std::vector<std::string> suggestions(const std::string& word) const;

 private:
  mutable std::mutex mutex_;  // the library keeps state even when it only looks up
  std::unique_ptr<Hunspell> hunspell_;
};

// The dictionaries of the languages that the service can spell.
class Dictionaries {
 public:
  Dictionaries();
  // By language code, as "es"; null for a language without one.
  const Dictionary* find(std::string_view language) const;
  const Dictionary& english() const { return english_; }

 private:
  Dictionary english_;
  Dictionary spanish_;
};

}  // namespace quillo::service
