#include "service/dictionary.h"

#include <filesystem>
#include <hunspell.hxx>
#include <stdexcept>

namespace quillo::service {
namespace {

constexpr std::string_view folder = "/usr/share/hunspell/";

}  // namespace

Dictionary::Dictionary(const std::string& name) {
  const std::string stem = std::string(folder) + name;
  // The library itself takes a missing file for an empty dictionary.
  if (!std::filesystem::exists(stem + ".dic"))
    throw std::runtime_error("the dictionary " + name + " is not installed");
  hunspell_ = std::make_unique<Hunspell>((stem + ".aff").c_str(), (stem + ".dic").c_str());
}

Dictionary::~Dictionary() = default;

bool Dictionary::knows(const std::string& word) const {
  const std::lock_guard lock(mutex_);
  return hunspell_->spell(word);
}

std::vector<std::string> Dictionary::suggestions(const std::string& word) const {
  const std::lock_guard lock(mutex_);
  return hunspell_->suggest(word);
}

Dictionaries::Dictionaries() : english_("en_US"), spanish_("es_ES") {}

const Dictionary* Dictionaries::find(std::string_view language) const {
  if (language == "en") return &english_;
  if (language == "es") return &spanish_;
  return nullptr;
}

}  // namespace quillo::service
