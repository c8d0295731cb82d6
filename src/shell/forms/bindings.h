// Settings and published values as what rows are bound to. Each outlives its form.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "shell/forms/description.h"
#include "state/list_setting.h"

namespace quillo::forms {

// `Source` is a Published or a Setting.
template <class Source>
Watch watch(const Source& source) {
  return [&source](std::function<void()> changed) {
    return source.observe([changed = std::move(changed)](const auto&) { changed(); });
  };
}

template <class Source>
auto bind(Source& source) {
  using Value = std::remove_cvref_t<decltype(source.get())>;
  return Binding<Value>{[&source] { return source.get(); },
                        [&source](Value value) { source = std::move(value); }, watch(source)};
}

// The values of the options are whole numbers.
Binding<std::string> bindNumber(Setting<std::int64_t>& setting);

// Adding goes by the setting's own rule.
List listOf(ListSetting<std::string>& setting, Column column,
            std::function<void(const std::string&)> add);
// The columns' ids are the keys of the dictionaries.
List listOf(DictionaryList& setting, std::vector<Column> columns,
            std::function<void(const std::vector<std::string>&)> add);

}  // namespace quillo::forms
