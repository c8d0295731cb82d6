#include "dictation_world.h"

namespace quillo {
namespace {

constexpr const char* usage =
    R"({"userId":"ada","plan":"free","dailyMinutes":1.0,"monthlyChars":10,)"
    R"("limits":{"dailyMinutes":10,"monthlyChars":1000},"remainingMinutes":9.0,)"
    R"("remainingChars":990,"isGuest":false,"updatedAt":"2026-03-04T09:00:00Z"})";

Reply transcription(const std::string& text, Duration delay) {
  return {.body = encodeJson({{"text", text}, {"duration", 1.5}}), .delay = delay};
}
Reply transformation(const std::string& text, Duration delay) {
  return {.body = encodeJson({{"text", text}, {"charactersUsed", 1}}), .delay = delay};
}

}  // namespace

SignedInDesktop::SignedInDesktop() {
  keychain().setItem("com.murmex.mac.auth", "mac.accessToken", "access-1");
  keychain().setItem("com.murmex.mac.auth", "mac.refreshToken", "refresh-1");
  userDefaults().setNumber("mac.tokenExpiresAt", secondsSince1970(clock().now()) + 86400);
}

DictationWorld::DictationWorld() {
  auto& network = desktop.network();
  network.handle("/transcribe",
                 [](const RecordedRequest&) { return transcription("hello there", 100ms); });
  network.handle("/transform", [](const RecordedRequest& request) {
    return transformation(parseJson(request.body)->at("text").get<std::string>(), 100ms);
  });
  network.handle("/get-usage", [](const RecordedRequest&) { return Reply{.body = usage}; });
  state.setUsageSource([this] {
    return withFreshAuth<UsageData>(auth, [this] { return api.getUsage(state.identity()); });
  });
  statusObserver_ = dictation.statusText.observe(
      [this](const Words& text) { statusTexts.push_back(text.english()); });
  desktop.runFor(1s);
}

void DictationWorld::toggle() {
  start(desktop.mainThread(), dictation.toggleRecording());
  desktop.runTurns();
}

void DictationWorld::record(Duration duration) {
  statusTexts.clear();
  desktop.voice().speak(duration + 1s);
  toggle();
  ASSERT_TRUE(desktop.runUntil([this] { return dictation.isRecording.get(); }, 5s));
  desktop.runFor(duration);
}

void DictationWorld::finish() {
  toggle();
  waitUntilProcessed();
}

void DictationWorld::waitUntilProcessed() {
  ASSERT_TRUE(desktop.runUntil([this] { return !dictation.isProcessing; }, 10min));
  desktop.voice().fallSilent();
}

void DictationWorld::dictate(const std::string& text, Duration duration) {
  hears(text);
  record(duration);
  finish();
}

void DictationWorld::hears(const std::string& text, Duration delay) {
  desktop.network().reply("/transcribe", transcription(text, delay));
}
void DictationWorld::transforms(const std::string& text, Duration delay) {
  desktop.network().reply("/transform", transformation(text, delay));
}

std::vector<std::string> DictationWorld::logged(const std::string& category) {
  std::vector<std::string> messages;
  for (const auto& entry : desktop.log().entries()) {
    if (entry.category == category) messages.push_back(entry.message);
  }
  return messages;
}

std::vector<std::string> DictationWorld::recordings() {
  std::vector<std::string> names;
  for (const FilePath& path : desktop.files().allFiles()) {
    if (path.extension() == ".m4a") names.push_back(path.filename());
  }
  return names;
}

std::optional<std::string> formField(const RecordedRequest& request, const std::string& name) {
  const std::string head = "name=\"" + name + "\"\r\n\r\n";
  const std::size_t found = request.body.find(head);
  if (found == std::string::npos) return std::nullopt;
  const std::size_t begin = found + head.size();
  return request.body.substr(begin, request.body.find("\r\n", begin) - begin);
}

void DictationFlow::TearDown() {
  settle();
  const std::size_t kept = dictation.lastFailedRecording() ? 1 : 0;
  EXPECT_EQ(recordings().size(), kept);
  EXPECT_EQ(dictation.canRetryLast.get(), kept == 1);
  EXPECT_FALSE(dictation.isRecording || dictation.isProcessing);
  EXPECT_EQ(desktop.newLiveFrames(), 0);
  EXPECT_EQ(desktop.audioSystem().runningEngines(), 0);
  EXPECT_TRUE(desktop.keyboard().postedKeysDown().empty());
  EXPECT_FALSE(gate.isBusy());
}

}  // namespace quillo
