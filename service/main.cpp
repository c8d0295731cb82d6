// quillo-service: the development stand-in of the hosted service.
#include <signal.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <mutex>
#include <vector>

#include "service/options.h"
#include "service/service.h"

namespace quillo::service {
namespace {

// Blocked before any thread starts, so that only `waitForEnd` receives them.
sigset_t endSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGINT);
  return signals;
}

void waitForEnd(const sigset_t& signals) {
  int received = 0;
  sigwait(&signals, &received);
}

void printMail(const Mail& mail) {
  std::cout << "mail to=" << mail.to << " code=" << mail.code << " subject=\"" << mail.subject
            << "\"" << std::endl;
}

void printServed(std::string_view method, std::string_view path, int status,
                 std::chrono::milliseconds taken) {
  std::fprintf(stderr, "%.*s %.*s %d %lld ms\n", static_cast<int>(method.size()), method.data(),
               static_cast<int>(path.size()), path.data(), status,
               static_cast<long long>(taken.count()));
}

std::string databaseIn(const std::string& folder) {
  if (folder.empty()) return ":memory:";
  std::filesystem::create_directories(folder);
  return folder + "/service.sqlite";
}

int run(CommandLine line) {
  const sigset_t signals = endSignals();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  line.options.database = databaseIn(line.folder);
  Service service(line.options, systemClock(), printMail, printServed);
  service.start();
  std::cout << "quillo-service for development only address=127.0.0.1 port=" << service.port()
            << " database=" << line.options.database << std::endl;
  waitForEnd(signals);
  service.stop();
  return 0;
}

}  // namespace
}  // namespace quillo::service

int main(int count, char** values) {
  using namespace quillo::service;
  try {
    const std::vector<std::string_view> arguments(values + 1, values + count);
    CommandLine line = commandLineFrom(arguments);
    if (line.help) {
      std::cout << helpText();
      return 0;
    }
    return run(std::move(line));
  } catch (const std::invalid_argument& error) {
    std::cerr << "quillo-service: " << error.what() << "\n" << helpText();
    return 2;
  } catch (const std::exception& error) {
    std::cerr << "quillo-service: " << error.what() << "\n";
    return 1;
  }
}
