// What every serial queue keeps.
#pragma once

#include <gmock/gmock.h>

#include <vector>

#include "contracts/support/contract_host.h"
#include "platform/serial_queue.h"

namespace quillo::contracts {

class SerialQueueHost : public ContractHost {
 public:
  virtual SerialQueues& queues() = 0;
};

class SerialQueueContract : public PortContract<SerialQueueHost> {
 protected:
  std::unique_ptr<SerialQueue> makeQueue() {
    return host().queues().make("com.murmex.mac.contract");
  }
};

TEST_P(SerialQueueContract, WorkRunsOneAfterAnotherAndTheEndOfTheQueueWaitsForIt) {
  std::vector<int> done;
  auto queue = makeQueue();
  for (int i = 0; i < 500; ++i) queue->post([&done, i] { done.push_back(i); });
  queue.reset();
  ASSERT_EQ(done.size(), 500u);
  EXPECT_TRUE(std::ranges::is_sorted(done));
}

TEST_P(SerialQueueContract, WorkMayPostMoreWorkHereAndOnTheMainThread) {
  std::vector<int> done;
  std::optional<std::size_t> seenOnMainThread;
  auto queue = makeQueue();
  queue->post([&] {
    queue->post([&] { done.push_back(2); });
    queue->post([&] {
      done.push_back(3);
      host().mainThread().post([&, count = done.size()] { seenOnMainThread = count; });
    });
    done.push_back(1);
  });
  ASSERT_TRUE(host().runUntil([&] { return seenOnMainThread.has_value(); }));
  queue.reset();
  EXPECT_EQ(seenOnMainThread, 3u);
  EXPECT_THAT(done, testing::ElementsAre(1, 2, 3));
}

inline Task<std::string> workOn(SerialQueue& queue, std::string given) {
  co_return co_await runOn<std::string>(queue, [given] { return given + " done"; });
}

TEST_P(SerialQueueContract, ATaskAwaitsWorkOnAQueueEvenWhenItIsCancelled) {
  const auto queue = makeQueue();
  EXPECT_EQ(await(host(), workOn(*queue, "a")).get(), "a done");
  const auto cancelled = startKept(host(), workOn(*queue, "b"));
  cancelled.handle.cancel();
  EXPECT_EQ(await(host(), cancelled).get(), "b done");
}

}  // namespace quillo::contracts
