// The program's own share of a dictation: everything that it computes, with the service's time and
// the rules' waits taken out, since virtual time passes for nothing. What the host adds on a real
// desktop (key grabs, the clipboard, the sound server) is measured by bench/desktop.
#include <benchmark/benchmark.h>

#include "app/simulated_program.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using SteadyClock = std::chrono::steady_clock;

double secondsOf(auto&& work) {
  const auto begin = SteadyClock::now();
  work();
  return std::chrono::duration<double>(SteadyClock::now() - begin).count();
}

void settle(SimulatedProgram& world) {
  world.desktop.runFor(10s);
  world.editor.editor().setText("");
  world.desktop.network().forgetRequests();
}

void percentiles(benchmark::State& state, std::vector<double>& samples) {
  std::sort(samples.begin(), samples.end());
  const auto at = [&](double share) {
    return 1000 *
           samples[std::min(samples.size() - 1, std::size_t(share * double(samples.size())))];
  };
  state.counters["p50_ms"] = at(0.50);
  state.counters["p99_ms"] = at(0.99);
}

void speakFor(SimulatedProgram& world, Duration duration) {
  world.desktop.voice().speak(duration);
  world.desktop.runFor(duration);
}

bool hasPasted(SimulatedProgram& world, std::size_t keysBefore) {
  return world.desktop.keyboard().posted().size() > keysBefore;
}

// From the press that starts to the engine that was asked to record.
void BM_ShortcutToStart(benchmark::State& state) {
  SimulatedProgram world;
  std::vector<double> samples;
  for (auto _ : state) {
    const double seconds = secondsOf([&] {
      world.pressToggle();
      world.desktop.runUntil([&] { return world.desktop.audioSystem().runningEngines() > 0; });
    });
    state.SetIterationTime(seconds);
    samples.push_back(seconds);
    state.PauseTiming();
    world.runUntilStatus("Listening");
    speakFor(world, 1s);
    world.pressToggle();
    world.runUntilStatus("Inserted");
    settle(world);
    state.ResumeTiming();
  }
  percentiles(state, samples);
}
BENCHMARK(BM_ShortcutToStart)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(300);

// From the press that stops to the first key of the paste.
void BM_StopToPaste(benchmark::State& state) {
  SimulatedProgram world;
  std::vector<double> samples;
  for (auto _ : state) {
    state.PauseTiming();
    world.pressToggle();
    world.runUntilStatus("Listening");
    speakFor(world, 10s);
    const std::size_t keys = world.desktop.keyboard().posted().size();
    state.ResumeTiming();
    const double seconds = secondsOf([&] {
      world.pressToggle();
      world.desktop.runUntil([&] { return hasPasted(world, keys); });
    });
    state.SetIterationTime(seconds);
    samples.push_back(seconds);
    state.PauseTiming();
    world.runUntilStatus("Inserted");
    settle(world);
    state.ResumeTiming();
  }
  percentiles(state, samples);
}
BENCHMARK(BM_StopToPaste)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(300);

// How much faster than real time a whole dictation of a minute is lived.
void BM_SimulatedDictation(benchmark::State& state) {
  SimulatedProgram world(1, 400ms);
  double virtualSeconds = 0;
  for (auto _ : state) {
    const MonotonicTime begin = world.desktop.now();
    world.pressToggle();
    world.runUntilStatus("Listening");
    speakFor(world, 60s);
    world.pressToggle();
    world.runUntilStatus("Inserted");
    settle(world);
    virtualSeconds += toSeconds(world.desktop.now() - begin);
  }
  state.counters["times_real_time"] =
      benchmark::Counter(virtualSeconds, benchmark::Counter::kIsRate);
}
BENCHMARK(BM_SimulatedDictation)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quillo
