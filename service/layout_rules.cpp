#include "service/layout_rules.h"

#include "base/text.h"
#include "service/sentence_rules.h"

namespace quillo::service {
namespace {

constexpr std::size_t sentencesInParagraph = 3;

bool isBulletLine(std::string_view line) {
  return line.starts_with("- ") || line.starts_with("* ") || line.starts_with("• ");
}

std::vector<std::string> lines(std::string_view text) {
  std::vector<std::string> all;
  for (const std::string& line : split(text, '\n'))
    if (!isBlank(line)) all.push_back(trimmed(line));
  return all;
}

// Of one line.
std::vector<std::string> sentences(std::string_view line) {
  const Pieces pieces = piecesOf(line);
  const auto starts = sentenceStarts(pieces);
  std::vector<std::string> all;
  for (std::size_t i = 0; i < starts.size(); ++i) {
    // A mark that opens a sentence stands before its first word, behind the last blank.
    const auto opening = [&](std::ptrdiff_t start) {
      while (start > 0 && pieces[start - 1].kind == PieceKind::mark) --start;
      return start;
    };
    const std::ptrdiff_t begin = i == 0 ? 0 : opening(starts[i]);
    const std::ptrdiff_t end = i + 1 < starts.size() ? opening(starts[i + 1]) : std::ssize(pieces);
    all.push_back(trimmed(textOf(Pieces(pieces.begin() + begin, pieces.begin() + end))));
  }
  return all;
}

std::string inParagraphs(std::string_view text) {
  if (text.find('\n') != std::string_view::npos) return std::string(text);
  std::string out;
  std::size_t count = 0;
  for (const std::string& sentence : sentences(text)) {
    if (count > 0) out += count % sentencesInParagraph == 0 ? "\n\n" : " ";
    out += sentence;
    ++count;
  }
  return out;
}

std::string asBullet(std::string_view sentence) {
  const bool onePoint = sentence.ends_with('.') && !sentence.ends_with("..");
  return "- " + std::string(onePoint ? sentence.substr(0, sentence.size() - 1) : sentence);
}

std::string inBullets(std::string_view text) {
  std::vector<std::string> bullets;
  for (const std::string& line : lines(text)) {
    if (isBulletLine(line)) {
      bullets.push_back(line);
      continue;
    }
    for (const std::string& sentence : sentences(line)) bullets.push_back(asBullet(sentence));
  }
  return joined(bullets, "\n");
}

}  // namespace

std::string laidOut(std::string_view text, Layout layout) {
  switch (layout) {
    case Layout::asItIs:
      return std::string(text);
    case Layout::paragraphs:
      return inParagraphs(text);
    case Layout::bullets:
      return inBullets(text);
    case Layout::oneBlock:
      return joined(lines(text), " ");
  }
  return std::string(text);
}

}  // namespace quillo::service
