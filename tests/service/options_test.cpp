#include "service/options.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace quillo::service {
namespace {

TEST(Options, AreTakenOrRefusedWithASentence) {
  const CommandLine line = commandLineFrom(std::vector<std::string_view>{
      "--port", "0", "--data", ":memory:", "--confirm-email", "--token-lifetime", "30"});
  EXPECT_EQ(line.options.port, 0);
  EXPECT_EQ(line.folder, "");
  EXPECT_EQ(line.options.accounts.confirmation, EmailConfirmation::demanded);
  EXPECT_EQ(line.options.accounts.accessTokenLifetime, std::chrono::seconds(30));

  for (const auto& wrong : std::vector<std::vector<std::string_view>>{
           {"--port"}, {"--port", "65536"}, {"--port", "80x"}, {"--plan", "gold"}, {"54321"}})
    EXPECT_THROW(commandLineFrom(wrong), std::invalid_argument) << wrong.back();
}

}  // namespace
}  // namespace quillo::service
