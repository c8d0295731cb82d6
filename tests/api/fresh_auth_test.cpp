#include "api/fresh_auth.h"

#include <gtest/gtest.h>

#include "hosts/simulated/simulated_desktop.h"

namespace quillo {
namespace {

struct Script {
  std::vector<int> statuses{};  // of one request after another
  bool loggedIn = true;
  bool stale = false;
  bool refreshWorks = true;
  bool endsAtRequest = false;
};

class ScriptedSession final : public SessionAuthority {
 public:
  explicit ScriptedSession(Script script) : script_(std::move(script)) {}

  bool isLoggedIn() const override { return script_.loggedIn; }
  bool needsRefresh() const override { return script_.stale; }
  Task<bool> refreshSession() override {
    events += "refresh ";
    co_await yieldTurn();
    co_return script_.refreshWorks;
  }
  Task<int> request() {
    const int status = script_.statuses.at(0);
    script_.statuses.erase(script_.statuses.begin());
    events += std::to_string(status) + " ";
    if (script_.endsAtRequest) script_.loggedIn = false;
    if (status != 200) throw APIError::serverError(status, "refused");
    co_return status;
  }

  std::string events;

 private:
  Script script_;
};

// What happened, and the words of the error that it ended with.
std::string eventsOf(Script script) {
  simulated::SimulatedDesktop desktop;
  ScriptedSession session(std::move(script));
  try {
    desktop.await(withFreshAuth<int>(session, [&] { return session.request(); }));
  } catch (const APIError& error) {
    session.events += error.errorDescription().value();
  }
  return session.events;
}

TEST(FreshAuthTest, RefreshesASessionThatIsStaleOrRefusedOnce) {
  EXPECT_EQ(eventsOf({.statuses = {200}}), "200 ");
  EXPECT_EQ(eventsOf({.statuses = {200}, .stale = true}), "refresh 200 ");
  EXPECT_EQ(eventsOf({.stale = true, .refreshWorks = false}), "refresh Please sign in again.");
  EXPECT_EQ(eventsOf({.statuses = {401, 200}}), "401 refresh 200 ");
  EXPECT_EQ(eventsOf({.statuses = {403, 401}}), "403 refresh 401 refused");
  EXPECT_EQ(eventsOf({.statuses = {401}, .refreshWorks = false}),
            "401 refresh Please sign in again.");
}

TEST(FreshAuthTest, LeavesOtherErrorsAndGuestsAlone) {
  EXPECT_EQ(eventsOf({.statuses = {429}}), "429 refused");
  EXPECT_EQ(eventsOf({.statuses = {401}, .loggedIn = false, .stale = true}), "401 refused");
  EXPECT_EQ(eventsOf({.statuses = {401}, .endsAtRequest = true}), "401 refused");
}

}  // namespace
}  // namespace quillo
