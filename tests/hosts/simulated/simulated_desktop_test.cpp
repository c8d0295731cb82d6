// The simulated desktop itself: time, tasks, network, disk, and the user who answers alerts.
#include "hosts/simulated/simulated_desktop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillo::simulated {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SimulatedDesktopTest : public ::testing::Test {
 protected:
  ~SimulatedDesktopTest() override {
    desktop.abandonTasks();
    EXPECT_EQ(desktop.newLiveFrames(), 0);
  }
  Duration elapsed() const { return desktop.now().sinceStart; }

  SimulatedDesktop desktop;
};

TEST_F(SimulatedDesktopTest, TurnsRunInOrderAndTimeJumpsToTheNextTimer) {
  std::vector<std::string> order;
  MainThread& mainThread = desktop.mainThread();
  mainThread.callAfter(10s, [&] { order.push_back("timer 10"); });
  mainThread.callAfter(5s, [&] {
    order.push_back("timer 5");
    mainThread.post([&] { order.push_back("posted by timer 5"); });
  });
  mainThread.post([&] { order.push_back("first"); });
  mainThread.post([&] { order.push_back("second"); });
  const TimerId cancelled = mainThread.callAfter(1s, [&] { order.push_back("cancelled"); });
  mainThread.cancelTimer(cancelled);
  EXPECT_THAT(order, IsEmpty());
  desktop.runFor(7s);
  EXPECT_THAT(order, ElementsAre("first", "second", "timer 5", "posted by timer 5"));
  EXPECT_EQ(elapsed(), 7s);
  desktop.runUntilIdle();
  EXPECT_EQ(order.back(), "timer 10");
  EXPECT_EQ(elapsed(), 10s);
}

TEST_F(SimulatedDesktopTest, TheWorldGoesOnWhileTheMainThreadIsBlocked) {
  std::vector<std::string> order;
  MainThread& mainThread = desktop.mainThread();
  desktop.after(200ms, [&] { order.push_back("key pressed"); });
  mainThread.callAfter(100ms, [&] { order.push_back("timer"); });
  mainThread.post([&] {
    desktop.block(500ms);
    order.push_back("call returned");
  });
  desktop.runUntilIdle();
  EXPECT_THAT(order, ElementsAre("key pressed", "call returned", "timer"));
  EXPECT_EQ(elapsed(), 500ms);
}

Task<> failLater() {
  co_await sleepFor(1s);
  throw CancellationError();
}

TEST_F(SimulatedDesktopTest, AnErrorThatNobodyAwaitsFailsTheRun) {
  start(desktop.mainThread(), failLater());
  EXPECT_THROW(desktop.runFor(2s), CancellationError);
  desktop.runFor(2s);  // reported once
}

TEST_F(SimulatedDesktopTest, ALoopWithoutEndIsAnErrorAndNotAHang) {
  std::function<void()> again = [&] { desktop.mainThread().post(again); };
  again();
  EXPECT_THROW(desktop.runFor(1s), std::runtime_error);
}

TEST_F(SimulatedDesktopTest, AModalQuestionLetsTimersGoOn) {
  desktop.alerts().answer(1, 3s);
  bool timerRan = false;
  std::size_t pressed = 0;
  desktop.mainThread().post([&] {
    desktop.mainThread().callAfter(1s, [&] { timerRan = desktop.alerts().open() == 1; });
    pressed = desktop.alerts().runModal({"Turn it on?", "", {"Turn it on", "Not now"}});
  });
  desktop.runUntilIdle();
  EXPECT_TRUE(timerRan);
  EXPECT_EQ(pressed, 1u);
  EXPECT_EQ(elapsed(), 3s);
}

TEST_F(SimulatedDesktopTest, QueuesWorkBesideTheMainThreadInOrder) {
  const auto queue = desktop.queues().make("io");
  std::vector<int> order;
  for (int i = 0; i < 3; ++i) queue->post([&order, i] { order.push_back(i); });
  const int sum =
      desktop.await(runOn<int>(*queue, [&order] { return static_cast<int>(order.size()); }));
  EXPECT_EQ(sum, 3);
  EXPECT_THAT(order, ElementsAre(0, 1, 2));
}

TEST(SeededRandomTest, TheSameSeedGivesTheSameWorld) {
  SeededRandom a(7), b(7), other(8);
  // The first outputs for the state that SplitMix64 makes of seed 0, from the reference programs.
  EXPECT_EQ(SeededRandom(0).next(), 11091344671253066420ULL);
  for (int i = 0; i < 10; ++i) EXPECT_EQ(a.next(), b.next());
  EXPECT_NE(a.next(), other.next());
  for (int i = 0; i < 1000; ++i) EXPECT_LT(a.below(6), 6u);
  EXPECT_EQ(a.below(1), 0u);
}

