#include "simulation/scenarios/program_steps.h"

#include <algorithm>

#include "simulation/scenarios/setting_values.h"

namespace quillo::sim {
namespace {

using namespace std::chrono_literals;

// --- Writing material ---

// The index in a list of the element whose number stands here.
template <class List>
std::size_t indexIn(const List& list, const JsonCursor& number) {
  const std::int64_t wanted = number.integer();
  if (wanted < 1 || wanted > std::ssize(list)) number.refuse("there is no such element");
  return static_cast<std::size_t>(wanted - 1);
}

constexpr std::pair<std::string_view, DictionaryList MacAppState::*> dictionaries[] = {
    {"rule", &MacAppState::dictionaryReplacements},
    {"glossary", &MacAppState::dictionaryGlossary},
    {"snippet", &MacAppState::snippets},
};

void editEntry(DictionaryList& list, const JsonCursor& number, const JsonCursor& change,
               std::initializer_list<const char*> keys) {
  const std::size_t index = indexIn(list.get(), number);
  for (const char* key : keys)
    if (const auto text = change.find(key)) list.updateEntry(index, key, text->text());
}

void changeInstruction(PromptInstruction& instruction, const JsonCursor& change) {
  if (const auto name = change.find("name")) instruction.name = name->text();
  if (const auto text = change.find("text")) instruction.text = text->text();
  if (const auto voice = change.find("voice")) instruction.voice = voice->boolean();
  if (const auto bubble = change.find("bubble")) instruction.bubble = bubble->boolean();
}

// As the window does it: an empty instruction is added, and then written.
void addInstruction(MacAppState& state, const JsonCursor& cursor) {
  cursor.allowOnly({"kind", "name", "text", "voice", "bubble"});
  constexpr std::pair<std::string_view, void (MacAppState::*)()> kinds[] = {
      {"style", &MacAppState::addStyleInstruction}, {"saved", &MacAppState::addSavedPrompt}};
  (state.*cursor.at("kind").choice(kinds))();
  state.promptInstructions.edit(state.promptInstructions->size() - 1,
                                [&](auto& added) { changeInstruction(added, cursor); });
}

void removeHistory(MacHistoryStore& history, Date now, const JsonCursor& which) {
  if (which.json().is_number()) {
    history.removeEntry(history.entries.get()[indexIn(history.entries.get(), which)]->id);
  } else if (which.json().is_array()) {
    std::unordered_set<std::string> ids;
    for (const JsonCursor& number : which.elements())
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

using Operation = Task<MacAuthResult> (*)(MacAuthService&, const JsonCursor&);

Task<MacAuthResult> signIn(MacAuthService& auth, const JsonCursor& cursor) {
  cursor.allowOnly({"email", "password"});
  return auth.signIn(cursor.at("email").text(), cursor.at("password").text());
}
Task<MacAuthResult> signUp(MacAuthService& auth, const JsonCursor& cursor) {
  cursor.allowOnly({"email", "password", "name"});
  const auto name = cursor.find("name");
  return auth.signUp(cursor.at("email").text(), cursor.at("password").text(),
                     name ? std::optional(name->text()) : std::nullopt);
}
Task<MacAuthResult> confirm(MacAuthService& auth, const JsonCursor& cursor) {
  cursor.allowOnly({"email", "code"});
  return auth.verifySignup(cursor.at("email").text(), cursor.at("code").text());
}
Task<MacAuthResult> resend(MacAuthService& auth, const JsonCursor& cursor) {
  cursor.allowOnly({"email"});
  return auth.resendConfirmation(cursor.at("email").text());
}
Task<MacAuthResult> reset(MacAuthService& auth, const JsonCursor& cursor) {
  cursor.allowOnly({"email"});
  return auth.sendPasswordReset(cursor.at("email").text());
}
Task<MacAuthResult> recover(MacAuthService& auth, const JsonCursor& cursor) {
  cursor.allowOnly({"email", "code", "password"});
  return auth.verifyRecovery(cursor.at("email").text(), cursor.at("code").text(),
                             cursor.at("password").text());
}
Task<MacAuthResult> changePassword(MacAuthService& auth, const JsonCursor& cursor) {
  cursor.allowOnly({"password"});
  return auth.changePassword(cursor.at("password").text());
}
Task<MacAuthResult> rename(MacAuthService& auth, const JsonCursor& cursor) {
  cursor.allowOnly({"name"});
  return auth.updateFullName(cursor.at("name").text());
}
Task<MacAuthResult> deleteAccount(MacAuthService& auth, const JsonCursor& cursor) {
  cursor.allowOnly({});
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
  trace.tell(events::Account{operation, nameOf(result.kind), result.text.english()});
}

// Until it has ended, or a shorter while.
void runOperation(World& world, Task<> operation, const std::optional<JsonCursor>& duration) {
  const TaskHandle<> running = start(world.desktop().mainThread(), std::move(operation));
  if (duration) return world.runFor(duration->duration());
  world.runUntil([&] { return running.isFinished(); }, 10min);
  world.runFor({});
}

void operate(World& world, const JsonCursor& cursor) {
  for (const auto& [name, perform] : operations) {
    const auto arguments = cursor.find(name);
    if (!arguments) continue;
    cursor.allowOnly({name, "for"});
    if (name == "signIn") world.act(Act::signsIn);
    return runOperation(
        world,
        tellResult(world.trace(), std::string(name), perform(world.program().auth(), *arguments)),
        cursor.find("for"));
  }
  std::string known;
  for (const auto& [name, perform] : operations)
    known += (known.empty() ? "" : ", ") + std::string(name);
  cursor.refuse("an operation is expected; known are: " + known);
}

}  // namespace

void set(World& world, const JsonCursor& cursor) {
  world.trace().tell(events::UserSets{cursor.json()});
  for (const auto& [key, value] : cursor.members())
    changeSetting(world.program().appState(), key, value);
  world.runFor({});
}

void write(World& world, const JsonCursor& cursor) {
  cursor.allowOnly({"rule", "term", "glossary", "snippet", "profile", "instruction"});
  MacAppState& state = world.program().appState();
  if (const auto rule = cursor.find("rule")) {
    rule->allowOnly({"from", "to"});
    state.addReplacementRule(rule->at("from").text(), rule->at("to").text());
  }
  if (const auto term = cursor.find("term")) state.addVocabularyTerm(term->text());
  if (const auto entry = cursor.find("glossary")) {
    entry->allowOnly({"from", "to"});
    state.addGlossaryEntry(entry->at("from").text(), entry->at("to").text());
  }
  if (const auto snippet = cursor.find("snippet")) {
    snippet->allowOnly({"cue", "text"});
    state.addSnippet(snippet->at("cue").text(), snippet->at("text").text());
  }
  if (const auto profile = cursor.find("profile")) state.saveCurrentProfile(profile->text());
  if (const auto instruction = cursor.find("instruction")) addInstruction(state, *instruction);
  world.runFor({});
}

void edit(World& world, const JsonCursor& cursor) {
  MacAppState& state = world.program().appState();
  if (const auto number = cursor.find("term")) {
    cursor.allowOnly({"term", "text"});
    state.dictionaryVocabulary.edit(indexIn(state.dictionaryVocabulary.get(), *number),
                                    [&](auto& term) { term = cursor.at("text").text(); });
  } else if (const auto profile = cursor.find("profile")) {
    cursor.allowOnly({"profile", "name"});
    const auto& profiles = state.writingProfiles.get();
    state.renameProfile(profiles[indexIn(profiles, *profile)].id, cursor.at("name").text());
  } else if (const auto instruction = cursor.find("instruction")) {
    cursor.allowOnly({"instruction", "name", "text", "voice", "bubble"});
    state.promptInstructions.edit(indexIn(state.promptInstructions.get(), *instruction),
                                  [&](auto& edited) { changeInstruction(edited, cursor); });
  } else if (const auto rule = cursor.find("rule")) {
    cursor.allowOnly({"rule", "from", "to"});
    editEntry(state.dictionaryReplacements, *rule, cursor, {"from", "to"});
  } else if (const auto entry = cursor.find("glossary")) {
    cursor.allowOnly({"glossary", "from", "to", "lang"});
    editEntry(state.dictionaryGlossary, *entry, cursor, {"from", "to", "lang"});
  } else if (const auto snippet = cursor.find("snippet")) {
    cursor.allowOnly({"snippet", "cue", "text"});
    editEntry(state.snippets, *snippet, cursor, {"cue", "text"});
  } else {
    cursor.refuse("one of term, profile, instruction, rule, glossary, snippet is expected");
  }
  world.runFor({});
}

void removeMaterial(World& world, const JsonCursor& cursor) {
  cursor.allowOnly({"rule", "term", "glossary", "snippet", "profile", "instruction", "history"});
  MacAppState& state = world.program().appState();
  for (const auto& [name, list] : dictionaries)
    if (const auto number = cursor.find(name))
      (state.*list).removeEntry(indexIn((state.*list).get(), *number));
  if (const auto number = cursor.find("term"))
    state.dictionaryVocabulary.removeEntry(indexIn(state.dictionaryVocabulary.get(), *number));
  if (const auto number = cursor.find("profile"))
    state.removeProfile(indexIn(state.writingProfiles.get(), *number));
  if (const auto number = cursor.find("instruction"))
    state.promptInstructions.removeEntry(indexIn(state.promptInstructions.get(), *number));
  if (const auto which = cursor.find("history"))
    removeHistory(world.program().history(), world.desktop().clock().now(), *which);
  world.runFor({});
}

void account(World& world, const JsonCursor& cursor) {
  if (cursor.json().is_object()) return operate(world, cursor);
  constexpr std::pair<std::string_view, bool> acts[] = {{"signOut", false}, {"fetchProfile", true}};
  if (cursor.choice(acts)) return runOperation(world, world.program().auth().fetchProfile(), {});
  world.program().auth().signOut();
  world.runFor({});
}

}  // namespace quillo::sim
