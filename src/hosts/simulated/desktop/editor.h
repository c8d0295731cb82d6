// The text field of a program: a text with a selection, or a caret where it is empty.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/accessibility.h"

namespace quillo::simulated {

class Editor {
 public:
  const std::string& text() const { return text_; }
  std::string selectedText() const { return text_.substr(begin_, end_ - begin_); }
  TextRange selection() const;
  std::int64_t utf16Length() const { return utf16Count(text_.size()); }

  // Replaces everything; the caret goes to the end.
  void setText(std::string_view text);
  // Selects the first place where `part` stands; throws when it stands nowhere.
  void select(std::string_view part);
  // What of `range` lies in the text, grown to whole scalars.
  void select(TextRange range);
  void selectAll();
  void moveCaretToEnd();
  // Before the first place where `part` stands; throws when it stands nowhere.
  void moveCaretBefore(std::string_view part);
  // Takes blanks and newlines at its ends out of the selection.
  void trimSelection();

  // Replaces the selection; the caret goes behind the new text.
  void insert(std::string_view text);
  // Removes the selection, or the character before the caret.
  void deleteBackward();

 private:
  std::size_t find(std::string_view part) const;
  std::int64_t utf16Count(std::size_t bytes) const;

  std::string text_;
  // Bytes of the text.
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
};

}  // namespace quillo::simulated
