#include "look_report.h"

#include <cstdio>

#include "base/text.h"

namespace quillo::look {
namespace {

constexpr std::size_t shownCharacters = 60;

std::string text(std::string_view whole, Texts texts) {
  const std::size_t count = characterCount(whole);
  if (texts == Texts::lengthsOnly) return std::to_string(count) + " characters";
  return '"' + prefixCharacters(whole, shownCharacters) + (count > shownCharacters ? "…\"" : "\"");
}

std::string rectangle(const Rect& rect) {
  char buffer[96];
  std::snprintf(buffer, sizeof buffer, "%g,%g %gx%g", rect.origin.x, rect.origin.y, rect.size.width,
                rect.size.height);
  return buffer;
}

std::string cost(const Cost& cost) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%llu calls, %.2f ms",
                static_cast<unsigned long long>(cost.calls), cost.milliseconds);
  return buffer;
}

void line(std::string& report, std::string_view name, std::string_view value) {
  constexpr std::size_t column = 24;
  report += "  " + std::string(name);
  report.append(name.size() < column ? column - name.size() : 1, ' ');
  report += std::string(value) + '\n';
}

std::string range(const TextRange& range) {
  return std::to_string(range.location) + '+' + std::to_string(range.length);
}

}  // namespace

std::string report(const Look& look, Texts texts) {
  std::string report = look.application + "  process " + std::to_string(look.processIdentifier);
  report += "  window " + (look.window ? text(*look.window, texts) : "unknown") + '\n';
  if (!look.hasFocus) report += "nothing is focused, as far as is told\n";
  for (const auto& [name, value] : look.attributes) line(report, name, value);
  if (!look.ancestors.empty()) line(report, "in", joined(look.ancestors, " < "));
  for (const auto& [predicate, verdict] : look.verdicts) {
    line(report, predicate,
         std::string(verdict ? "yes" : "no") + " (" + std::string(verdict.because) + ')');
  }
  if (look.selection) {
    line(report, "selection",
         range(*look.selection) + ' ' + text(look.selectedText.value_or(""), texts));
    line(report, "its rectangle", look.selectionRect ? rectangle(*look.selectionRect) : "not told");
  }
  if (look.paragraph) {
    line(report, "paragraph", range(*look.paragraph) + ' ' + text(look.paragraphText, texts));
  }
  line(report, "all predicates", cost(look.deciding));
  line(report, "at once again", cost(look.decidingAgain));
  return report;
}

Json reportAsJson(const Look& look, Texts texts) {
  Json json;
  json["application"] = look.application;
  json["window"] = look.window ? Json(text(*look.window, texts)) : Json(nullptr);
  json["focused"] = look.hasFocus;
  for (const auto& [name, value] : look.attributes) json["attributes"][name] = value;
  json["ancestors"] = look.ancestors;
  for (const auto& [predicate, verdict] : look.verdicts) {
    json["verdicts"][std::string(predicate)] = {{"holds", verdict.holds},
                                                {"because", std::string(verdict.because)}};
  }
  json["selection"] = look.selection ? Json(range(*look.selection)) : Json(nullptr);
  json["selectionRect"] = look.selectionRect ? Json(rectangle(*look.selectionRect)) : Json(nullptr);
  json["paragraph"] = look.paragraph ? Json(text(look.paragraphText, texts)) : Json(nullptr);
  json["calls"] = look.deciding.calls;
  json["milliseconds"] = look.deciding.milliseconds;
  json["callsAgain"] = look.decidingAgain.calls;
  json["millisecondsAgain"] = look.decidingAgain.milliseconds;
  return json;
}

std::string gist(const Look& look) {
  Json json = reportAsJson(look, Texts::shown);
  for (const char* name :
       {"calls", "milliseconds", "callsAgain", "millisecondsAgain", "selectionRect"}) {
    json.erase(name);
  }
  return json.dump();
}

}  // namespace quillo::look
