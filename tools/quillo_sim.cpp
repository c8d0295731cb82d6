// quillo-sim: the program on a simulated desktop.
#include <charconv>
#include <chrono>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "simulation/explore/explorer.h"
#include "simulation/scenarios/scenario.h"

namespace {

using quillo::sim::ExitCode;
using quillo::sim::Exploration;
using quillo::sim::ExploreOptions;

constexpr const char* usage =
    "usage: quillo-sim run [--no-trace] FILE...\n"
    "  plays scenarios (docs/scenarios.md) and prints their traces, one JSON object a line\n"
    "usage: quillo-sim explore --seeds A..B [--days N] [--hours N] [--bug NAME] [--trace]\n"
    "  lives random days of a user under random faults, one world a seed\n"
    "exit codes: 0 fine, 1 an expectation is not met, 2 refused, 3 an invariant is violated,\n"
    "  4 no rest, 5 crash, 6 not repeated\n";

ExitCode refuse(const std::string& problem) {
  std::cerr << problem << '\n' << usage;
  return ExitCode::refused;
}

ExitCode run(const std::vector<std::string>& arguments) {
  std::ostream* trace = &std::cout;
  std::vector<std::string> files;
  for (const std::string& argument : arguments) {
    if (argument == "--no-trace") {
      trace = nullptr;
    } else if (argument.starts_with("-")) {
      return refuse("unknown option " + argument);
    } else {
      files.push_back(argument);
    }
  }
  if (files.empty()) return refuse("which scenario?");
  ExitCode worst = ExitCode::fine;
  for (const std::string& file : files) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) return refuse("cannot read " + file);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    worst = worse(worst, quillo::sim::playScenario(text, file, {trace, std::cerr}));
  }
  return worst;
}

// --- explore ---

std::optional<std::uint64_t> number(std::string_view text) {
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

// "3..17"; nothing when it is no range.
bool readSeeds(const std::string& text, ExploreOptions& options) {
  const std::size_t dots = text.find("..");
  if (dots == std::string::npos) return false;
  const auto first = number(std::string_view(text).substr(0, dots));
  const auto last = number(std::string_view(text).substr(dots + 2));
  if (!first || !last || *first > *last) return false;
  options.firstSeed = *first;
  options.lastSeed = *last;
  return true;
}

bool readOption(const std::string& name, const std::string& value, ExploreOptions& options) {
  if (name == "--seeds") return readSeeds(value, options);
  if (name == "--days") {
    const auto days = number(value);
    options.life.days = static_cast<int>(days.value_or(0));
    return days && *days >= 1 && *days <= 1000;
  }
  if (name == "--hours") {
    const auto hours = number(value);
    options.life.hours = static_cast<int>(hours.value_or(0));
    return hours && *hours >= 1 && *hours <= 20;
  }
  if (name == "--bug") {
    for (const auto& [known, bug] : quillo::sim::plantedBugNames) {
      if (known != value) continue;
      options.life.bug = bug;
      return true;
    }
  }
  return false;
}

template <class Counts, class Name>
void printCounts(const char* title, const Counts& counts, Name name) {
  std::cerr << title;
  for (const auto& [key, count] : counts) std::cerr << ' ' << name(key) << '=' << count;
  std::cerr << '\n';
}

void printSummary(const Exploration& all, double seconds) {
  const double lived = quillo::toSeconds(all.lived);
  int faults = 0;
  for (const auto& [kind, count] : all.fired) faults += count;
  std::cerr << all.seeds << " seeds, " << lived / 86400 << " days lived, " << all.dictations
            << " dictations, " << faults << " faults, " << all.failed << " failed, in " << seconds
            << " s (" << lived / seconds << " x real time; "
            << quillo::toSeconds(all.spoken) / seconds << " x of what was spoken alone)\n";
  printCounts("done:", all.done, [](const std::string& what) { return '"' + what + '"'; });
  printCounts("faults:", all.fired,
              [](quillo::sim::FaultKind kind) { return quillo::sim::faultOf(kind).name; });
}

ExitCode explore(const std::vector<std::string>& arguments) {
  ExploreOptions options;
  std::ostream* trace = nullptr;
  bool hasSeeds = false;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (arguments[i] == "--trace") {
      trace = &std::cout;
    } else if (i + 1 == arguments.size() || !readOption(arguments[i], arguments[i + 1], options)) {
      return refuse("this makes no sense: " + arguments[i]);
    } else {
      hasSeeds = hasSeeds || arguments[i] == "--seeds";
      ++i;
    }
  }
  if (!hasSeeds) return refuse("which seeds?");
  const auto begin = std::chrono::steady_clock::now();
  const Exploration all = quillo::sim::explore(options, std::cerr, trace);
  printSummary(all,
               std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
  return all.code;
}

}  // namespace

int main(int count, char** values) {
  const std::vector<std::string> arguments(values + 1, values + count);
  ExitCode code = ExitCode::fine;
  if (!arguments.empty() && arguments.front() == "run") {
    code = run({arguments.begin() + 1, arguments.end()});
  } else if (!arguments.empty() && arguments.front() == "explore") {
    code = explore({arguments.begin() + 1, arguments.end()});
  } else {
    code = refuse("what shall be done?");
  }
  return static_cast<int>(code);
}
