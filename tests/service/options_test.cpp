#include "service/options.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace quillo::service {
namespace {

CommandLine parsed(const std::vector<std::string_view>& arguments) {
  return commandLineFrom(arguments);
}

TEST(Options, AreTakenOrRefusedWithASentence) {
  EXPECT_EQ(parsed({}).options.port, 54321);
  EXPECT_FALSE(parsed({}).folder.empty());

  const CommandLine line = parsed({"--port", "0", "--data", ":memory:", "--daily-minutes", "5",
                                   "--confirm-email", "--token-lifetime", "30", "--plan", "pro"});
  EXPECT_EQ(line.options.port, 0);
  EXPECT_EQ(line.folder, "");
  EXPECT_EQ(line.options.freeDailyMinutes, 5);
  EXPECT_EQ(line.options.accounts.confirmation, EmailConfirmation::demanded);
  EXPECT_EQ(line.options.accounts.accessTokenLifetime, std::chrono::seconds(30));
  EXPECT_EQ(line.options.accounts.planOfNewAccounts, "pro");

  for (const auto& arguments : std::vector<std::vector<std::string_view>>{{"--port"},
                                                                          {"--port", "65536"},
                                                                          {"--port", "80x"},
                                                                          {"--port", ""},
                                                                          {"--plan", "gold"},
                                                                          {"--listen", "0.0.0.0"},
                                                                          {"54321"},
                                                                          {"--recognisers", "0"}})
    EXPECT_THROW(parsed(arguments), std::invalid_argument) << arguments.front();
}

}  // namespace
}  // namespace quillo::service
