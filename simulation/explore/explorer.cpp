#include "simulation/explore/explorer.h"

#include <iomanip>
#include <memory>
#include <ostream>
#include <sstream>

#include "simulation/explore/daily_user.h"
#include "simulation/world/event_reading.h"

namespace quillo::sim {
namespace {

using namespace std::chrono_literals;

constexpr Duration day = 24h;
constexpr Duration longestPause = 6min;
// The rules' own time-outs: a request that stalls is tried three times, and there are several.
constexpr Duration timeForTheProbe = 2min;
constexpr Duration settled = 20s;

// Each kind is in or out, so that rare meetings of few kinds are met as well as storms of many.
std::vector<FaultKind> chooseFaults(simulated::SeededRandom& random) {
  const double share = static_cast<double>(random.below(5)) / 4 * 0.8;
  std::vector<FaultKind> chosen;
  for (const Fault& fault : allFaults())
    if (random.chance(share)) chosen.push_back(fault.kind);
  return chosen;
}

class Living {
 public:
  Living(Life& life, World& world, std::uint64_t seed, const LifeOptions& options)
      : random_(seed, "days"),
        life_(life),
        options_(options),
        world_(world),
        faults_(world, simulated::SeededRandom(seed, "faults"), life.chosen, life.budget),
        user_(world, faults_, simulated::SeededRandom(seed, "user")) {}

  ExitCode live(Invariants& invariants) {
    furnish();
    for (int i = 0; i < options_.days; ++i) liveOneDay(invariants);
    const ExitCode code = endQuietly(invariants);
    life_.lived = world_.now().sinceStart;
    life_.spoken = user_.spoken();
    life_.fired = faults_.fired();
    life_.done = user_.done();
    return code;
  }

 private:
  void furnish() {
    world_.signIn();
    for (const char* name : {"Mail", "Chat", "Notes"})
      world_.launchApplication({std::string("org.example.") + name, name});
    world_.desktop().audioDevices().plug({.uid = "desk", .name = "Desk"});
    if (random_.chance(0.3))
      world_.desktop().audioDevices().builtInMicrophone().setFirstBufferDelay(
          random_.between(10ms, 240ms));
    if (random_.chance(0.5)) world_.desktop().queues().setLatency(random_.between(0ms, 200ms));
    furnishSettings(world_.desktop().userDefaults());
    world_.launch();
  }

  // The ways that a text can take are as likely from the first day on.
  void furnishSettings(UserDefaults& defaults) {
    if (random_.chance(0.5)) defaults.setText("outputLanguage", "de");
    if (random_.chance(0.5)) defaults.setBoolean("validateTranslation", true);
    if (random_.chance(0.2)) defaults.setBoolean("mac.autoPaste", false);
    if (random_.chance(0.4)) defaults.setText("mac.activationMode", "hold");
    if (random_.chance(0.4)) defaults.setText("mac.microphoneUID", "desk");
  }

  void liveOneDay(Invariants& invariants) {
    const MonotonicTime morning = world_.now();
    const Duration work = std::chrono::hours(options_.hours);
    while (world_.now() - morning < work && invariants.violations().empty()) {
      if (random_.chance(0.4)) faults_.strike();
      user_.doSomething();
      if (random_.chance(0.3)) faults_.strike();
      world_.runFor(random_.between(100ms, random_.chance(0.5) ? 5s : longestPause));
      user_.attend();
      lookAtRest(invariants);
    }
    // A day on which an invariant was violated has told enough.
    if (!invariants.violations().empty()) return;
    if (morning + day > world_.now()) world_.runFor(morning + day - world_.now());
    lookAtRest(invariants);
  }

  void lookAtRest(Invariants& invariants) {
    if (world_.isAtRest()) invariants.rest(restFacts(world_));
  }

  ExitCode endQuietly(Invariants& invariants) {
    faults_.end();
    user_.stopEverything();
    world_.trace().tell(events::QuietPhase{});
    if (!comesToRest()) return ExitCode::noRest;
    world_.trace().tell(events::AtRest{});
    invariants.rest(restFacts(world_));
    user_.prepare();
    user_.dictateProperly();
    world_.runFor(timeForTheProbe);
    world_.runFor(settled);
    if (!world_.isAtRest()) return ExitCode::noRest;
    invariants.rest(restFacts(world_));
    return ExitCode::fine;
  }

