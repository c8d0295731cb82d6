#include "hosts/linux/x11/clipboard/selection_representation.h"

#include <algorithm>
#include <charconv>

#include "base/text.h"

namespace quillo::linux_host {
namespace {

constexpr std::string_view utf8Target = "UTF8_STRING";
constexpr std::string_view latin1Target = "STRING";

constexpr std::string_view transferTargets[] = {"TARGETS",         "MULTIPLE", "TIMESTAMP",
                                                "SAVE_TARGETS",    "DELETE",   "INSERT_PROPERTY",
                                                "INSERT_SELECTION"};

// Clipboard managers of several desktops leave out what bears this hint.
const SelectionRepresentation secretHint{"x-kde-passwordManagerHint", "x-kde-passwordManagerHint",
                                         8, "secret"};

// The characters of ISO 8859-1 are the first 256 of Unicode.
std::string fromLatin1(std::string_view bytes) {
  std::u16string text;
  for (const char byte : bytes) text.push_back(static_cast<unsigned char>(byte));
  return fromUtf16(text);
}

std::string toLatin1(std::string_view text) {
  std::string result;
  for (const char32_t scalar : scalars(text)) {
    result.push_back(scalar < 0x100 ? static_cast<char>(scalar) : '?');
  }
  return result;
}

SelectionContent everyFormOf(const std::string& text) {
  return {{"UTF8_STRING", "UTF8_STRING", 8, text},
          {"text/plain;charset=utf-8", "text/plain;charset=utf-8", 8, text},
          {"text/plain", "text/plain", 8, text},
          {"TEXT", "UTF8_STRING", 8, text},
          {"STRING", "STRING", 8, toLatin1(text)}};
}

}  // namespace

std::string pasteboardType(const SelectionRepresentation& representation) {
  const auto& [target, type, format, bytes] = representation;
  if (target == utf8Target && type == utf8Target && format == 8) return pasteboardTypeString;
  if (type == target && format == 8) return target;
  return target + " [" + type + "/" + std::to_string(format) + "]";
}

SelectionRepresentation representationOf(std::string_view name) {
  const auto plain = [](std::string_view target) {
    return SelectionRepresentation{std::string(target), std::string(target), 8, {}};
  };
  if (name == pasteboardTypeString) return plain(utf8Target);
  const std::size_t bracket = name.rfind(" [");
  const std::size_t slash = name.rfind('/');
  if (!name.ends_with(']') || bracket == std::string_view::npos ||
      slash == std::string_view::npos || slash < bracket) {
    return plain(name);
  }
  int format = 0;
  const std::string_view digits = name.substr(slash + 1, name.size() - slash - 2);
  std::from_chars(digits.data(), digits.data() + digits.size(), format);
  if (format != 8 && format != 16 && format != 32) return plain(name);
  return {std::string(name.substr(0, bracket)),
          std::string(name.substr(bracket + 2, slash - bracket - 2)),
          format,
          {}};
}

bool isContentTarget(std::string_view target) {
  return !target.empty() && std::find(std::begin(transferTargets), std::end(transferTargets),
                                      target) == std::end(transferTargets);
}

std::vector<std::string> plainTextTargets() {
  return {"UTF8_STRING", "text/plain;charset=utf-8", "STRING"};
}

std::optional<std::string> plainText(const SelectionContent& content) {
  for (const std::string& target : plainTextTargets()) {
    for (const SelectionRepresentation& form : content) {
      if (form.target != target || form.format != 8) continue;
      return form.type == latin1Target ? fromLatin1(form.bytes) : form.bytes;
    }
  }
  return std::nullopt;
}

PasteboardRepresentations pasteboardRepresentations(SelectionContent content) {
  PasteboardRepresentations result;
  const bool hasText = std::any_of(content.begin(), content.end(), [](const auto& form) {
    return pasteboardType(form) == pasteboardTypeString;
  });
  if (!hasText) {
    if (auto text = plainText(content)) result.emplace_back(pasteboardTypeString, std::move(*text));
  }
  for (SelectionRepresentation& form : content) {
    std::string type = pasteboardType(form);
    result.emplace_back(std::move(type), std::move(form.bytes));
  }
  return result;
}

SelectionContent selectionContent(const PasteboardItem& item) {
  const auto& forms = item.representations;
  SelectionContent content;
  if (forms.size() == 1 && forms.front().first == pasteboardTypeString) {
    content = everyFormOf(forms.front().second);
  } else {
    for (const auto& [type, bytes] : forms) {
      SelectionRepresentation form = representationOf(type);
      form.bytes = bytes;
      content.push_back(std::move(form));
    }
  }
  if (item.use == ClipboardUse::lent) content.push_back(secretHint);
  return content;
}

}  // namespace quillo::linux_host
