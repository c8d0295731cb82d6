#include "service/recogniser_pool.h"

#include "service/service_error.h"

namespace quillo::service {

RecogniserPool::RecogniserPool(std::size_t recognisers, std::size_t waiting,
                               Pronunciation& pronunciation)
    : maximumWaiting_(waiting), pronunciation_(pronunciation), free_(recognisers) {}

RecogniserPool::Lease RecogniserPool::acquire() {
  std::unique_ptr<Recogniser> recogniser;
  {
    std::unique_lock lock(mutex_);
    if (free_ == 0) {
      if (waiting_ >= maximumWaiting_)
        throw ServiceError(503, "busy", "Too many recordings are waiting. Please try again.");
      ++waiting_;
      freed_.wait(lock, [this] { return free_ > 0; });
      --waiting_;
    }
    recogniser = take();
  }
  // From here on the lease counts the place as free again, whatever happens.
  return Lease(*this, std::move(recogniser));
}

std::unique_ptr<RecogniserPool::Lease> RecogniserPool::acquireIdle() {
  std::unique_ptr<Recogniser> recogniser;
  {
    const std::lock_guard lock(mutex_);
    if (free_ == 0 || waiting_ > 0) return nullptr;
    recogniser = take();
  }
  return std::make_unique<Lease>(*this, std::move(recogniser));
}

std::unique_ptr<Recogniser> RecogniserPool::take() {
  --free_;
  if (idle_.empty()) return nullptr;
  std::unique_ptr<Recogniser> recogniser = std::move(idle_.back());
  idle_.pop_back();
  return recogniser;
}

RecogniserPool::Lease::Lease(RecogniserPool& pool, std::unique_ptr<Recogniser> recogniser)
    : pool_(pool), recogniser_(std::move(recogniser)) {
  if (recogniser_) return;
  try {
    recogniser_ = std::make_unique<Recogniser>(pool.pronunciation_);
  } catch (...) {
    pool_.giveBack(nullptr);
    throw;
  }
}

RecogniserPool::Lease::~Lease() {
  pool_.giveBack(std::move(recogniser_));
}

void RecogniserPool::giveBack(std::unique_ptr<Recogniser> recogniser) {
  {
    const std::lock_guard lock(mutex_);
    ++free_;
    if (recogniser) idle_.push_back(std::move(recogniser));
  }
  freed_.notify_one();
}

}  // namespace quillo::service