  // The user goes on answering what is asked.
  bool comesToRest() {
    const MonotonicTime limit = world_.now() + longestUnrest;
    while (world_.now() < limit) {
      if (world_.runUntil([this] { return world_.isAtRest(); }, 1min)) return true;
      user_.attend();
      if (world_.dictation().isRecording) user_.stopEverything();
    }
    return false;
  }

  simulated::SeededRandom random_;
  Life& life_;
  LifeOptions options_;
  World& world_;
  Faults faults_;
  DailyUser user_;
};

std::string hex(std::uint64_t number) {
  std::ostringstream text;
  text << std::hex << std::setw(16) << std::setfill('0') << number;
  return text.str();
}

std::string replayCommand(std::uint64_t seed, const ExploreOptions& options) {
  std::string command = "quillo-sim explore --seeds " + std::to_string(seed) + ".." +
                        std::to_string(seed) + " --days " + std::to_string(options.life.days) +
                        " --hours " + std::to_string(options.life.hours);
  for (const auto& [name, bug] : plantedBugNames)
    if (bug == options.life.bug && bug != PlantedBug::none)
      command += " --bug " + std::string(name);
  return command + " --trace";
}

void reportSeed(std::uint64_t seed, const Life& life, const ExploreOptions& options,
                std::ostream& report) {
  report << "seed " << seed << " fails with code " << static_cast<int>(life.code) << "; budget "
         << life.budget << ", digest " << hex(life.digest) << ", faults:";
  for (const FaultKind kind : life.chosen) report << ' ' << faultOf(kind).name;
  report << '\n';
  if (life.code == ExitCode::noRest) report << "  it did not come to rest\n";
  if (!life.crash.empty()) report << "  it crashed: " << life.crash << '\n';
  for (const Violation& each : life.violations)
    report << "  at " << toSeconds(each.time.sinceStart) << " s (" << each.invariant
           << "): " << each.how << '\n';
  report << "  replay: " << replayCommand(seed, options) << std::endl;
}

template <class Key>
void addAll(std::map<Key, int>& sum, const std::map<Key, int>& counts) {
  for (const auto& [key, count] : counts) sum[key] += count;
}

}  // namespace

Life live(std::uint64_t seed, const LifeOptions& options, std::ostream* trace) {
  Life life;
  simulated::SeededRandom random(seed, "options");
  life.chosen = chooseFaults(random);
  life.budget = static_cast<int>(random.below(100)) * options.days;
  Invariants invariants({.wordMarker = "zq"}, Words::known);
  // Ends before those who watch it.
  auto world = std::make_unique<World>(seed, World::PanelTexts::untold, layerWith(options.bug));
  invariants.follow(world->trace());
  world->trace().watch([&life](const Event& event) {
    life.dictations += turns(event, events::Flag::isRecording, true);
  });
  if (trace) world->trace().printTo(*trace);
  Living living(life, *world, seed, options);
  try {
    life.code = living.live(invariants);
  } catch (const std::exception& error) {
    life.code = ExitCode::crash;
    life.crash = error.what();
  }
  if (life.code == ExitCode::fine) invariants.end();
  life.violations = invariants.violations();
  if (life.code == ExitCode::fine && !life.violations.empty()) life.code = ExitCode::violation;
  life.digest = world->trace().digest();
  life.events = world->trace().count();
  world.reset();
  return life;
}

Exploration explore(const ExploreOptions& options, std::ostream& report, std::ostream* trace) {
  Exploration all;
  for (std::uint64_t seed = options.firstSeed; seed <= options.lastSeed; ++seed) {
    Life life = live(seed, options.life, trace);
    if (options.twice != 0 && seed % options.twice == 0 &&
        live(seed, options.life).digest != life.digest)
      life.code = worse(life.code, ExitCode::notRepeated);
    if (life.code != ExitCode::fine) {
      reportSeed(seed, life, options, report);
      ++all.failed;
    }
    all.code = worse(all.code, life.code);
    ++all.seeds;
    all.lived += life.lived;
    all.spoken += life.spoken;
    all.dictations += life.dictations;
    addAll(all.fired, life.fired);
    addAll(all.done, life.done);
    for (const Violation& each : life.violations) all.violated.insert(each.invariant);
  }
  return all;
}

}  // namespace quillo::sim
