// The simulated main thread and serial queues keep the contracts.
#include "contracts/simulated/simulated_host.h"
#include "contracts/suites/main_thread_contract.h"
#include "contracts/suites/serial_queue_contract.h"

namespace quillo::contracts {
namespace {

class SimulatedMainThread final : public SimulatedHost<MainThreadHost> {
 public:
  // Everything is on one thread here.
  void elsewhere(const std::function<void()>& work) override { work(); }
};
INSTANTIATE_TEST_SUITE_P(Simulated, MainThreadContract, hostedBy<SimulatedMainThread>());

class SimulatedSerialQueues final : public SimulatedHost<SerialQueueHost> {
 public:
  SerialQueues& queues() override { return desktop_.queues(); }
};
INSTANTIATE_TEST_SUITE_P(Simulated, SerialQueueContract, hostedBy<SimulatedSerialQueues>());

}  // namespace
}  // namespace quillo::contracts
