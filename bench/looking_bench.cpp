// What a look at a field of another application costs the program itself.
#include <benchmark/benchmark.h>

#include "hosts/simulated/simulated_desktop.h"
#include "insertion/classification/field_classification.h"
#include "insertion/classification/phrase_expression.h"
#include "insertion/classification/window_classification.h"

namespace quillo {
namespace {

using simulated::TreeElement;

// 500 characters in which no phrase is, though many begin like one.
std::string hints() {
  std::string text;
  while (text.size() < 500) text += "naming dateline søkbar searchable e-mailing übersicht ";
  return text.substr(0, text.find_last_of(' ', 500));
}

// Both expressions.
void BM_PhraseExpressions(benchmark::State& state) {
  const std::string text = hints();
  for (auto _ : state) {
    benchmark::DoNotOptimize(nonProseExpression().matches(text));
    benchmark::DoNotOptimize(writingExpression().matches(text));
  }
}
BENCHMARK(BM_PhraseExpressions)->Unit(benchmark::kMicrosecond);

// All that is asked about one field: its window, whether it is protected, whether one writes there,
// and for what. The field lies eight levels deep in a page.
void BM_Decision(benchmark::State& state) {
  simulated::SimulatedDesktop desktop;
  simulated::SimulatedApplication& browser =
      desktop.workspace().launch({"com.google.Chrome", "Compose - Chrome"});
  TreeElement* element = browser.tree().mainWindow();
  for (int level = 0; level < 7; ++level)
    element = &element->add({.role = "AXGroup", .frame = element->frame()});
  element = &element->add({.role = "AXTextField",
                           .frame = {{200, 200}, {400, 24}},
                           .editor = std::make_shared<simulated::Editor>(),
                           .attributes = {{"AXPlaceholderValue", "Write a comment"},
                                          {"AXDOMIdentifier", "reply-box"},
                                          {"AXTitle", "Comment"}}});
  browser.tree().focus(element);
  const FieldClassification fields(desktop.accessibility(), desktop.screens());
  const WindowClassification windows(desktop.accessibility(), desktop.workspace(),
                                     desktop.application(), desktop.log());
  const AccessibilityElement handle = element->handle();
  const std::int64_t before = desktop.accessibility().calls();
  for (auto _ : state) {
    benchmark::DoNotOptimize(windows.isNonWritingDialog());
    benchmark::DoNotOptimize(fields.isSensitiveContext(handle));
    benchmark::DoNotOptimize(fields.isWritingContext(handle));
    benchmark::DoNotOptimize(fields.isNonProseField(handle));
    benchmark::DoNotOptimize(
        fields.isBadgeEligibleField(handle, "com.google.chrome", [](std::string_view) {}));
  }
  state.counters["decisions"] =
      benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
  state.counters["calls"] = static_cast<double>(desktop.accessibility().calls() - before) /
                            static_cast<double>(state.iterations());
}
BENCHMARK(BM_Decision)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace quillo