// --- Network ---

class NetworkTest : public SimulatedDesktopTest {
 protected:
  std::unique_ptr<URLSession> session(WhenOffline whenOffline = WhenOffline::fail) {
    return desktop.network().make({60s, 240s, whenOffline});
  }
  static URLRequest post(Bytes body = "x") {
    return {"https://api.example/functions/v1/transcribe?x=1", "POST", {{"apikey", "k"}}, body, {}};
  }
  static URLRequest to(std::string url, std::string method = "GET") {
    return {std::move(url), std::move(method), {}, {}, {}};
  }
  HTTPResponse get(URLSession& from, URLRequest request = post()) {
    return std::get<HTTPResponse>(desktop.await(from.data(std::move(request))));
  }
  std::optional<int> errorOf(URLSession& from, URLRequest request = post()) {
    try {
      desktop.await(from.data(std::move(request)));
    } catch (const URLError& error) {
      return error.code();
    }
    return std::nullopt;
  }
};

TEST_F(NetworkTest, AnswersInTheirScriptedOrderAfterTheirDelay) {
  const auto urls = session();
  desktop.network().reply("/transcribe", Reply{.status = 503, .body = "busy", .delay = 2s});
  desktop.network().handle("/transcribe", [](const RecordedRequest& request) {
    return Reply{.body = "heard " + request.body};
  });
  EXPECT_EQ(get(*urls).status, 503);
  EXPECT_EQ(elapsed(), 2s);
  EXPECT_EQ(get(*urls, post("abc")).body, "heard abc");
  EXPECT_EQ(get(*urls, to("https://api.example/nowhere")).status, 404);
  const auto seen = desktop.network().requestsTo("/transcribe");
  ASSERT_EQ(seen.size(), 2u);
  EXPECT_EQ(seen[1].time.sinceStart, 2s);
  EXPECT_EQ(seen[1].header("APIKEY"), "k");
}

TEST_F(NetworkTest, AWarmUpOpensTheConnectionThatTheNextRequestUses) {
  const auto urls = session();
  desktop.network().setConnectTime(80ms);
  get(*urls, to("https://api.example/functions/v1/transcribe", "OPTIONS"));
  EXPECT_EQ(elapsed(), 80ms);
  desktop.network().reply("/transcribe", Reply{});
  get(*urls);
  EXPECT_EQ(elapsed(), 80ms);
  EXPECT_EQ(desktop.network().connectionsOpened(), 1);
  EXPECT_TRUE(desktop.network().requests().back().usedWarmConnection);
}

TEST_F(NetworkTest, TheRequestTimeOutCountsIdleTimeAndTheResourceTimeOutTheWhole) {
  const auto urls = session();
  auto& network = desktop.network();
  network.reply("/transcribe", Stall{});
  EXPECT_EQ(errorOf(*urls), -1001);
  EXPECT_EQ(elapsed(), 60s);

  // 100 s in all, but never 60 s without a byte.
  network.reply("/transcribe", Reply{.body = "slow!", .delay = 50s, .transfer = 50s});
  EXPECT_EQ(get(*urls).body, "slow!");
  EXPECT_EQ(elapsed(), 160s);

  network.reply("/transcribe", Reply{.body = Bytes(1000, 'x'), .transfer = 300s});
  EXPECT_EQ(errorOf(*urls), -1001);
  EXPECT_EQ(elapsed(), 400s);

  URLRequest impatient = post();
  impatient.timeout = 5s;
  network.reply("/transcribe", Reply{.delay = 6s});
  EXPECT_EQ(errorOf(*urls, impatient), -1001);
  EXPECT_EQ(elapsed(), 405s);
}

TEST_F(NetworkTest, OffLineFailsOrWaitsByTheSessionsChoice) {
  auto& network = desktop.network();
  network.setOnline(false);
  EXPECT_EQ(errorOf(*session()), -1009);
  network.reply("/transcribe", Reply{});
  desktop.after(10s, [&] { network.setOnline(true); });
  const auto patient = session(WhenOffline::waitForConnectivity);
  EXPECT_EQ(get(*patient).status, 200);
  EXPECT_EQ(elapsed(), 10s);

  network.reply("/transcribe", Stall{});
  desktop.after(1s, [&] { network.setOnline(false); });
  EXPECT_EQ(errorOf(*patient), -1005);  // broken on its way
  EXPECT_EQ(elapsed(), 11s);
}

