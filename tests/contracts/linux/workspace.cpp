// The applications of a real X11 desktop, and a desktop that is missing or goes away.
#include <sys/wait.h>

#include <QProcess>
#include <list>

#include "contracts/linux/linux_x11_host.h"
#include "contracts/suites/workspace_contract.h"
#include "contracts/support/environment_variable.h"
#include "hosts/linux/session/linux_session.h"
#include "hosts/linux/x11_desktop_windows.h"

namespace quillo::contracts {
namespace {

class LinuxWorkspace final : public LinuxX11Host<WorkspaceHost> {
 public:
  Workspace& workspace() override { return desktop().workspace(); }
  std::int32_t launch(std::string_view name) override {
    applications_.emplace_back(otherProgram(), std::string(name));
    return applications_.back().process();
  }
  void focus(std::int32_t process) override { find(process).focus(); }
  void quit(std::int32_t process) override { find(process).quit(); }

 private:
  OtherApplication& find(std::int32_t process) {
    return *std::find_if(applications_.begin(), applications_.end(),
                         [&](const auto& each) { return each.process() == process; });
  }
  std::list<OtherApplication> applications_;
};
INSTANTIATE_TEST_SUITE_P(RealDesktop, WorkspaceContract, hostedBy<LinuxWorkspace>());

class FrontWindowTest : public testing::Test {
 protected:
  class Host final : public LinuxX11Host<ContractHost> {
   public:
    PhysicalKeyboard keyboard{otherProgram()};
  };
  bool runUntil(const std::function<bool()>& holds) {
    return host_.runUntil(holds, std::chrono::seconds(20));
  }
  linux_host::DesktopWindow front() {
    EXPECT_TRUE(runUntil([this] { return windows_.front().has_value(); }));
    return windows_.front().value_or(linux_host::DesktopWindow());
  }
  bool isStill() { return host_.mainThread().now() - windows_.lastInput() > shortly; }
  static constexpr Duration shortly = std::chrono::milliseconds(100);

  Host host_;
  linux_host::X11DesktopWindows windows_{host_.desktop()};
};

TEST_F(FrontWindowTest, IsKnownWithoutAskingAndFollowedWhateverHappensToIt) {
  OtherApplication program(host_.otherProgram(), "letter");
  const auto before = front();
  EXPECT_EQ(before.processIdentifier, program.process());
  EXPECT_TRUE(runUntil([this] { return isStill(); })) << "nobody touches anything";
  const auto written = xcb_total_written(host_.desktop().connection().get());
  for (int look = 0; look < 10; ++look) {
    EXPECT_EQ(windows_.front(), before);
    EXPECT_TRUE(isStill());
    EXPECT_EQ(host_.desktop().workspace().frontmostApplication()->localizedName, "letter");
  }
  EXPECT_EQ(xcb_total_written(host_.desktop().connection().get()), written);

  xcb_connection_t* const other = host_.otherProgram().get();
  const auto window = static_cast<xcb_window_t>(before.identifier);
  const std::uint32_t place[] = {300, 200};
  xcb_configure_window(other, window, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, place);
  xcb_flush(other);
  EXPECT_TRUE(runUntil([&] { return front().x != before.x && front().y != before.y; }));
  EXPECT_FALSE(isStill()) << "all that is in it has moved along";
  xcb_change_property(other, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                      12, "table\0table");
  xcb_flush(other);
  EXPECT_TRUE(runUntil([this] {
    return host_.desktop().workspace().frontmostApplication()->localizedName == "table";
  }));

  EXPECT_TRUE(runUntil([this] { return isStill(); }));
  host_.keyboard.change(Key::a, KeyDirection::down);
  host_.keyboard.change(Key::a, KeyDirection::up);
  EXPECT_TRUE(runUntil([this] { return !isStill(); }));
  EXPECT_TRUE(runUntil([this] { return isStill(); })) << "for a while";
  program.quit();
  EXPECT_TRUE(runUntil([this] { return !windows_.front(); }));
}

// --- Real applications ---

class RealApplicationsTest : public testing::Test {
 protected:
  // A host without an editor of its own.
  class Host final : public LinuxX11Host<ContractHost> {
   public:
    PhysicalKeyboard keyboard{otherProgram()};
  };

