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

TEST(ScenarioRefusal, NamesThePlace) {
  struct Case {
    std::string world, steps, problem;
  };
  const std::vector<Case> cases = {
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
      {R"({"takenChords": ["shift+a"]})", "[]",
       "test: world.takenChords[0]: \"shift+a\" is none of"},
      {R"({"keyRoutes": {"tap": {"loses": 1}}})", "[]", "test: world.keyRoutes.tap.loses: "},
      {R"({"keyRoutes": {"mouse": {}}})", "[]", "test: world.keyRoutes.mouse: unknown key"},
      {"{}", R"([{"dance": 1}])", "test: steps[0]: unknown verb \"dance\"; known are: expect,"},
      {"{}", R"([{"wait": "1s", "press": "space"}])",
       "test: steps[0]: a step is an object with one key"},
      {"{}", R"([{"wait": 1}])", "test: steps[0].wait: a text is expected"},
      {"{}", R"([{"press": "control+any"}])", "test: steps[0].press: there is no key \"any\""},
      {"{}", R"([{"press": {"keys": "space"}}])", "test: steps[0].press: \"for\" is missing"},
      {"{}", R"([{"layout": "qwertz"}])", "test: steps[0].layout: \"qwertz\" is none of"},
      {"{}", R"([{"expect": {"mood": "good"}}])", "test: steps[0].expect.mood: unknown key"},
      {"{}", R"([{"expect": {"editor": {"Mail": ""}}}])",
       "test: steps[0].expect.editor.Mail: there is no application \"Mail\""},
      // What cannot be done in the state of the world.
      {"{}", R"([{"focus": "Mail"}])", "test: steps[0].focus: no application \"Mail\" runs"},
      {"{}", R"([{"click": "Cancel"}])", "test: steps[0].click: no panel shows \"Cancel\""},
      {"{}", R"([{"wait": "1s"}, {"choose": "Retry Last Dictation"}])",
       "test: steps[1].choose: the menu offers no"},
      {"{}", R"([{"release": "control"}])", "test: steps[0].release: it is not held"},
      {"{}", R"([{"unplug": "desk"}])", "test: steps[0].unplug: no microphone \"desk\""},
      {"{}", R"([{"set": {"mac.nonsense": 1}}])",
       "test: steps[0].set.mac.nonsense: the user can change no such setting"},
  };
  for (const Case& each : cases) {
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
