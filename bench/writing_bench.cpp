// The text work of a dictation's end, and the history that it is kept in.
#include <benchmark/benchmark.h>

#include "core/output_validation.h"
#include "core/replacement_rules.h"
#include "core/snippets.h"
#include "hosts/simulated/simulated_desktop.h"
#include "state/app_state.h"
#include "state/history_store.h"

namespace quillo {
namespace {

constexpr std::array words = {"the",  "meeting", "starts", "Köln",  "tomorrow", "please",
                              "send", "report",  "before", "naïve", "résumé",   "nine"};

std::string prose(std::size_t length) {
  std::string text;
  for (std::size_t i = 0; text.size() < length; ++i) {
    text += words[i * 7 % words.size()];
    text += i % 12 == 11 ? ". " : " ";
    if (i % 40 == 0) text += "cue number " + std::to_string(i % 200) + " ";
  }
  return text;
}

// Every twentieth rule finds a word of the prose, the others nothing.
std::vector<TextDictionary> rules(int count) {
  std::vector<TextDictionary> made;
  for (int i = 0; i < count; ++i) {
    const std::string word(words[std::size_t(i) / 20 % words.size()]);
    made.push_back(
        {{"from", i % 20 == 0 ? word : word + std::to_string(i)}, {"to", "other " + word}});
  }
  return made;
}

std::vector<TextDictionary> snippets(int count) {
  std::vector<TextDictionary> made;
  for (int i = 0; i < count; ++i)
    made.push_back({{"cue", "cue number " + std::to_string(i)}, {"text", "a longer text"}});
  return made;
}

// 200 rules and 200 snippets on a text of the given length.
void BM_RulesAndSnippets(benchmark::State& state) {
  const std::string text = prose(std::size_t(state.range(0)));
  const ReplacementRules compiledRules(rules(200));
  const Snippets compiledSnippets(snippets(200));
  for (auto _ : state) benchmark::DoNotOptimize(compiledSnippets.apply(compiledRules.apply(text)));
  state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_RulesAndSnippets)
    ->Arg(1000)
    ->Arg(4000)
    ->Arg(16'000)
    ->Arg(100'000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity();

// The first dictation after the rules were edited also compiles them.
void BM_CompileRulesAndSnippets(benchmark::State& state) {
  const auto someRules = rules(200);
  const auto someSnippets = snippets(200);
  for (auto _ : state) {
    benchmark::DoNotOptimize(ReplacementRules(someRules));
    benchmark::DoNotOptimize(Snippets(someSnippets));
  }
}
BENCHMARK(BM_CompileRulesAndSnippets)->Unit(benchmark::kMillisecond);

void BM_OutputRules(benchmark::State& state) {
  const std::string original = prose(10'000);
  const std::string reply = "Here is the translation: \"" + original + "\"";
  for (auto _ : state) {
    const std::string cleaned = cleanOutput(reply);
    benchmark::DoNotOptimize(validateOutput(original, cleaned));
  }
}
BENCHMARK(BM_OutputRules)->Unit(benchmark::kMillisecond);

// The main thread's share of adding to a full history; the write itself runs on its queue.
void BM_HistoryAdd(benchmark::State& state) {
  simulated::SimulatedDesktop desktop;
  MacAppState appState(desktop.mainThread(), desktop.userDefaults(), desktop.clock(),
                       desktop.random(), desktop.machine(), desktop.loginItem(),
                       desktop.application(), desktop.log());
  MacHistoryStore history(appState, appState, desktop.userDefaults(), desktop.files(),
                          desktop.queues(), desktop.clock(), desktop.random());
  const std::string text = prose(400);
  for (int i = 0; i < 500; ++i) history.record(text, text, "en-US", "en-US", "Editor");
  desktop.runTurns();
  for (auto _ : state) {
    history.record(text, text, "en-US", "en-US", "Editor");
    state.PauseTiming();
    desktop.runTurns();
    state.ResumeTiming();
  }
}
BENCHMARK(BM_HistoryAdd)->Unit(benchmark::kMicrosecond)->Iterations(500);

}  // namespace
}  // namespace quillo
