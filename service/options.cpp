#include "service/options.h"

#include <array>
#include <charconv>
#include <cstdlib>
#include <stdexcept>

#include "service/plans.h"

namespace quillo::service {
namespace {

constexpr std::string_view help = R"(quillo-service: the development stand-in of the hosted service.
It listens on 127.0.0.1 alone.

  --port N                the port; 0 takes any free one (54321)
  --data DIR              where the database lives; :memory: keeps none
                          ($XDG_DATA_HOME/quillo-service)
  --daily-minutes N       allowance of the free plan (60)
  --monthly-characters N  allowance of the free plan (200000)
  --plan ID               plan of new accounts: free or pro (free)
  --confirm-email         a sign-up must be confirmed with a code, printed here as mail
  --token-lifetime N      seconds that an access token serves (3600)
  --deletion-window N     minutes after sign-in in which an account may be deleted (10)
  --recognisers N         recordings recognised at a time, 100 MB each (2)
  --help
)";

std::int64_t number(std::string_view option, std::string_view text, std::int64_t least,
                    std::int64_t most) {
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || value < least || value > most)
    throw std::invalid_argument(std::string(option) + " wants a number from " +
                                std::to_string(least) + " to " + std::to_string(most));
  return value;
}

std::string plan(std::string_view id) {
  if (!PlanCatalogue(0, 0).has(id)) throw std::invalid_argument("there is no such plan");
  return std::string(id);
}

struct Option {
  std::string_view name;
  void (*take)(CommandLine& line, std::string_view name, std::string_view value);
};

constexpr std::int64_t many = 1'000'000'000;

constexpr std::array optionsWithValue{
    Option{"--port",
           [](CommandLine& line, std::string_view name, std::string_view value) {
             line.options.port = static_cast<int>(number(name, value, 0, 65535));
           }},
    Option{"--data",
           [](CommandLine& line, std::string_view, std::string_view value) {
             line.folder = value == ":memory:" ? "" : std::string(value);
           }},
    Option{"--daily-minutes",
           [](CommandLine& line, std::string_view name, std::string_view value) {
             line.options.freeDailyMinutes = number(name, value, 0, many);
           }},
    Option{"--monthly-characters",
           [](CommandLine& line, std::string_view name, std::string_view value) {
             line.options.freeMonthlyCharacters = number(name, value, 0, many);
           }},
    Option{"--plan",
           [](CommandLine& line, std::string_view, std::string_view value) {
             line.options.accounts.planOfNewAccounts = plan(value);
           }},
    Option{"--token-lifetime",
           [](CommandLine& line, std::string_view name, std::string_view value) {
             line.options.accounts.accessTokenLifetime =
                 std::chrono::seconds(number(name, value, 1, many));
           }},
    Option{"--deletion-window",
           [](CommandLine& line, std::string_view name, std::string_view value) {
             line.options.accounts.deletionWindow =
                 std::chrono::minutes(number(name, value, 0, many));
           }},
    Option{"--recognisers",
           [](CommandLine& line, std::string_view name, std::string_view value) {
             line.options.recognisers = static_cast<std::size_t>(number(name, value, 1, 64));
           }},
};

std::string defaultFolder() {
  const char* data = std::getenv("XDG_DATA_HOME");
  if (data && *data == '/') return std::string(data) + "/quillo-service";
  const char* home = std::getenv("HOME");
  return std::string(home ? home : "") + "/.local/share/quillo-service";
}

}  // namespace

std::string_view helpText() {
  return help;
}

CommandLine commandLineFrom(std::span<const std::string_view> arguments) {
  CommandLine line;
  line.folder = defaultFolder();
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view name = arguments[i];
    if (name == "--help") {
      line.help = true;
      continue;
    }
    if (name == "--confirm-email") {
      line.options.accounts.confirmation = EmailConfirmation::demanded;
      continue;
    }
    const auto option = std::find_if(optionsWithValue.begin(), optionsWithValue.end(),
                                     [name](const Option& o) { return o.name == name; });
    if (option == optionsWithValue.end())
      throw std::invalid_argument("unknown option " + std::string(name));
    if (i + 1 == arguments.size())
      throw std::invalid_argument(std::string(name) + " wants a value");
    option->take(line, name, arguments[++i]);
  }
  return line;
}

}  // namespace quillo::service
