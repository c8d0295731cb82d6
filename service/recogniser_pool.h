// A few recognisers for many requests.
#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <vector>

#include "service/pronunciation.h"
#include "service/recogniser.h"

namespace quillo::service {

class RecogniserPool {
 public:
  // At most `recognisers` are made, each when it is first needed; at most `waiting` requests wait
  // for one. `pronunciation` outlives the pool.
  RecogniserPool(std::size_t recognisers, std::size_t waiting, Pronunciation& pronunciation);

  // One recogniser for the holder alone; goes back to the pool at the end. The pool outlives it.
  class Lease {
   public:
    Lease(RecogniserPool& pool, std::unique_ptr<Recogniser> recogniser);
    ~Lease();
    Lease(const Lease&) = delete;
    Lease& operator=(const Lease&) = delete;
    Recogniser* operator->() const { return recogniser_.get(); }

   private:
    RecogniserPool& pool_;
    std::unique_ptr<Recogniser> recogniser_;
  };

  // Waits for its turn. Throws ServiceError 503 when too many wait already. Any thread.
  Lease acquire();
  // One that nobody else wants now, or null. Any thread.
  std::unique_ptr<Lease> acquireIdle();

 private:
  std::unique_ptr<Recogniser> take();  // null when it is to be made; with the lock held
  void giveBack(std::unique_ptr<Recogniser> recogniser);

  const std::size_t maximumWaiting_;
  Pronunciation& pronunciation_;
  std::mutex mutex_;
  std::condition_variable freed_;
  std::size_t free_;  // that may be leased, made or not
  std::size_t waiting_ = 0;
  std::vector<std::unique_ptr<Recogniser>> idle_;
};

}  // namespace quillo::service
