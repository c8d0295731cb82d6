// The program towards the desktop: windows, opening things, the session and the machine.
#include <gmock/gmock.h>

#include <QApplication>
#include <csignal>
#include <cstdlib>
#include <fstream>

#include "base/identifiers.h"
#include "contracts/linux/linux_contract_host.h"
#include "contracts/support/environment_variable.h"
#include "hosts/linux/qt/qt_application.h"
#include "hosts/linux/session/autostart_login_item.h"
#include "hosts/linux/session/bundle.h"
#include "hosts/linux/session/desktop_entries.h"
#include "hosts/linux/session/linux_machine.h"
#include "hosts/linux/session/xdg_opener.h"

namespace quillo::linux_host {
namespace {

using contracts::ContractHost;
using contracts::EnvironmentVariable;
using contracts::LinuxContractHost;
using contracts::TemporaryFolder;
using testing::ElementsAre;
using testing::HasSubstr;

TEST(QtApplication, EndsThroughItsCallback) {
  LinuxContractHost<ContractHost> host;
  QtApplication application(bundleOfThisProgram(), host.mainThread());
  EXPECT_EQ(application.bundle().bundleIdentifier, "com.murmex.mac");
  EXPECT_TRUE(FilePath(application.bundle().bundlePath).is_absolute());

  std::vector<std::string> events;
  application.setEvents({.didBecomeActive = [] {},
                         .reopen = [&] { events.push_back("reopen"); },
                         .willTerminate = [&] { events.push_back("willTerminate"); }});
  application.reopen();
  host.mainThread().post([&] {
    application.terminate();
    events.push_back("asked");
  });
  QApplication::exec();
  EXPECT_THAT(events, ElementsAre("reopen", "asked", "willTerminate"));
}

TEST(XdgOpener, StartsTheUsersProgramWithTheWholeAddress) {
  LinuxContractHost<ContractHost> host;
  const TemporaryFolder folder;
  const FilePath opened = folder.path() / "opened";
  const FilePath program = folder.path() / "xdg-open";
  // It also says which signals it was started with blocked.
  std::ofstream(program) << "#!/bin/sh\necho \"$# $1 $(grep SigBlk /proc/$$/status | cut -f2)\" >>"
                         << opened << ".new\n"
                         << "mv " << opened << ".new " << opened << "\n";
  std::filesystem::permissions(program, std::filesystem::perms::owner_all);
  const auto nextLine = [&] {
    EXPECT_TRUE(
        host.runUntil([&] { return std::filesystem::exists(opened); }, std::chrono::seconds(10)));
    std::string line;
    std::getline(std::ifstream(opened), line);
    std::filesystem::remove(opened);
    return line;
  };
  // As the program itself has it, which takes this signal in its loop.
  sigset_t blocked;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
  XdgOpener opener;
  {
    const EnvironmentVariable path("PATH", (folder.path().string() + ":/usr/bin:/bin").c_str());
    EXPECT_TRUE(opener.openFile("/tmp/Quillo Mac.log"));
    EXPECT_EQ(nextLine(), "1 /tmp/Quillo Mac.log 0000000000000000");
    EXPECT_TRUE(opener.openURL("https://quillo.invalid/help?a=b&c=%20"));
    EXPECT_EQ(nextLine(), "1 https://quillo.invalid/help?a=b&c=%20 0000000000000000");
    EXPECT_FALSE(opener.openURL("--help"));
    EXPECT_FALSE(opener.openURL(""));
  }
  pthread_sigmask(SIG_UNBLOCK, &blocked, nullptr);
  const EnvironmentVariable nothing("PATH", "/nowhere");
  EXPECT_FALSE(opener.openURL("https://quillo.invalid/"));
}

TEST(AutostartLoginItem, IsAnEntryThatTheUserMaySwitchOff) {
  const TemporaryFolder folder;
  const FilePath entry = folder.path() / "autostart" / "quillo.desktop";
  AutostartLoginItem item(folder.path() / "autostart", R"(/opt/my "tools"/100%/$quillo)");
  EXPECT_FALSE(item.isEnabled());
  EXPECT_TRUE(item.unregisterItem()) << "what is not there is no failure";
  EXPECT_TRUE(item.registerItem());
  EXPECT_TRUE(item.isEnabled());
  EXPECT_THAT(contracts::contentsOf(entry),
              HasSubstr("\nExec=\"/opt/my \\\\\"tools\\\\\"/100%%/\\\\$quillo\"\n"));
  std::ofstream(entry, std::ios::app) << "Hidden=true\n";
  EXPECT_FALSE(item.isEnabled());
  EXPECT_TRUE(item.registerItem());
  EXPECT_TRUE(item.isEnabled());
  EXPECT_TRUE(item.unregisterItem());
  EXPECT_FALSE(item.isEnabled());
  EXPECT_FALSE(AutostartLoginItem("/proc/nowhere", "/bin/true").registerItem());
}

TEST(DesktopEntries, TheUsersOwnGoFirstAndNameAProgramInTheUsersLanguage) {
  const TemporaryFolder folder;
  const auto write = [&](const char* place, const char* text) {
    std::filesystem::create_directory(folder.path() / place);
    std::ofstream(folder.path() / place / "org.example.Notes.desktop") << text;
    return (folder.path() / place).string();
  };
  DesktopEntries entries(
      {write("own",
             "[Desktop Entry]\nName=Notes\nName[de]=Notizen\nStartupWMClass=notes\n"
             "[Desktop Action terminal]\nCategories=TerminalEmulator;\n"),
       write("system", "[Desktop Entry]\nName=Old\nStartupWMClass=notes\n")},
      "de_AT.UTF-8");
  const DesktopEntry* const entry = entries.withWindowClass("Notes");
  ASSERT_NE(entry, nullptr);
  EXPECT_EQ(entry->name, "Notizen");
  EXPECT_FALSE(entry->isTerminal);
}

TEST(LinuxMachine, NamesTheLanguagesAsTheUserOrderedThem) {
  const LinuxMachine machine;
  const EnvironmentVariable all("LC_ALL", nullptr);
  const EnvironmentVariable messages("LC_MESSAGES", "de_AT.UTF-8");
  const EnvironmentVariable lang("LANG", "en_GB.UTF-8");
  {
    const EnvironmentVariable language("LANGUAGE", nullptr);
    EXPECT_THAT(machine.preferredLanguages(), ElementsAre("de-AT"));
  }
  const EnvironmentVariable language("LANGUAGE", "sr_RS@latin:pt_BR::fr");
  EXPECT_THAT(machine.preferredLanguages(), ElementsAre("sr-Latn-RS", "pt-BR", "fr", "de-AT"));
  const EnvironmentVariable none("LC_ALL", "C.UTF-8");
  EXPECT_THAT(machine.preferredLanguages(), testing::IsEmpty());
}

TEST(LinuxMachine, HidesTheMachineIdInAnIdOfItsOwn) {
  const auto id = platformUUIDOf("0123456789abcdef0123456789abcdef");
  ASSERT_TRUE(id.has_value());
  EXPECT_EQ(canonicalUuid(*id), id);
  EXPECT_EQ((*id)[14], '4') << "version 4, as the ids of systemd";
  EXPECT_EQ(platformUUIDOf("0123456789abcdef0123456789abcdef"), id);
  EXPECT_NE(platformUUIDOf("0123456789abcdef0123456789abcdee"), id);
  for (const char* noId :
       {"", "uninitialized", "0123456789abcdef", "0123456789abcdef0123456789abcdeg"})
    EXPECT_EQ(platformUUIDOf(noId), std::nullopt) << noId;
}

}  // namespace
}  // namespace quillo::linux_host
