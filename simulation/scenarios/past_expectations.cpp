// What has happened since the launch, or since the last "forget".
#include <algorithm>
#include <iterator>

#include "simulation/scenarios/findings.h"

namespace quillo::sim {
namespace {

using Moments = std::vector<Past::Moment>;

std::string inSeconds(Duration duration) {
  return encodeJson(toSeconds(duration)) + " s";
}

// `at` counts from the launch or the last "forget", `after` from the moment before.
void times(Findings& findings, const JsonCursor& cursor, const Moments& moments,
           std::size_t index) {
  const MonotonicTime time = moments[index].time;
  const MonotonicTime before = index > 0 ? moments[index - 1].time : findings.past.began;
  const auto compare = [&](const char* key, Duration passed) {
    const auto expected = cursor.find(key);
    if (expected && !isTime(*expected, passed))
      findings.differ(*expected, encodeJson(expected->json()), inSeconds(passed));
  };
  compare("at", time - findings.past.began);
  compare("after", time - before);
}

Moments requestsTo(const Moments& all, Endpoint endpoint) {
  Moments requests;
  for (const Past::Moment& request : all) {
    const std::string path = request.what.at("path");
    if (path.substr(0, path.find('?')).ends_with(pathOf(endpoint))) requests.push_back(request);
  }
  return requests;
}

// A text or a pattern, or an object with that and its times.
bool isTimed(const JsonCursor& status) {
  return status.json().is_object() && !isPattern(status);
}

JsonCursor textOfStatus(const JsonCursor& status) {
  if (!isTimed(status)) return status;
  status.allowOnly({"text", "at", "after"});
  return status.at("text");
}

void statuses(Findings& findings, const JsonCursor& cursor) {
  const Moments& moments = findings.past.statuses;
  Json found = Json::array();
  for (const Past::Moment& each : moments) found.push_back(each.what);
  const std::vector<JsonCursor> expected = cursor.elements();
  std::vector<JsonCursor> texts;
  std::ranges::transform(expected, std::back_inserter(texts), textOfStatus);
  if (!std::ranges::equal(texts, found, isSame)) return findings.differ(cursor, found);
  for (std::size_t i = 0; i < expected.size(); ++i)
    if (isTimed(expected[i])) times(findings, expected[i], moments, i);
}

void countRequests(Findings& findings, const JsonCursor& cursor, const Moments& all) {
  for (const auto& [name, count] : cursor.members()) {
    const Json key = name;
    findings.same(count,
                  requestsTo(all, JsonCursor(key, count.path()).choice(endpointNames)).size());
  }
}
void requests(Findings& findings, const JsonCursor& cursor) {
  countRequests(findings, cursor, findings.past.requests);
}
void warmUps(Findings& findings, const JsonCursor& cursor) {
  countRequests(findings, cursor, findings.past.warmUps);
}

Json keysOf(const Json& object) {
  Json keys = Json::array();
  for (const auto& [key, value] : object.items()) keys.push_back(key);
  return keys;
}

// One request, the last to its endpoint unless a number (from 1) says which.
void request(Findings& findings, const JsonCursor& cursor) {
  if (cursor.json().is_array()) {
    for (const JsonCursor& each : cursor.elements()) request(findings, each);
    return;
  }
  cursor.allowOnly(
      {"to", "number", "method", "path", "parts", "without", "order", "headers", "at", "after"});
  const Moments sent = requestsTo(findings.past.requests, cursor.at("to").choice(endpointNames));
  const auto number = cursor.find("number");
  const std::size_t index = number ? static_cast<std::size_t>(number->integer()) : sent.size();
  if (index < 1 || index > sent.size())
    return findings.differ(cursor, "request " + std::to_string(index),
                           std::to_string(sent.size()) + " requests");
  const Json& found = sent[index - 1].what;
  for (const char* key : {"method", "path", "parts", "headers"})
    if (const auto expected = cursor.find(key)) findings.part(*expected, found.at(key));
  if (const auto order = cursor.find("order")) findings.same(*order, keysOf(found.at("parts")));
  if (const auto without = cursor.find("without")) {
    for (const JsonCursor& key : without->elements())
      if (found.at("parts").contains(key.text()))
        findings.differ(key, "no such part", encodeJson(found.at("parts").at(key.text())));
  }
  times(findings, cursor, sent, index - 1);
}

void sounds(Findings& findings, const JsonCursor& cursor) {
  findings.same(cursor, findings.past.sounds);
}
void alerts(Findings& findings, const JsonCursor& cursor) {
  findings.parts(cursor, findings.past.alerts);
}
void accountResults(Findings& findings, const JsonCursor& cursor) {
  findings.parts(cursor, findings.past.accountResults);
}
void standardOutput(Findings& findings, const JsonCursor& cursor) {
  findings.same(cursor, findings.past.standardOutput);
}

void log(Findings& findings, const JsonCursor& cursor) {
  findings.linesOf(cursor, findings.past.log);
}
void notInLog(Findings& findings, const JsonCursor& cursor) {
  for (const JsonCursor& text : cursor.elements())
    for (const std::string& line : findings.past.log)
      if (isInLine(text, line)) findings.differ(text, "nothing of this in the log", line);
}

constexpr Expectation expectations[] = {
    {"statuses", statuses},
    {"sounds", sounds},
    {"requests", requests},
    {"warmUps", warmUps},
    {"request", request},
    {"alerts", alerts},
    {"log", log},
    {"notInLog", notInLog},
    {"accountResults", accountResults},
    {"standardOutput", standardOutput},
};

}  // namespace

std::span<const Expectation> expectationsOfPast() {
  return expectations;
}

}  // namespace quillo::sim
