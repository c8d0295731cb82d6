// A value that others watch.
#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace quillo {

// Ends an observation when it goes.
class Subscription {
 public:
  Subscription() = default;
  explicit Subscription(std::shared_ptr<void> token) : token_(std::move(token)) {}

 private:
  std::shared_ptr<void> token_;
};

// Main thread only. Observers run in the assignment, after the new value stands, in the order of
// their registration, also when the new value equals the old one.
template <class T>
class Published {
 public:
  using Observer = std::function<void(const T&)>;

  Published() = default;
  explicit Published(T initial) : value_(std::move(initial)) {}
  Published(const Published&) = delete;
  Published& operator=(const Published&) = delete;

  const T& get() const { return value_; }
  operator const T&() const { return value_; }
  const T* operator->() const { return &value_; }

  Published& operator=(T value) {
    value_ = std::move(value);
    notify();
    return *this;
  }

  [[nodiscard]] Subscription observe(Observer observer) const {
    auto kept = std::make_shared<Observer>(std::move(observer));
    observers_.push_back(kept);
    return Subscription(std::move(kept));
  }

 private:
  void notify() {
    std::erase_if(observers_, [](const auto& observer) { return observer.expired(); });
    // A copy: an observer may register another one.
    const auto observers = observers_;
    for (const auto& weak : observers) {
      if (const auto observer = weak.lock()) (*observer)(value_);
    }
  }

  T value_{};
  mutable std::vector<std::weak_ptr<Observer>> observers_;  // who looks changes nothing
};

}  // namespace quillo
