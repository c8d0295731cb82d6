#include "hosts/simulated/editor.h"

#include <stdexcept>

#include "base/text.h"

namespace quillo::simulated {

void Editor::setText(std::string_view text) {
  text_ = text;
  moveCaretToEnd();
}

void Editor::select(std::string_view part) {
  const std::size_t at = text_.find(part);
  if (at == std::string::npos)
    throw std::invalid_argument("The editor has no text " + std::string(part));
  begin_ = at;
  end_ = at + part.size();
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
