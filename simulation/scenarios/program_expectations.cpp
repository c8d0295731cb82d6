// The state of the program, as its windows show it.
#include "simulation/scenarios/findings.h"
#include "simulation/scenarios/setting_values.h"

namespace quillo::sim {
namespace {

Json orNull(const std::optional<Words>& text) {
  return text ? Json(text->english()) : Json(nullptr);
}
Json orNull(const std::optional<std::string>& text) {
  return text ? Json(*text) : Json(nullptr);
}

void status(Findings& findings, const JsonCursor& cursor) {
  findings.same(cursor, findings.world.dictation().statusText.get().english());
}
void error(Findings& findings, const JsonCursor& cursor) {
  findings.same(cursor, orNull(findings.world.dictation().lastError.get()));
}
void recording(Findings& findings, const JsonCursor& cursor) {
  findings.same(cursor, findings.world.dictation().isRecording.get());
}
void processing(Findings& findings, const JsonCursor& cursor) {
  findings.same(cursor, findings.world.dictation().isProcessing.get());
}
void canRetry(Findings& findings, const JsonCursor& cursor) {
  findings.same(cursor, findings.world.dictation().canRetryLast.get());
}

void signedIn(Findings& findings, const JsonCursor& cursor) {
  findings.same(cursor, findings.world.program().auth().isLoggedIn());
}
void account(Findings& findings, const JsonCursor& cursor) {
  const MacAuthService& auth = findings.world.program().auth();
  findings.members(cursor, {{"email", orNull(auth.userEmail.get())},
                            {"name", orNull(auth.fullName.get())},
                            {"avatar", orNull(auth.avatarURL.get())},
                            {"error", orNull(auth.error.get())},
                            {"loading", auth.isLoading.get()}});
}

void history(Findings& findings, const JsonCursor& cursor) {
  const Bytes encoded = encodeHistory(findings.world.program().history().entries);
  findings.parts(cursor, *parseJson(encoded));
}
void settings(Findings& findings, const JsonCursor& cursor) {
  for (const auto& [key, value] : cursor.members())
    findings.same(value, storedSetting(findings.world.desktop().userDefaults(), key));
}

constexpr Expectation expectations[] = {
    {"status", status},         {"error", error},       {"recording", recording},
    {"processing", processing}, {"canRetry", canRetry}, {"signedIn", signedIn},
    {"account", account},       {"history", history},   {"settings", settings},
};

}  // namespace

std::span<const Expectation> expectationsOfProgram() {
  return expectations;
}

}  // namespace quillo::sim
