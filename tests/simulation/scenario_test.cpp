// Scenarios are read without leniency, and what they expect is compared to the letter.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <sstream>

#include "base/json.h"
#include "base/text.h"
#include "simulation/scenarios/scenario.h"

namespace quillo::sim {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

struct Played {
  ExitCode code = ExitCode::fine;
  std::string trace;
  std::string problems;
};

Played play(const std::string& json) {
  std::ostringstream trace;
  std::ostringstream problems;
  const ExitCode code = playScenario(json, "test", {&trace, problems});
  return {code, trace.str(), problems.str()};
}

Played playSteps(const std::string& steps, const std::string& world = "{}") {
  return play(R"({"about": "a test", "world": )" + world + R"(, "steps": )" + steps + "}");
}

struct Refusal {
  const char* world;
  const char* steps;
  const char* problem;
};
constexpr Refusal refusals[] = {
    {R"({"colour": 1})", "[]", "test: world.colour: unknown key; known are: seed, "},
    {R"({"service": {"transcribe": [{"says": "x"}]}})", "[]",
     "test: world.service.transcribe[0]: an answer needs one of: text,"},
    {R"({"service": {"transcribe": [{"text": "x", "stalls": true}]}})", "[]",
     "test: world.service.transcribe[0]: an answer is of one kind"},
    {R"({"service": {"oracle": []}})", "[]", "test: world.service.oracle: the service has"},
    {R"({"applications": [{"name": "Notes"}, {"name": "Notes"}]})", "[]",
     "test: world.applications[1]: \"Notes\" runs already"},
    {R"({"permissions": {"microphone": "maybe"}})", "[]",
     "test: world.permissions.microphone: \"maybe\" is none of: allowed, denied, undecided"},
    {R"({"account": {"expiresIn": "soon"}})", "[]",
     "test: world.account.expiresIn: a duration such as"},
    {R"({"files": {"/etc/passwd": ""}})", "[]", "test: world.files./etc/passwd: a path begins"},
    {R"({"takenChords": ["shift+a"]})", "[]", "test: world.takenChords[0]: \"shift+a\" is none of"},
    {R"({"keyRoutes": {"tap": {"loses": 1}}})", "[]", "test: world.keyRoutes.tap.loses: "},
    {R"({"keyRoutes": {"mouse": {}}})", "[]", "test: world.keyRoutes.mouse: unknown key"},
    {"{}", R"([{"dance": 1}])", "test: steps[0]: unknown verb \"dance\"; known are: expect,"},
    {"{}", R"([{"wait": "1s", "press": "space"}])",
     "test: steps[0]: a step is an object with one key"},
    {"{}", R"([{"wait": 1}])", "test: steps[0].wait: a text is expected"},
    {"{}", R"([{"press": "control+any"}])", "test: steps[0].press: there is no key \"any\""},
    {"{}", R"([{"press": {"keys": "space"}}])", "test: steps[0].press: \"for\" is missing"},
    {"{}", R"([{"layout": "qwertz"}])", "test: steps[0].layout: \"qwertz\" is none of"},
    {R"({"settings": {"tone": {"data": "x", "foreign": true}}})", "[]",
     "test: world.settings.tone: either"},
    {R"({"files": {"caches/a": {"latin1": "\u0100"}}})", "[]",
     "test: world.files.caches/a.latin1: a character above U+00FF is no byte"},
    {"{}", R"([{"account": {"signIn": {"email": "x", "name": "y"}}}])",
     "test: steps[0].account.signIn.name: unknown key"},
    {"{}", R"([{"account": {"dance": {}}}])",
     "test: steps[0].account: an operation is expected; known are: signIn, "},
    {"{}", R"([{"remove": {"rule": 1}}])", "test: steps[0].remove.rule: there is no such element"},
    {"{}", R"([{"edit": {"profile": 1, "text": "x"}}])",
     "test: steps[0].edit.text: unknown key; known are: profile, name"},
    {"{}", R"([{"edit": {"text": "x"}}])", "test: steps[0].edit: one of term, profile,"},
    {"{}", R"([{"expect": {"status": {"matches": "("}}}])",
     "test: steps[0].expect.status.matches: this is no regular expression"},
    {"{}", R"([{"expect": {"statuses": [{"test": "x"}]}}])",
     "test: steps[0].expect.statuses[0].test: unknown key"},
    {"{}", R"([{"expect": {"panel": {"colour": "red"}}}])",
     "test: steps[0].expect.panel.colour: unknown key"},
    {"{}", R"([{"expect": {"mood": "good"}}])", "test: steps[0].expect.mood: unknown key"},
    {"{}", R"([{"expect": {"editor": {"Mail": ""}}}])",
     "test: steps[0].expect.editor.Mail: there is no application \"Mail\""},
    // What cannot be done in the state of the world.
    {"{}", R"([{"focus": "Mail"}])", "test: steps[0].focus: no application \"Mail\" runs"},
    {"{}", R"([{"click": "Cancel"}])", "test: steps[0].click: no panel or window shows \"Cancel\""},
    {"{}", R"([{"wait": "1s"}, {"choose": "Retry Last Dictation"}])",
     "test: steps[1].choose: the menu offers no"},
    {"{}", R"([{"release": "control"}])", "test: steps[0].release: it is not held"},
    {"{}", R"([{"unplug": "desk"}])", "test: steps[0].unplug: no microphone \"desk\""},
    {"{}", R"([{"set": {"mac.nonsense": 1}}])",
     "test: steps[0].set.mac.nonsense: the user can change no such setting"},
};

TEST(ScenarioRefusal, NamesThePlace) {
  for (const Refusal& each : refusals) {
    const Played played = playSteps(each.steps, each.world);
    EXPECT_EQ(played.code, ExitCode::refused) << each.problem;
    EXPECT_THAT(played.problems, StartsWith(each.problem));
  }
  EXPECT_THAT(play("{").problems, StartsWith("test: scenario: this is no JSON"));
  EXPECT_THAT(play(R"({"about": "x", "about": "y", "steps": []})").problems,
              HasSubstr("the key \"about\" stands twice in one object"));
  EXPECT_THAT(play(R"({"steps": []})").problems, HasSubstr("\"about\" is missing"));
}

TEST(ScenarioExpectation, TellsEverythingThatDiffersAndWhere) {
  const Played played = playSteps(
      R"([{"wait": "1s"}, {"expect": {"status": "Listening", "signedIn": true,
          "editor": {"Notes": "text"}, "clipboard": "mine", "log": ["no such line"]}}])");
  EXPECT_EQ(played.code, ExitCode::differs);
  EXPECT_THAT(played.problems,
              HasSubstr("steps[1].expect.status: expected \"Listening\", found \"Ready\"\n"));
  EXPECT_THAT(played.problems,
              HasSubstr("steps[1].expect.editor.Notes: expected \"text\", found \"\"\n"));
  EXPECT_THAT(played.problems,
              HasSubstr("steps[1].expect.clipboard: expected \"mine\", found null\n"));
  EXPECT_THAT(played.problems, HasSubstr("steps[1].expect.log[0]"));
  EXPECT_THAT(played.problems, testing::Not(HasSubstr("signedIn")));
}