  std::optional<RunningApplication> launch(const QString& program, const QStringList& arguments) {
    process_.start(program, arguments);
    EXPECT_TRUE(process_.waitForStarted());
    const auto process = static_cast<std::int32_t>(process_.processId());
    std::optional<RunningApplication> front;
    EXPECT_TRUE(host_.runUntil(
        [&] {
          front = host_.desktop().workspace().frontmostApplication();
          return front && front->processIdentifier == process;
        },
        std::chrono::seconds(20)))
        << program.toStdString() << " did not come to the front";
    return front;
  }
  void paste(std::string_view text) {
    host_.desktop().pasteboard().clearContents();
    ASSERT_TRUE(host_.desktop().pasteboard().setString(text));
    EXPECT_TRUE(postChord(host_, host_.desktop().keyPoster(), Key::v));
  }
  FilePath path() const { return folder_.path() / "text.txt"; }
  std::string file() const { return contentsOf(path()); }
  void controlAnd(Key key) {
    host_.keyboard.change(Key::control, KeyDirection::down);
    host_.keyboard.change(key, KeyDirection::down);
    host_.runFor(KeyboardHost::shortPress);
    host_.keyboard.change(key, KeyDirection::up);
    host_.keyboard.change(Key::control, KeyDirection::up);
  }
  void endApplication() {
    RunningApplication ended;
    ended.processIdentifier = static_cast<std::int32_t>(process_.processId());
    process_.kill();
    siginfo_t end{};
    ::waitid(P_PID, static_cast<id_t>(process_.processId()), &end, WEXITED | WNOWAIT);
    EXPECT_TRUE(host_.desktop().workspace().isTerminated(ended)) << "nobody has taken its end";
    process_.waitForFinished();
  }

