#include "simulation/scenarios/program_steps.h"

#include <algorithm>

#include "simulation/scenarios/setting_values.h"

namespace quillo::sim {
namespace {

using namespace std::chrono_literals;

// --- Writing material ---

// The index in a list of the element whose number stands here.
template <class List>
std::size_t indexIn(const List& list, const Place& number) {
  const std::int64_t wanted = number.integer();
  if (wanted < 1 || wanted > std::ssize(list)) number.refuse("there is no such element");
  return static_cast<std::size_t>(wanted - 1);
}

constexpr std::pair<std::string_view, DictionaryList MacAppState::*> dictionaries[] = {
    {"rule", &MacAppState::dictionaryReplacements},
    {"glossary", &MacAppState::dictionaryGlossary},
    {"snippet", &MacAppState::snippets},
};

void editEntry(DictionaryList& list, const Place& number, const Place& change,
               std::initializer_list<const char*> keys) {
  const std::size_t index = indexIn(list.get(), number);
  for (const char* key : keys)
    if (const auto text = change.find(key)) list.updateEntry(index, key, text->text());
}

void changeInstruction(PromptInstruction& instruction, const Place& change) {
  if (const auto name = change.find("name")) instruction.name = name->text();
  if (const auto text = change.find("text")) instruction.text = text->text();
  if (const auto voice = change.find("voice")) instruction.voice = voice->boolean();
  if (const auto bubble = change.find("bubble")) instruction.bubble = bubble->boolean();
}

// As the window does it: an empty instruction is added, and then written.
void addInstruction(MacAppState& state, const Place& place) {
  place.allowOnly({"kind", "name", "text", "voice", "bubble"});
  constexpr std::pair<std::string_view, void (MacAppState::*)()> kinds[] = {
      {"style", &MacAppState::addStyleInstruction}, {"saved", &MacAppState::addSavedPrompt}};
  (state.*place.at("kind").choice(kinds))();
  state.promptInstructions.edit(state.promptInstructions->size() - 1,
                                [&](auto& added) { changeInstruction(added, place); });
}

void removeHistory(MacHistoryStore& history, Date now, const Place& which) {
  if (which.json().is_number()) {
    history.removeEntry(history.entries.get()[indexIn(history.entries.get(), which)]->id);
  } else if (which.json().is_array()) {
    std::unordered_set<std::string> ids;
    for (const Place& number : which.elements())
      ids.insert(history.entries.get()[indexIn(history.entries.get(), number)]->id);
    history.removeEntries(ids);
  } else if (which.json().is_object()) {
    which.allowOnly({"olderThan"});
    history.purge(now - which.at("olderThan").duration());
  } else {
    constexpr std::pair<std::string_view, bool> all[] = {{"all", true}};
    which.choice(all);
    history.removeAll();
  }
}

// --- The account ---

using Operation = Task<MacAuthResult> (*)(MacAuthService&, const Place&);

Task<MacAuthResult> signIn(MacAuthService& auth, const Place& place) {
  place.allowOnly({"email", "password"});
  return auth.signIn(place.at("email").text(), place.at("password").text());
}
Task<MacAuthResult> signUp(MacAuthService& auth, const Place& place) {
  place.allowOnly({"email", "password", "name"});
  const auto name = place.find("name");
  return auth.signUp(place.at("email").text(), place.at("password").text(),
                     name ? std::optional(name->text()) : std::nullopt);
}
Task<MacAuthResult> confirm(MacAuthService& auth, const Place& place) {
  place.allowOnly({"email", "code"});
  return auth.verifySignup(place.at("email").text(), place.at("code").text());
}
Task<MacAuthResult> resend(MacAuthService& auth, const Place& place) {
  place.allowOnly({"email"});
  return auth.resendConfirmation(place.at("email").text());
}
Task<MacAuthResult> reset(MacAuthService& auth, const Place& place) {
  place.allowOnly({"email"});
  return auth.sendPasswordReset(place.at("email").text());
}
Task<MacAuthResult> recover(MacAuthService& auth, const Place& place) {
  place.allowOnly({"email", "code", "password"});
  return auth.verifyRecovery(place.at("email").text(), place.at("code").text(),
                             place.at("password").text());
}
Task<MacAuthResult> changePassword(MacAuthService& auth, const Place& place) {
  place.allowOnly({"password"});
  return auth.changePassword(place.at("password").text());
}
Task<MacAuthResult> rename(MacAuthService& auth, const Place& place) {
  place.allowOnly({"name"});
  return auth.updateFullName(place.at("name").text());
}
Task<MacAuthResult> deleteAccount(MacAuthService& auth, const Place& place) {
  place.allowOnly({});
  return auth.deleteAccount();
}

constexpr std::pair<std::string_view, Operation> operations[] = {
    {"signIn", signIn},        {"signUp", signUp},
    {"confirm", confirm},      {"resend", resend},
    {"reset", reset},          {"recover", recover},
    {"rename", rename},        {"changePassword", changePassword},
    {"delete", deleteAccount},
};

std::string_view nameOf(MacAuthResult::Kind kind) {
  switch (kind) {
    case MacAuthResult::Kind::success:
      return "success";
    case MacAuthResult::Kind::error:
      return "error";
    case MacAuthResult::Kind::needsConfirmation:
      return "needsConfirmation";
  }
}

Task<> tellResult(Trace& trace, std::string operation, Task<MacAuthResult> running) {
  const MacAuthResult result = co_await std::move(running);
  trace.tell("account",
             {{"operation", operation}, {"outcome", nameOf(result.kind)}, {"text", result.text}});
}

// Until it has ended, or a shorter while.
void runOperation(World& world, Task<> operation, const std::optional<Place>& duration) {
  const TaskHandle<> running = start(world.desktop().mainThread(), std::move(operation));
  if (duration) return world.runFor(duration->duration());
  world.runUntil([&] { return running.isFinished(); }, 10min);
  world.runFor({});
}

void operate(World& world, const Place& place) {
  for (const auto& [name, perform] : operations) {
    const auto arguments = place.find(name);
    if (!arguments) continue;
    place.allowOnly({name, "for"});
    if (name == "signIn") world.act("signs in");
    return runOperation(
        world,
        tellResult(world.trace(), std::string(name), perform(world.program().auth(), *arguments)),
        place.find("for"));
  }
  std::string known;
  for (const auto& [name, perform] : operations)
    known += (known.empty() ? "" : ", ") + std::string(name);
  place.refuse("an operation is expected; known are: " + known);
}

}  // namespace

void set(World& world, const Place& place) {
  world.act("sets", {{"settings", place.json()}});
  for (const auto& [key, value] : place.members())
    changeSetting(world.program().appState(), key, value);
  world.runFor({});
}

void write(World& world, const Place& place) {
  place.allowOnly({"rule", "term", "glossary", "snippet", "profile", "instruction"});
  MacAppState& state = world.program().appState();
  if (const auto rule = place.find("rule")) {
    rule->allowOnly({"from", "to"});
    state.addReplacementRule(rule->at("from").text(), rule->at("to").text());
  }
  if (const auto term = place.find("term")) state.addVocabularyTerm(term->text());
  if (const auto entry = place.find("glossary")) {
    entry->allowOnly({"from", "to"});
    state.addGlossaryEntry(entry->at("from").text(), entry->at("to").text());
  }
  if (const auto snippet = place.find("snippet")) {
    snippet->allowOnly({"cue", "text"});
    state.addSnippet(snippet->at("cue").text(), snippet->at("text").text());
  }
  if (const auto profile = place.find("profile")) state.saveCurrentProfile(profile->text());
  if (const auto instruction = place.find("instruction")) addInstruction(state, *instruction);
  world.runFor({});
}

void edit(World& world, const Place& place) {
  MacAppState& state = world.program().appState();
  if (const auto number = place.find("term")) {
    place.allowOnly({"term", "text"});
    state.dictionaryVocabulary.edit(indexIn(state.dictionaryVocabulary.get(), *number),
                                    [&](auto& term) { term = place.at("text").text(); });
  } else if (const auto profile = place.find("profile")) {
    place.allowOnly({"profile", "name"});
    const auto& profiles = state.writingProfiles.get();
    state.renameProfile(profiles[indexIn(profiles, *profile)].id, place.at("name").text());
  } else if (const auto instruction = place.find("instruction")) {
    place.allowOnly({"instruction", "name", "text", "voice", "bubble"});
    state.promptInstructions.edit(indexIn(state.promptInstructions.get(), *instruction),
                                  [&](auto& edited) { changeInstruction(edited, place); });
  } else if (const auto rule = place.find("rule")) {
    place.allowOnly({"rule", "from", "to"});
    editEntry(state.dictionaryReplacements, *rule, place, {"from", "to"});
  } else if (const auto entry = place.find("glossary")) {
    place.allowOnly({"glossary", "from", "to", "lang"});
    editEntry(state.dictionaryGlossary, *entry, place, {"from", "to", "lang"});
  } else if (const auto snippet = place.find("snippet")) {
    place.allowOnly({"snippet", "cue", "text"});
    editEntry(state.snippets, *snippet, place, {"cue", "text"});
  } else {
    place.refuse("one of term, profile, instruction, rule, glossary, snippet is expected");
  }
  world.runFor({});
}

void removeMaterial(World& world, const Place& place) {
  place.allowOnly({"rule", "term", "glossary", "snippet", "profile", "instruction", "history"});
  MacAppState& state = world.program().appState();
  for (const auto& [name, list] : dictionaries)
    if (const auto number = place.find(name))
      (state.*list).removeEntry(indexIn((state.*list).get(), *number));
  if (const auto number = place.find("term"))
    state.dictionaryVocabulary.removeEntry(indexIn(state.dictionaryVocabulary.get(), *number));
  if (const auto number = place.find("profile"))
    state.removeProfile(indexIn(state.writingProfiles.get(), *number));
  if (const auto number = place.find("instruction"))
    state.promptInstructions.removeEntry(indexIn(state.promptInstructions.get(), *number));
  if (const auto which = place.find("history"))
    removeHistory(world.program().history(), world.desktop().clock().now(), *which);
  world.runFor({});
}

void account(World& world, const Place& place) {
  if (place.json().is_object()) return operate(world, place);
  constexpr std::pair<std::string_view, bool> acts[] = {{"signOut", false}, {"fetchProfile", true}};
  if (place.choice(acts)) return runOperation(world, world.program().auth().fetchProfile(), {});
  world.program().auth().signOut();
  world.runFor({});
}

}  // namespace quillo::sim
