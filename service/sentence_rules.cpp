#include "service/sentence_rules.h"

#include <array>

#include "base/text.h"

namespace quillo::service {
namespace {

constexpr std::array<std::string_view, 4> endMarks{".", "!", "?", "…"};
constexpr std::array<std::string_view, 11> closingMarks{")", "]", "}", "\"", "'", "”",
                                                        "’", "»", "*", "_",  "›"};
constexpr std::array<std::string_view, 4> bulletMarks{"-", "*", "•", "–"};
constexpr std::array<std::string_view, 4> marksWithoutBlankBefore{",", ";", "!", "?"};

constexpr std::array<std::string_view, 13> abbreviations{
    "mr", "mrs", "ms", "dr", "prof", "st", "vs", "etc", "approx", "dept", "fig", "inc", "ltd"};

constexpr std::array<std::string_view, 9> questionWords{"what",  "when", "where", "who", "whom",
                                                        "whose", "why",  "which", "how"};
constexpr std::array<std::string_view, 18> auxiliaries{
    "is",    "are",  "am",    "was",    "were", "do",  "does", "did", "can",
    "could", "will", "would", "should", "have", "has", "had",  "may", "shall"};
constexpr std::array<std::string_view, 11> subjects{"i",    "you",  "he",   "she",   "it", "we",
                                                    "they", "this", "that", "there", "the"};

bool isAbbreviation(const Piece& piece) {
  const std::string text = lowercased(piece.text);
  if (piece.kind == PieceKind::fixed)  // "e.g", "a.m"
    return text.size() <= 5 && text.find('.') != std::string::npos &&
           text.find_first_of("0123456789") == std::string::npos;
  return piece.isWord() && (isOneOf(text, abbreviations) || (text.size() == 1 && text != "i"));
}

bool isEndMark(const Piece& piece) {
  return piece.kind == PieceKind::mark && isOneOf(piece.text, endMarks);
}

// A list item's mark at the start of a line.
bool isBullet(const Pieces& pieces, std::ptrdiff_t index) {
  const bool lineStart = index == 0 || pieces[index - 1].kind == PieceKind::lineBreak;
  return lineStart && pieces[index].kind == PieceKind::mark &&
         isOneOf(pieces[index].text, bulletMarks);
}

// Follows the text piece by piece and says where a sentence may begin.
class SentenceScanner {
 public:
  explicit SentenceScanner(const Pieces& pieces) : pieces_(pieces) {}

  // To be asked for each piece in turn: whether a sentence begins with it.
  bool startsSentence(std::ptrdiff_t index) {
    const Piece& piece = pieces_[index];
    switch (piece.kind) {
      case PieceKind::word:
      case PieceKind::fixed:
      case PieceKind::term:
        return takeContent();
      case PieceKind::mark:
        takeMark(index);
        return false;
      case PieceKind::space:
        takeSpace();
        return false;
      case PieceKind::lineBreak:
        takeBreak(index);
        return false;
    }
    return false;
  }

 private:
  bool takeContent() {
    const bool starts = expecting_;
    expecting_ = ended_ = false;
    return starts;
  }
  void takeMark(std::ptrdiff_t index) {
    const Piece& mark = pieces_[index];
    if (isBullet(pieces_, index)) {
      expecting_ = true;
    } else if (isEndMark(mark)) {
      const bool abbreviated = mark.text == "." && index > 0 && isAbbreviation(pieces_[index - 1]);
      ended_ = !abbreviated;
    } else if (!isOneOf(mark.text, closingMarks)) {
      ended_ = false;
    }
  }
  void takeSpace() { expecting_ = expecting_ || ended_; }
  void takeBreak(std::ptrdiff_t index) {
    const bool blankLine = index > 0 && pieces_[index - 1].kind == PieceKind::lineBreak;
    expecting_ = expecting_ || ended_ || blankLine;
  }