  TemporaryFolder folder_;
  Host host_;
  QProcess process_;
};

TEST_F(RealApplicationsTest, AnEditorIsKnownByItsDesktopEntryAndReceivesAPaste) {
  const auto editor = launch("mousepad", {path().c_str()});
  ASSERT_TRUE(editor);
  EXPECT_EQ(editor->bundleIdentifier, "org.xfce.mousepad") << "it is not in the table";
  EXPECT_EQ(editor->localizedName, "Mousepad");
  paste("Pasted into a real editor: äß 🎙");
  // Saving early saves nothing, so that is tried until the paste has arrived.
  EXPECT_TRUE(host_.runUntil(
      [&] {
        if (!file().empty()) return true;
        controlAnd(Key::s);
        host_.runFor(std::chrono::milliseconds(100));
        return false;
      },
      std::chrono::seconds(20)));
  EXPECT_EQ(file(), "Pasted into a real editor: äß 🎙");
  endApplication();
}

TEST_F(RealApplicationsTest, ATerminalIsKnownByTheTableAndReceivesAPaste) {
  const auto terminal =
      launch("xterm", {"-u8", "-e", "sh", "-c", QString("cat >'%1'").arg(path().c_str())});
  ASSERT_TRUE(terminal);
  EXPECT_EQ(terminal->bundleIdentifier, "com.apple.Terminal");
  // The program in the terminal runs: the terminal listens.
  ASSERT_TRUE(
      host_.runUntil([&] { return std::filesystem::exists(path()); }, std::chrono::seconds(20)));
  paste("Pasted into a real terminal\n");
  EXPECT_TRUE(host_.runUntil([&] { return file() == "Pasted into a real terminal\n"; },
                             std::chrono::seconds(20)))
      << file();
  endApplication();
}

// --- A desktop that is missing, bare or gone ---

TEST(X11DesktopTest, WithoutADisplayThereIsASentence) {
  LinuxContractHost<ContractHost> host;
  LinesLog log;
  {
    const EnvironmentVariable none("DISPLAY", "");
    const auto opened = linux_host::X11Desktop::open({host.mainThread(), log, {}, {}});
    EXPECT_FALSE(opened.desktop);
    EXPECT_EQ(opened.refusal,
              "Quillo needs an X11 desktop, and there is none: DISPLAY is not set.");
  }
  const EnvironmentVariable missing("DISPLAY", ":12345");
  const auto opened = linux_host::X11Desktop::open({host.mainThread(), log, {}, {}});
  EXPECT_FALSE(opened.desktop);
  EXPECT_EQ(opened.refusal, "Quillo cannot reach the X11 desktop at display :12345.");
}

TEST(LinuxSessionTest, OfWaylandSaysWhatWorks) {
  const EnvironmentVariable noType("XDG_SESSION_TYPE", "x11");
  EXPECT_FALSE(linux_host::LinuxSession().limitation());
  const EnvironmentVariable display("WAYLAND_DISPLAY", "wayland-1");
  EXPECT_TRUE(linux_host::LinuxSession().limitation());
}

TEST(X11DesktopTest, WorksWithoutAWindowManagerAndOutlivesItsServer) {
  QProcess server;
  server.start("Xvfb", {"-displayfd", "1", "-nolisten", "tcp"});
  ASSERT_TRUE(server.waitForReadyRead(20'000));
  const EnvironmentVariable bare("DISPLAY", (":" + server.readLine().trimmed()).constData());

  // What a window manager that has ended leaves behind.
  const auto other = linux_host::X11Connection::open();
  const xcb_window_t dead = other->createHiddenWindow(XCB_EVENT_MASK_NO_EVENT);
  xcb_change_property(other->get(), XCB_PROP_MODE_REPLACE, other->root(),
                      other->atom("_NET_SUPPORTING_WM_CHECK"), XCB_ATOM_WINDOW, 32, 1, &dead);
  other->waitForServer();

  LinuxContractHost<ContractHost> host;
  LinesLog log;
  int lost = 0;
  auto opened = linux_host::X11Desktop::open({host.mainThread(), log, "ours", [&lost] { ++lost; }});
  ASSERT_TRUE(opened.desktop);
  linux_host::X11Desktop& desktop = *opened.desktop;
  EXPECT_FALSE(desktop.workspace().frontmostApplication());

  QProcess program;
  program.start(QCoreApplication::applicationDirPath() + "/desktop_application", {"bare"});
  ASSERT_TRUE(program.waitForStarted());
  RunningApplication application;
  application.processIdentifier = static_cast<std::int32_t>(program.processId());
  EXPECT_TRUE(host.runUntil(
      [&] {
        desktop.workspace().activate(application);
        const auto front = desktop.workspace().frontmostApplication();
        return front == application && front->localizedName == "bare";
      },
      std::chrono::seconds(20)));
  const auto hotKey =
      desktop.hotKeys().registerHotKey(codeOf(Key::e), hot_key_modifiers::control, [] {});
  EXPECT_TRUE(hotKey);
  desktop.pasteboard().clearContents();
  EXPECT_TRUE(desktop.pasteboard().setString("text"));

  server.kill();
  server.waitForFinished();
  EXPECT_TRUE(host.runUntil([&] { return lost > 0; }, std::chrono::seconds(20)));
  EXPECT_FALSE(desktop.workspace().frontmostApplication());
  EXPECT_FALSE(desktop.workspace().activate(application));
  EXPECT_FALSE(desktop.hotKeys().registerHotKey(codeOf(Key::j), 0, [] {}));
  EXPECT_FALSE(desktop.keyPoster().post(codeOf(Key::a), KeyDirection::down, 0, 0));
  EXPECT_EQ(desktop.keyboardState().modifierFlags(), 0u);
  EXPECT_FALSE(desktop.pasteboard().setString("text"));
  desktop.pasteboard().clearContents();
  EXPECT_FALSE(desktop.pasteboard().string());
  host.runFor(std::chrono::milliseconds(20));
  EXPECT_EQ(lost, 1);
  program.waitForFinished();
}

}  // namespace
}  // namespace quillo::contracts
