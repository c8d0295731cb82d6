#include "app/linux/program_on_desktop.h"

#include <algorithm>
#include <fstream>

#include "hosts/linux/session/bundle.h"

namespace quillo {

void ProgramOnDesktop::launch(const Json& settings) {
  const auto json = [](const Json& body) {
    return contracts::ServedReply{.headers = {{"Content-Type", "application/json"}},
                                  .body = encodeJson(body),
                                  .delay = 200ms};  // longer than a tap
  };
  service_.serve("/functions/v1/transcribe", json({{"text", "hello there"}, {"duration", 1.0}}));
  service_.serve("/functions/v1/transform",
                 json({{"text", "Hello there."}, {"charactersUsed", 12}}));
  writeSettings(settings);
  ground_ = std::make_unique<linux_host::LinuxGround>();
  const BundleInformation bundle = linux_host::bundleOfThisProgram();
  auto opened = linux_host::X11Desktop::open({.mainThread = ground_->mainThread,
                                              .log = log_,
                                              .ownBundleIdentifier = bundle.bundleIdentifier,
                                              .lost = {}});
  ASSERT_TRUE(opened.desktop) << opened.refusal;
  desktop_ = std::make_unique<linux_host::LinuxDesktop>(*ground_, log_, bundle,
                                                        std::move(opened.desktop), views_);
  program_ =
      std::make_unique<Program>(portsOf(*desktop_), Backend{service_.address(), "anonymous"});
  program_->launch();
}

void ProgramOnDesktop::writeSettings(const Json& settings) {
  Json all = {{"mac.userId", "user-1"},
              {"mac.accessToken", "access"},
              {"mac.refreshToken", "refresh"},
              {"mac.tokenExpiresAt", 4102444800.5},
              {"mac.sawSelectionBubbleIntro", true},
              {"mac.showInDock", false}};
  all.update(settings);
  const FilePath folder = linux_host::XdgDirectories::ofThisUser().configHome.value() / "quillo";
  std::filesystem::create_directories(folder);
  std::ofstream(folder / "settings.json") << encodeJson(all);
}

void ProgramOnDesktop::press(const Keys& chord) {
  for (const Key key : chord) keyboard_.change(key, KeyDirection::down);
}

void ProgramOnDesktop::release(const Keys& chord) {
  for (auto key = chord.rbegin(); key != chord.rend(); ++key)
    keyboard_.change(*key, KeyDirection::up);
}

void ProgramOnDesktop::tap(const Keys& chord) {
  press(chord);
  host_.runFor(contracts::KeyboardHost::shortPress);
  release(chord);
}

bool ProgramOnDesktop::startsToListen() {
  return runUntil([this] { return dictation().isRecording.get(); });
}

void ProgramOnDesktop::speak() {
  microphone_.speak(1s, -20);
  host_.runFor(1200ms);
}

bool ProgramOnDesktop::becomes(const std::string& status) {
  return runUntil([&] { return dictation().statusText.get() == status; });
}

bool ProgramOnDesktop::editorBecomes(const std::string& text) {
  return runUntil([&] { return editor_.text() == text; });
}

void ProgramOnDesktop::dictateBy(const Keys& chord) {
  const std::string before = editor_.text();
  tap(chord);
  ASSERT_TRUE(startsToListen());
  speak();
  tap(chord);
  EXPECT_TRUE(becomes("Inserted")) << dictation().statusText.get().english();
  EXPECT_TRUE(editorBecomes(before + "Hello there.")) << editor_.text();
  EXPECT_FALSE(dictation().isRecording) << "one press acted twice";
}

bool ProgramOnDesktop::hasLogged(const std::string& line) {
  return std::ranges::count(log_.lines(), line) > 0;
}

}  // namespace quillo
