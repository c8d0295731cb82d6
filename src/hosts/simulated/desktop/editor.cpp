#include "hosts/simulated/desktop/editor.h"

#include <algorithm>
#include <stdexcept>

#include "base/text.h"

namespace quillo::simulated {
namespace {

// Of the scalar that begins with this byte; a byte within one has no units.
std::int64_t utf16Units(char byte) {
  const auto value = static_cast<unsigned char>(byte);
  if ((value & 0xC0) == 0x80) return 0;
  return value >= 0xF0 ? 2 : 1;
}

std::size_t scalarSize(char lead) {
  const auto value = static_cast<unsigned char>(lead);
  if (value < 0xC0) return 1;
  return value < 0xE0 ? 2 : value < 0xF0 ? 3 : 4;
}

}  // namespace

void Editor::setText(std::string_view text) {
  text_ = text;
  moveCaretToEnd();
}

std::size_t Editor::find(std::string_view part) const {
  const std::size_t at = text_.find(part);
  if (at == std::string::npos)
    throw std::invalid_argument("The editor has no text " + std::string(part));
  return at;
}

void Editor::select(std::string_view part) {
  begin_ = find(part);
  end_ = begin_ + part.size();
}

void Editor::select(TextRange range) {
  const std::int64_t first = std::max<std::int64_t>(range.location, 0);
  const std::int64_t last = first + std::clamp<std::int64_t>(range.length, 0, utf16Length());
  std::int64_t units = 0;
  begin_ = end_ = text_.size();
  for (std::size_t at = 0; at < text_.size(); at += scalarSize(text_[at])) {
    const std::int64_t next = units + utf16Units(text_[at]);
    if (first < next && at < begin_) begin_ = at;
    if (last <= units) {
      end_ = std::max(at, begin_);
      return;
    }
    units = next;
  }
}

void Editor::moveCaretBefore(std::string_view part) {
  begin_ = end_ = find(part);
}

void Editor::trimSelection() {
  const std::string kept = trimmed(selectedText());
  if (!kept.empty()) begin_ += selectedText().find(kept);
  end_ = begin_ + kept.size();
}

std::int64_t Editor::utf16Count(std::size_t bytes) const {
  std::int64_t units = 0;
  for (std::size_t at = 0; at < bytes; ++at) units += utf16Units(text_[at]);
  return units;
}

TextRange Editor::selection() const {
  const std::int64_t location = utf16Count(begin_);
  return {location, utf16Count(end_) - location};
}

void Editor::selectAll() {
  begin_ = 0;
  end_ = text_.size();
}

void Editor::moveCaretToEnd() {
  begin_ = end_ = text_.size();
}

void Editor::insert(std::string_view text) {
  text_.replace(begin_, end_ - begin_, text);
  begin_ = end_ = begin_ + text.size();
}

void Editor::deleteBackward() {
  if (begin_ == end_)
    begin_ = dropLastCharacters(std::string_view(text_).substr(0, end_), 1).size();
  insert("");
}

}  // namespace quillo::simulated
