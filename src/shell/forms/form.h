// A form as it is now.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "shell/forms/description.h"

namespace quillo::forms {

// What a row shows. A member that the row's kind has no use for is empty.
struct RowState {
  bool isVisible = true;
  bool isEnabled = true;
  Words help;
  Words error;
  ControlValue value;
  std::vector<ControlOption> options;
  std::vector<std::vector<std::string>> elements;
  std::vector<std::string> draft;  // of a new element, a text a column
  Words text;                      // of a note
  NoteTone tone = NoteTone::plain;

  // Whether the draft has something to add.
  bool canAdd() const { return !draft.empty() && !draft.front().empty(); }
  friend bool operator==(const RowState&, const RowState&) = default;
};

// Its controls are those of its visible rows. A list "terms" with the column "term" has the field
// "terms.new.term", the button "terms.add", and for its first element "terms.0.remove".
class Form final : public Content {
 public:
  explicit Form(Description description);
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  const Description& description() const { return description_; }
  RowState stateOf(const Section& section, const Row& row) const;
  // Calls `changed` whenever the state of a row may have changed.
  [[nodiscard]] Subscription observe(std::function<void()> changed) const;

  static constexpr std::string_view name = "form";
  std::string_view viewName() const override { return name; }
  std::vector<Words> texts() const override;
  std::vector<Control> controls() const override;

 private:
  using Draft = Published<std::vector<std::string>>;

  void watchRow(const Row& row);
  std::vector<Control> controlsOf(const Row& row, const RowState& state) const;
  std::vector<Control> listControls(const Row& row, const List& list, const RowState& state) const;

  Description description_;
  std::map<std::string, std::shared_ptr<Draft>> drafts_;  // by the list's id
  Published<std::monostate> changed_;
  std::vector<Subscription> subscriptions_;
};

// How an element is read: "cheque → check".
std::string readable(const std::vector<std::string>& columns);

}  // namespace quillo::forms
