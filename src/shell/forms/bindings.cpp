#include "shell/forms/bindings.h"

#include <charconv>

namespace quillo::forms {

Binding<std::string> bindNumber(Setting<std::int64_t>& setting) {
  return {[&setting] { return std::to_string(setting.get()); },
          [&setting](const std::string& text) {
            std::int64_t number = 0;
            const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
            if (read.ec == std::errc()) setting = number;
          },
          watch(setting)};
}

List listOf(ListSetting<std::string>& setting, Column column,
            std::function<void(const std::string&)> add) {
  return {.columns = {std::move(column)},
          .elements =
              [&setting] {
                std::vector<std::vector<std::string>> elements;
                for (const std::string& text : setting.get()) elements.push_back({text});
                return elements;
              },
          .add = [add = std::move(add)](const auto& columns) { add(columns.front()); },
          .remove = [&setting](std::size_t index) { setting.removeEntry(index); },
          .watch = watch(setting)};
}

List listOf(DictionaryList& setting, std::vector<Column> columns,
            std::function<void(const std::vector<std::string>&)> add) {
  auto elements = [&setting, columns] {
    std::vector<std::vector<std::string>> texts;
    for (const TextDictionary& entry : setting.get()) {
      auto& parts = texts.emplace_back();
      for (const Column& column : columns) parts.emplace_back(textUnder(entry, column.id));
    }
    return texts;
  };
  return {.columns = std::move(columns),
          .elements = std::move(elements),
          .add = std::move(add),
          .remove = [&setting](std::size_t index) { setting.removeEntry(index); },
          .watch = watch(setting)};
}

}  // namespace quillo::forms
