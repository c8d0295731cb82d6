#include "shell/forms/form.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace quillo::forms {
namespace {

template <class... Cases>
struct Match : Cases... {
  using Cases::operator()...;
};
template <class... Cases>
Match(Cases...) -> Match<Cases...>;

bool holds(const Condition& condition) {
  return !condition || condition();
}

// What else changes when a row of this kind does.
Watch watchOf(const Row::Kind& kind) {
  return std::visit(Match{[](const List& list) { return list.watch; },
                          [](const auto& row) -> Watch {
                            if constexpr (requires { row.value.watch; })
                              return row.value.watch;
                            else
                              return {};
                          }},
                    kind);
}

Words labelOf(const std::vector<ControlOption>& options, const std::string& value) {
  const auto option = std::ranges::find(options, value, &ControlOption::value);
  return option == options.end() ? asItStands(value) : option->label;
}

// What can be read of a row's value.
std::vector<Words> readableValue(const Row& row, const RowState& state) {
  std::vector<Words> texts;
  if (!state.text.empty()) texts.push_back(state.text);
  if (const auto* const value = std::get_if<std::string>(&state.value))
    texts.push_back(labelOf(state.options, *value));
  for (const auto& element : state.elements) texts.push_back(asItStands(readable(element)));
  const auto* const list = std::get_if<List>(&row.kind);
  if (list && state.elements.empty()) texts.push_back(list->emptyText);
  return texts;
}

}  // namespace

std::string readable(const std::vector<std::string>& columns) {
  std::string text;
  for (const std::string& column : columns)
    if (!column.empty()) text += (text.empty() ? "" : " → ") + column;
  return text;
}

Form::Form(Description description) : description_(std::move(description)) {
  for (const Watch& watch : description_.watches)
    subscriptions_.push_back(watch([this] { changed_ = std::monostate(); }));
  for (const Section& section : description_.sections)
    for (const Row& row : section.rows) watchRow(row);
}

void Form::watchRow(const Row& row) {
  const auto changed = [this](const auto&...) { changed_ = std::monostate(); };
  if (const Watch watch = watchOf(row.kind)) subscriptions_.push_back(watch(changed));
  const auto* const list = std::get_if<List>(&row.kind);
  if (!list) return;
  const auto draft = std::make_shared<Draft>(std::vector<std::string>(list->columns.size()));
  subscriptions_.push_back(draft->observe(changed));
  drafts_[row.id] = draft;
}

Subscription Form::observe(std::function<void()> changed) const {
  return changed_.observe([changed = std::move(changed)](const auto&) { changed(); });
}

RowState Form::stateOf(const Section& section, const Row& row) const {
  RowState state{.isVisible = holds(section.isVisible) && holds(row.isVisible),
                 .isEnabled = holds(row.isEnabled),
                 .help = row.help.now(),
                 .error = row.error.now()};
  const auto takeChoice = [&](const auto& choice) {
    state.value = choice.value.get();
    state.options = choice.options();
  };
  std::visit(Match{[&](const Toggle& toggle) { state.value = toggle.value.get(); },
                   [&](const Choice& choice) { takeChoice(choice); },
                   [&](const Shortcut& shortcut) { takeChoice(shortcut); },
                   [&](const Field& field) { state.value = field.value.get(); },
                   [&](const List& list) {
                     state.elements = list.elements();
                     state.draft = *drafts_.at(row.id);
                   },
                   [&](const Note& note) {
                     state.text = note.text.now();
                     if (note.tone) state.tone = note.tone();
                   },
                   [](const Level&) {}, [](const Button&) {}},
             row.kind);
  return state;
}

std::vector<Words> Form::texts() const {
  std::vector<Words> texts{description_.title};
  for (const Section& section : description_.sections) {
    if (!holds(section.isVisible)) continue;
    texts.push_back(section.title);
    for (const Row& row : section.rows) {
      const RowState state = stateOf(section, row);
      if (!state.isVisible) continue;
      texts.push_back(row.label);
      std::ranges::move(readableValue(row, state), std::back_inserter(texts));
      texts.insert(texts.end(), {state.help, state.error});
    }
  }
  std::erase(texts, Words());
  return texts;
}

std::vector<Control> Form::controls() const {
  std::vector<Control> controls;
  for (const Section& section : description_.sections)
    for (const Row& row : section.rows) {
      const RowState state = stateOf(section, row);
      if (!state.isVisible) continue;
      std::ranges::move(controlsOf(row, state), std::back_inserter(controls));
    }
  return controls;
}

std::vector<Control> Form::controlsOf(const Row& row, const RowState& state) const {
  const Words help = state.error.empty() ? state.help : state.error;
  Control control{.id = row.id,
                  .name = row.label,
                  .isEnabled = state.isEnabled,
                  .help = help,
                  .value = state.value,
                  .options = state.options};
  const auto holdText = [&](const Binding<std::string>& binding, ControlRole role) {
    control.role = role;
    control.change = [set = binding.set](const ControlValue& value) {
      if (const auto* const text = std::get_if<std::string>(&value)) set(*text);
    };
    return std::vector{control};
  };
  return std::visit(
      Match{[&](const Toggle& toggle) {
              control.role = ControlRole::toggle;
              control.change = [set = toggle.value.set](const ControlValue& value) {
                if (const bool* const isOn = std::get_if<bool>(&value)) set(*isOn);
              };
              control.press = [value = toggle.value] { value.set(!value.get()); };
              return std::vector{control};
            },
            [&](const Choice& choice) { return holdText(choice.value, ControlRole::choice); },
            [&](const Shortcut& choice) { return holdText(choice.value, ControlRole::choice); },
            [&](const Field& field) { return holdText(field.value, ControlRole::field); },
            [&](const Button& button) {
              control.name = button.title;
              control.press = button.press;
              control.key = button.key;
              return std::vector{control};
            },
            [&](const List& list) { return listControls(row, list, state); },
            [](const auto&) { return std::vector<Control>(); }},
      row.kind);
}

std::vector<Control> Form::listControls(const Row& row, const List& list,
                                        const RowState& state) const {
  const std::shared_ptr<Draft> draft = drafts_.at(row.id);
  std::vector<Control> controls;
  for (std::size_t i = 0; i < state.elements.size(); ++i)
    controls.push_back(
        {.id = row.id + "." + std::to_string(i) + ".remove",
         .name = words("Remove {what}", {{"what", asItStands(readable(state.elements[i]))}}),
         .press = [remove = list.remove, i] { remove(i); },
         .isEnabled = state.isEnabled});
  for (std::size_t i = 0; i < list.columns.size(); ++i)
    controls.push_back({.id = row.id + ".new." + list.columns[i].id,
                        .name = list.columns[i].label,
                        .role = ControlRole::field,
                        .isEnabled = state.isEnabled,
                        .value = state.draft[i],
                        .change = [draft, i](const ControlValue& value) {
                          auto columns = draft->get();
                          if (const auto* const text = std::get_if<std::string>(&value))
                            columns[i] = *text;
                          *draft = std::move(columns);
                        }});
  const auto addDraft = [draft, add = list.add] {
    const auto columns = draft->get();
    *draft = std::vector<std::string>(columns.size());
    add(columns);
  };
  controls.push_back({.id = row.id + ".add",
                      .name = words("Add"),
                      .press = addDraft,
                      .isEnabled = state.isEnabled && state.canAdd(),
                      .help = state.error});
  return controls;
}

}  // namespace quillo::forms
