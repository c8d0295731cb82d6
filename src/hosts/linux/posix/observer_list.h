// Functions that wait for something to happen.
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace quillo::linux_host {

// One thread. An observer may add others, and drop itself or others, while it is called.
template <class... Arguments>
class ObserverList {
 public:
  using Observer = std::function<void(Arguments...)>;

  // Observes until the result is dropped, which may happen after the list has gone.
  [[nodiscard]] std::shared_ptr<void> add(Observer observer) {
    auto kept = std::make_shared<Observer>(std::move(observer));
    observers_.push_back(kept);
    return kept;
  }

  void notify(Arguments... arguments) { present()(arguments...); }
  // Calls, at any later time, whoever observes now and still does then.
  std::function<void(Arguments...)> present() {
    std::erase_if(observers_, [](const auto& observer) { return observer.expired(); });
    return [observers = observers_](Arguments... arguments) {
      for (const auto& weak : observers) {
        if (const auto observer = weak.lock()) (*observer)(arguments...);
      }
    };
  }

 private:
  std::vector<std::weak_ptr<Observer>> observers_;
};

}  // namespace quillo::linux_host
