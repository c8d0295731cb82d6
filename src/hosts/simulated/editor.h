// The text field of a program: a text with a selection, or a caret where it is empty.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillo::simulated {

class Editor {
 public:
  const std::string& text() const { return text_; }
  std::string selectedText() const { return text_.substr(begin_, end_ - begin_); }

  // Replaces everything; the caret goes to the end.
  void setText(std::string_view text);
  // Selects the first place where `part` stands; throws when it stands nowhere.
  void select(std::string_view part);
  void selectAll();
  void moveCaretToEnd();

  // Replaces the selection; the caret goes behind the new text.
  void insert(std::string_view text);
  // Removes the selection, or the character before the caret.
  void deleteBackward();

 private:
  std::string text_;
  // Bytes of the text.
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
};

}  // namespace quillo::simulated