TEST(ScenarioExpectation, AStatusThatNeverComesDiffers) {
  const Played played = playSteps(R"([{"until": {"status": "Listening", "within": "1s"}}])");
  EXPECT_EQ(played.code, ExitCode::differs);
  EXPECT_THAT(played.problems, StartsWith("test: steps[0].until: expected status Listening"));
}

// The program would swallow what is thrown while its question waits.
TEST(ScenarioExpectation, WhatDiffersDuringAQuestionIsToldAndAQuestionThatNeverComesToo) {
  const auto asking = [](const std::string& steps) {
    return playSteps(steps, R"({"account": "signedOut", "alerts": [
        {"button": 0, "meanwhile": [{"expect": {"question": {"title": "Sign in"}}}]}]})");
  };
  const Played asked = asking(R"([{"press": "control+option+space"}, {"wait": "3s"}])");
  EXPECT_EQ(asked.code, ExitCode::differs);
  EXPECT_THAT(asked.problems, StartsWith("test: world.alerts[0].meanwhile[0].expect.question: "));
  EXPECT_THAT(asking("[]").problems, HasSubstr("1 answers to questions that never came"));
}

TEST(ScenarioExpectation, TimesPatternsAndTheOrderOfKeysDecide) {
  const auto differs = [](const std::string& expected) {
    return playSteps(R"([{"wait": "1s"}, {"press": "control+option+space"}, {"until": "Listening"},
        {"set": {"inputLanguage": "de"}}, {"write": {"rule": {"from": "a", "to": "b"}}},
        {"expect": )" +
                     expected + "}]")
               .code == ExitCode::differs;
  };
  EXPECT_FALSE(differs(R"({"statuses": [{"text": {"matches": "Lis.*"}, "at": ["1s", "1.2s"]}],
      "settings": {"dictionaryReplacements": [{"to": "b", "from": "a"}]},
      "history": [], "error": null})"));
  EXPECT_TRUE(differs(R"({"statuses": [{"text": "Listening", "at": ["0s", "1s"]}]})"));
  EXPECT_TRUE(differs(R"({"status": {"matches": "Lis"}})"));
  EXPECT_TRUE(differs(R"({"panel": {"without": ["Listening"]}})"));
  EXPECT_TRUE(differs(R"({"warmUps": {"transcribe": 0}})"));
  EXPECT_TRUE(differs(R"({"requests": {"usage": 0}})"));
}

TEST(ScenarioTrace, IsOneObjectALineWithRisingTimes) {
  const Played played = playSteps(
      R"([{"press": "control+option+space"}, {"until": "Listening"},
          {"speak": {"words": "hello", "for": "1s"}}, {"press": "control+option+space"},
          {"until": "Inserted"}])");
  ASSERT_EQ(played.code, ExitCode::fine) << played.problems;
  double last = 0;
  std::vector<std::string> kinds;
  for (const std::string& line : split(played.trace, '\n')) {
    if (line.empty()) continue;
    const auto event = parseJson(line);
    ASSERT_TRUE(event) << line;
    EXPECT_GE(event->at("t").get<double>(), last);
    last = event->at("t");
    kinds.push_back(event->at("what"));
  }
  for (const char* kind : {"status", "state", "request", "reply", "key", "clipboard", "sound",
                           "recordingOpened", "recordingClosed", "fileRemoved", "log", "history",
                           "editor", "panels", "microphone", "user", "front"})
    EXPECT_THAT(kinds, testing::Contains(kind));
}

TEST(ScenarioPage, ItsExampleRuns) {
  std::ifstream page(std::string(QUILLO_DOCS) + "/scenarios.md");
  const std::string text{std::istreambuf_iterator<char>(page), {}};
  const std::string fence = "```json\n{\n  \"about\"";
  const std::size_t begin = text.find(fence);
  ASSERT_NE(begin, std::string::npos);
  const std::size_t first = begin + std::string("```json\n").size();
  const Played played = play(text.substr(first, text.find("```", first) - first));
  EXPECT_EQ(played.code, ExitCode::fine) << played.problems;
}

}  // namespace
}  // namespace quillo::sim
