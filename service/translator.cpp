#include "service/translator.h"

#include <array>
#include <charconv>
#include <filesystem>
#include <stdexcept>

#include "base/text.h"
#include "service/subprocess.h"

namespace quillo::service {
namespace {

constexpr const char* modes = "/usr/share/apertium/modes/";
constexpr std::chrono::seconds limit{30};

// The engine names its pairs by three letters (ISO 639-3).
struct LanguageCode {
  std::string_view two;
  std::string_view three;
};
constexpr std::array languageCodes{
    LanguageCode{"ca", "cat"}, LanguageCode{"da", "dan"}, LanguageCode{"de", "deu"},
    LanguageCode{"en", "eng"}, LanguageCode{"es", "spa"}, LanguageCode{"fr", "fra"},
    LanguageCode{"gl", "glg"}, LanguageCode{"it", "ita"}, LanguageCode{"nb", "nob"},
    LanguageCode{"pl", "pol"}, LanguageCode{"pt", "por"}, LanguageCode{"ro", "ron"},
    LanguageCode{"ru", "rus"}, LanguageCode{"sv", "swe"}, LanguageCode{"uk", "ukr"},
};

std::string_view threeLetters(std::string_view language) {
  for (const LanguageCode& code : languageCodes)
    if (code.two == language) return code.three;
  return {};
}

std::string modeOf(std::string_view from, std::string_view to) {
  return std::string(threeLetters(from)) + "-" + std::string(threeLetters(to));
}

// The engine passes words that it does not know, so a term travels as one.
std::string placeholder(std::size_t index) {
  return "XQZ" + std::to_string(index) + "X";
}

const Regex& placeholderPattern() {
  static const Regex pattern = *Regex::compile(R"(XQZ\d+X)", Regex::Case::sensitive);
  return pattern;
}

struct Shipment {
  std::string text;
  std::vector<Piece> terms;
};

Shipment shipmentOf(const Pieces& pieces) {
  Shipment shipment;
  for (const Piece& piece : pieces) {
    if (piece.kind == PieceKind::term) {
      shipment.text += placeholder(shipment.terms.size());
      shipment.terms.push_back(piece);
    } else {
      shipment.text += piece.text;
    }
  }
  return shipment;
}

std::size_t indexIn(std::string_view placeholderText) {
  std::size_t index = 0;
  const std::string_view digits = placeholderText.substr(3, placeholderText.size() - 4);
  std::from_chars(digits.data(), digits.data() + digits.size(), index);
  return index;
}

Pieces unpacked(std::string_view text, const std::vector<Piece>& terms) {
  Pieces pieces;
  std::size_t begin = 0;
  std::size_t found = 0;
  for (const Regex::Range match : placeholderPattern().matches(text)) {
    const std::size_t index = indexIn(text.substr(match.begin, match.end - match.begin));
    if (index >= terms.size()) continue;
    append(pieces, piecesOf(text.substr(begin, match.begin - begin)));
    pieces.push_back(terms[index]);
    begin = match.end;
    ++found;
  }
  append(pieces, piecesOf(text.substr(begin)));
  if (found < terms.size()) throw std::runtime_error("the translation lost a term");
  return pieces;
}

}  // namespace

bool Translator::translates(std::string_view from, std::string_view to) const {
  return std::filesystem::exists(modes + modeOf(from, to) + ".mode");
}

Pieces Translator::translated(const Pieces& text, std::string_view from,
                              std::string_view to) const {
  const Shipment shipment = shipmentOf(text);
  free_.acquire();
  struct Release {
    std::counting_semaphore<atOnce>& semaphore;
    ~Release() { semaphore.release(); }
  } const release{free_};
  return unpacked(outputOf({"apertium", "-u", modeOf(from, to)}, shipment.text, limit),
                  shipment.terms);
}

}  // namespace quillo::service