  const Pieces& pieces_;
  bool expecting_ = true;
  bool ended_ = false;
};

std::ptrdiff_t lastOf(const Pieces& pieces) {
  std::ptrdiff_t last = std::ssize(pieces) - 1;
  while (last >= 0 &&
         (pieces[last].kind == PieceKind::space || pieces[last].kind == PieceKind::lineBreak))
    --last;
  return last;
}

bool isAddress(const Piece& piece) {
  return piece.kind == PieceKind::fixed && piece.text.find_first_of(":@/`") != std::string::npos;
}

// How far behind a question word its verb may stand, as in "how many people are there".
constexpr int furthestVerb = 3;

std::string wordAt(const Pieces& pieces, std::ptrdiff_t index) {
  return index < std::ssize(pieces) ? lowercased(pieces[index].text) : std::string();
}

// A verb before its subject, or a question word with its verb right behind it or before a subject.
bool asks(const Pieces& pieces, std::ptrdiff_t start) {
  const std::string first = wordAt(pieces, start);
  std::ptrdiff_t verb = nextContent(pieces, start + 1);
  if (isOneOf(first, auxiliaries)) return isOneOf(wordAt(pieces, verb), subjects);
  if (!isOneOf(first, questionWords)) return false;
  if (isOneOf(wordAt(pieces, verb), auxiliaries)) return true;
  for (int place = 1; place < furthestVerb; ++place) {
    verb = nextContent(pieces, verb + 1);
    const std::string behind = wordAt(pieces, nextContent(pieces, verb + 1));
    if (isOneOf(wordAt(pieces, verb), auxiliaries) && isOneOf(behind, subjects)) return true;
  }
  return false;
}

struct SpokenMark {
  std::string_view first;
  std::string_view second;
  std::string_view mark;  // line feeds are breaks
};
constexpr std::array spokenMarks{
    SpokenMark{"new", "line", "\n"},         SpokenMark{"new", "paragraph", "\n\n"},
    SpokenMark{"question", "mark", "?"},     SpokenMark{"exclamation", "mark", "!"},
    SpokenMark{"exclamation", "point", "!"}, SpokenMark{"full", "stop", "."},
};

const SpokenMark* spokenMarkAt(const Pieces& pieces, std::ptrdiff_t index, std::ptrdiff_t second) {
  if (!pieces[index].isWord() || second >= std::ssize(pieces) || !pieces[second].isWord() ||
      !onlySpaceBetween(pieces, index, second))
    return nullptr;
  for (const SpokenMark& spoken : spokenMarks)
    if (spoken.first == lowercased(pieces[index].text) &&
        spoken.second == lowercased(pieces[second].text))
      return &spoken;
  return nullptr;
}

void dropTrailingSpaces(Pieces& pieces) {
  while (!pieces.empty() && pieces.back().kind == PieceKind::space) pieces.pop_back();
}

}  // namespace

std::vector<std::ptrdiff_t> sentenceStarts(const Pieces& pieces) {
  std::vector<std::ptrdiff_t> starts;
  SentenceScanner scanner(pieces);
  for (std::ptrdiff_t i = 0; i < std::ssize(pieces); ++i)
    if (scanner.startsSentence(i)) starts.push_back(i);
  return starts;
}

void capitaliseSentences(Pieces& pieces) {
  for (const std::ptrdiff_t start : sentenceStarts(pieces))
    if (pieces[start].isWord() && isLowercase(pieces[start].text))
      pieces[start].text = capitalisedFirst(pieces[start].text);
}

void endSentence(Pieces& pieces, std::string_view language) {
  const std::ptrdiff_t last = lastOf(pieces);
  if (last < 0 || !pieces[last].isContent() || isAddress(pieces[last])) return;
  const auto starts = sentenceStarts(pieces);
  const bool question = language == "en" && !starts.empty() && asks(pieces, starts.back());
  pieces.insert(pieces.begin() + last + 1, {PieceKind::mark, question ? "?" : "."});
}

void tidySpaces(Pieces& pieces) {
  Pieces tidy;
  bool indented = true;  // at the start of a line, where blanks have a meaning
  for (Piece& piece : pieces) {
    const bool space = piece.kind == PieceKind::space;
    if (space && !indented && !tidy.empty() && tidy.back().kind == PieceKind::space) continue;
    const bool clings =
        piece.kind == PieceKind::mark && isOneOf(piece.text, marksWithoutBlankBefore);
    if (!indented && (clings || piece.kind == PieceKind::lineBreak)) dropTrailingSpaces(tidy);
    const bool wantsBlank =
        piece.isWord() && !tidy.empty() && (tidy.back().isMark(",") || tidy.back().isMark(";"));
    if (wantsBlank) tidy.push_back({PieceKind::space, " "});
    indented = piece.kind == PieceKind::lineBreak || (indented && space);
    tidy.push_back(std::move(piece));
  }
  dropTrailingSpaces(tidy);
  pieces = std::move(tidy);
}

void openSpanishQuestions(Pieces& pieces) {
  const auto starts = sentenceStarts(pieces);
  for (auto start = starts.rbegin(); start != starts.rend(); ++start) {
    const std::ptrdiff_t end = start == starts.rbegin() ? std::ssize(pieces) : *std::prev(start);
    const auto mark = std::find_if(pieces.begin() + *start, pieces.begin() + end, isEndMark);
    if (mark == pieces.begin() + end) continue;
    const std::string_view opening = mark->text == "?" ? "¿" : mark->text == "!" ? "¡" : "";
    const bool opened = *start > 0 && pieces[*start - 1].isMark(opening);
    if (!opening.empty() && !opened)
      pieces.insert(pieces.begin() + *start, {PieceKind::mark, std::string(opening)});
  }
}

void obeySpokenMarks(Pieces& pieces) {
  Pieces obeyed;
  for (std::ptrdiff_t i = 0; i < std::ssize(pieces); ++i) {
    const std::ptrdiff_t second = nextContent(pieces, i + 1);
    const SpokenMark* spoken = spokenMarkAt(pieces, i, second);
    if (!spoken) {
      const bool afterBreak = !obeyed.empty() && obeyed.back().kind == PieceKind::lineBreak;
      if (afterBreak && pieces[i].kind == PieceKind::space) continue;
      obeyed.push_back(std::move(pieces[i]));
      continue;
    }
    dropTrailingSpaces(obeyed);
    const bool breaks = spoken->mark.front() == '\n';
    if (breaks) endSentence(obeyed, "en");
    for (const char c : spoken->mark)
      obeyed.push_back({breaks ? PieceKind::lineBreak : PieceKind::mark, std::string(1, c)});
    i = second;
  }
  pieces = std::move(obeyed);
}

}  // namespace quillo::service