TEST_F(NetworkTest, TruncatedAndForeignAnswersAreToldApart) {
  const auto urls = session();
  desktop.network().reply("/transcribe", Truncated{{.body = "0123456789", .delay = 1s}});
  EXPECT_EQ(errorOf(*urls), -1005);
  desktop.network().reply("/transcribe", NotHTTP{});
  EXPECT_TRUE(std::holds_alternative<NotHTTPResponse>(desktop.await(urls->data(post()))));
  EXPECT_EQ(errorOf(*urls, to("no address")), -1000);
}

TEST_F(NetworkTest, ACancelledTaskThrowsAtOnce) {
  const auto urls = session();
  desktop.network().reply("/transcribe", Reply{.delay = 30s});
  const auto handle = start(desktop.mainThread(), urls->data(post()));
  desktop.runFor(1s);
  EXPECT_EQ(desktop.network().requestsUnderWay(), 1u);
  handle.cancel();
  desktop.runTurns();
  ASSERT_TRUE(handle.isFinished());
  EXPECT_THROW(desktop.await(handle.value()), URLError);
  EXPECT_EQ(desktop.network().requestsUnderWay(), 0u);
}

// --- Disk, settings, keychain ---

TEST_F(SimulatedDesktopTest, AFullDiskRefusesGrowthUntilSpaceIsGivenBack) {
  auto& files = desktop.files();
  const FilePath folder = *files.directory(UserDirectory::caches);
  files.setFreeBytes(100);
  ASSERT_TRUE(files.createEmpty(folder / "a"));
  EXPECT_TRUE(files.append(folder / "a", Bytes(80, 'x')));
  EXPECT_FALSE(files.append(folder / "a", Bytes(30, 'x')));
  EXPECT_FALSE(files.writeAtomically(folder / "b", Bytes(30, 'x')));
  EXPECT_FALSE(files.exists(folder / "b"));
  EXPECT_EQ(files.size(folder / "a"), 80);
  EXPECT_TRUE(files.remove(folder / "a"));
  EXPECT_TRUE(files.writeAtomically(folder / "b", Bytes(30, 'x')));
}

TEST_F(SimulatedDesktopTest, ATornWriteKeepsTheOldContentsOrHalfOfTheNew) {
  auto& files = desktop.files();
  const FilePath path = files.temporaryDirectory() / "log";
  ASSERT_TRUE(files.writeAtomically(path, "old"));
  files.tearNextWrite();
  EXPECT_FALSE(files.writeAtomically(path, "new"));
  EXPECT_EQ(files.read(path), "old");
  files.tearNextWrite();
  EXPECT_FALSE(files.append(path, "12345678"));
  EXPECT_EQ(files.read(path), "old1234");
  EXPECT_TRUE(files.append(path, "!"));
}

TEST_F(SimulatedDesktopTest, AFailingPathFailsWithEverythingBelowIt) {
  auto& files = desktop.files();
  const FilePath folder = *files.directory(UserDirectory::library) / "Logs";
  ASSERT_TRUE(files.createDirectory(folder / "Quillo"));
  ASSERT_TRUE(files.createEmpty(folder / "Quillo" / "a"));
  files.makeUnwritable(folder);
  EXPECT_FALSE(files.append(folder / "Quillo" / "a", "x"));
  EXPECT_FALSE(files.remove(folder / "Quillo" / "a"));
  EXPECT_EQ(files.read(folder / "Quillo" / "a"), "");
  files.heal(folder);
  EXPECT_TRUE(files.move(folder / "Quillo", folder / "Other"));
  EXPECT_THAT(files.list(folder / "Other"), ElementsAre("a"));
}

TEST_F(SimulatedDesktopTest, SettingsThatNeverReachedTheDiskAreGoneInTheNextProcess) {
  auto& defaults = desktop.userDefaults();
  defaults.setBoolean("kept", false);
  defaults.loseWrites(true);
  defaults.setBoolean("lost", true);
  EXPECT_EQ(defaults.boolean("lost"), true);
  defaults.reload();
  EXPECT_FALSE(defaults.contains("lost"));
  EXPECT_EQ(defaults.boolean("kept"), false);
}

TEST_F(SimulatedDesktopTest, AKeychainMayRefuseOneOperationAlone) {
  auto& keychain = desktop.keychain();
  EXPECT_EQ(keychain.update("s", "a", "1"), KeychainStatus::itemNotFound);
  EXPECT_EQ(keychain.add("s", "a", "1"), KeychainStatus::success);
  EXPECT_EQ(keychain.add("s", "a", "2"), MemoryKeychain::duplicateItem);
  keychain.refuse(MemoryKeychain::Operation::update, MemoryKeychain::interactionNotAllowed);
  EXPECT_EQ(keychain.update("s", "a", "2"), MemoryKeychain::interactionNotAllowed);
  EXPECT_EQ(keychain.read("s", "a").data, "1");
}

}  // namespace
}  // namespace quillo::simulated
