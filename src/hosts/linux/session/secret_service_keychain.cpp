#include "hosts/linux/session/secret_service_keychain.h"

#include <libsecret/secret.h>

#include <algorithm>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

namespace quillo::linux_host {
namespace {

struct Unref {
  void operator()(void* object) const { g_object_unref(object); }
};
template <class T>
using Reference = std::unique_ptr<T, Unref>;
using Attributes = std::unique_ptr<GHashTable, decltype(&g_hash_table_unref)>;
using Value = std::unique_ptr<SecretValue, decltype(&secret_value_unref)>;

const SecretSchema* schema() {
  static const SecretSchema items = {
      .name = "com.murmex.quillo.secret",
      .flags = SECRET_SCHEMA_NONE,
      .attributes = {{"service", SECRET_SCHEMA_ATTRIBUTE_STRING},
                     {"account", SECRET_SCHEMA_ATTRIBUTE_STRING},
                     {nullptr, SECRET_SCHEMA_ATTRIBUTE_STRING}},
      .reserved = 0,
      .reserved1 = nullptr,
      .reserved2 = nullptr,
      .reserved3 = nullptr,
      .reserved4 = nullptr,
      .reserved5 = nullptr,
      .reserved6 = nullptr,
      .reserved7 = nullptr,
  };
  return &items;
}

Value secretValue(const Bytes& data) {
  return {secret_value_new(data.data(), static_cast<gssize>(data.size()), "text/plain"),
          &secret_value_unref};
}

// An empty bus address, an unreachable bus and a bus without a keyring are one thing to the caller.
KeychainError errorOf(const GError& error) {
  using namespace secret_service_error;
  if (error.domain == SECRET_ERROR && error.code == SECRET_ERROR_IS_LOCKED) return locked;
  if (error.domain == SECRET_ERROR) return refused;
  if (g_error_matches(&error, G_IO_ERROR, G_IO_ERROR_CANCELLED)) return timedOut;
  if (error.domain == G_IO_ERROR) return unavailable;
  if (g_error_matches(&error, G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN)) return unavailable;
  if (g_error_matches(&error, G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER)) return unavailable;
  if (g_error_matches(&error, G_DBUS_ERROR, G_DBUS_ERROR_NO_SERVER)) return unavailable;
  return refused;
}

}  // namespace

// On the worker's thread. A step that fails leaves its error, and the next ones are not taken.
struct SecretServiceKeychain::Call {
  Call(std::string service, std::string account, GCancellable* cancellable)
      : cancellable_(cancellable),
        attributes_(secret_attributes_build(schema(), "service", service.c_str(), "account",
                                            account.c_str(), nullptr),
                    &g_hash_table_unref),
        label_(std::move(service)) {}
  ~Call() { g_clear_error(&error_); }
  Call(const Call&) = delete;
  Call& operator=(const Call&) = delete;

  std::vector<Reference<SecretItem>> find() {
    std::vector<Reference<SecretItem>> items;
    service_.reset(secret_service_get_sync(SECRET_SERVICE_NONE, cancellable_, &error_));
    if (!service_) return items;
    const auto flags =
        static_cast<SecretSearchFlags>(SECRET_SEARCH_ALL | SECRET_SEARCH_LOAD_SECRETS);
    GList* const found = secret_service_search_sync(service_.get(), schema(), attributes_.get(),
                                                    flags, cancellable_, &error_);
    for (GList* item = found; item; item = item->next)
      items.emplace_back(static_cast<SecretItem*>(item->data));
    g_list_free(found);
    return items;
  }

  void store(const Bytes& data) {
    if (error_) return;
    secret_service_store_sync(service_.get(), schema(), attributes_.get(), nullptr, label_.c_str(),
                              secretValue(data).get(), cancellable_, &error_);
  }

  void change(SecretItem* item, const Bytes& data) {
    secret_item_set_secret_sync(item, secretValue(data).get(), cancellable_, &error_);
  }
  void erase(SecretItem* item) {
    if (!error_) secret_item_delete_sync(item, cancellable_, &error_);
  }

  static bool isLocked(const std::vector<Reference<SecretItem>>& items) {
    return std::ranges::any_of(items,
                               [](const auto& item) { return secret_item_get_locked(item.get()); });
  }
  static Bytes contents(SecretItem& item) {
    const Value value(secret_item_get_secret(&item), &secret_value_unref);
    if (!value) return {};
    gsize length = 0;
    const char* const bytes = secret_value_get(value.get(), &length);
    return Bytes(bytes, length);
  }

  // What stands in the way of using what was found.
  std::optional<KeychainError> obstacle(const std::vector<Reference<SecretItem>>& items) {
    if (error_) return errorOf(*error_);
    if (items.empty()) return KeychainError::itemNotFound;
    if (!isLocked(items)) return std::nullopt;
    problem_ = "the keyring is locked";
    return secret_service_error::locked;
  }
  Outcome outcome(Bytes data = {}) const {
    if (error_) return errorOf(*error_);
    return data;
  }
  // In the service's own words, for a failure.
  std::string problem() const { return error_ ? error_->message : problem_; }

 private:
  GCancellable* cancellable_;
  Attributes attributes_;
  std::string label_;
  Reference<SecretService> service_;
  GError* error_ = nullptr;
  std::string problem_;
};

SecretServiceKeychain::SecretServiceKeychain(Log& log, Duration limit) : log_(log), limit_(limit) {}

SecretServiceKeychain::Outcome SecretServiceKeychain::run(std::string_view service,
                                                          std::string_view account,
                                                          std::function<Outcome(Call&)> operation) {
  struct Answer {
    std::mutex mutex;
    std::condition_variable arrived;
    std::optional<Outcome> outcome;
    std::string problem;
  };
  const auto answer = std::make_shared<Answer>();
  const std::shared_ptr<GCancellable> cancellable(g_cancellable_new(), Unref{});
  worker_.post([answer, cancellable, operation = std::move(operation),
                service = std::string(service), account = std::string(account)] {
    Call call(service, account, cancellable.get());
    Outcome outcome = operation(call);
    const std::scoped_lock lock(answer->mutex);
    answer->outcome = std::move(outcome);
    answer->problem = call.problem();
    answer->arrived.notify_one();
  });
  std::unique_lock lock(answer->mutex);
  if (answer->arrived.wait_for(lock, limit_, [&] { return answer->outcome.has_value(); }))
    return note(std::move(*answer->outcome), answer->problem);
  // The worker gives up as well, and is free for the next call.
  g_cancellable_cancel(cancellable.get());
  return note(secret_service_error::timedOut, "no answer within the limit");
}

// A trouble is logged once, when it begins.
SecretServiceKeychain::Outcome SecretServiceKeychain::note(Outcome outcome,
                                                           const std::string& problem) {
  const auto trouble = problem.empty() ? std::nullopt : std::optional(outcome.error());
  if (trouble && trouble != lastTrouble_) log_.log("keychain", "secret service: " + problem);
  lastTrouble_ = trouble;
  return outcome;
}

// What of the outcome matters where nothing is read.
Result<void, KeychainError> SecretServiceKeychain::change(std::string_view service,
                                                          std::string_view account,
                                                          std::function<Outcome(Call&)> operation) {
  const Outcome outcome = run(service, account, std::move(operation));
  if (!outcome) return outcome.error();
  return {};
}

Result<Bytes, KeychainError> SecretServiceKeychain::read(std::string_view service,
                                                         std::string_view account) {
  return run(service, account, [](Call& call) -> Outcome {
    const auto items = call.find();
    if (const auto obstacle = call.obstacle(items)) return *obstacle;
    return Call::contents(*items.front());
  });
}

Result<void, KeychainError> SecretServiceKeychain::update(std::string_view service,
                                                          std::string_view account,
                                                          const Bytes& data) {
  return change(service, account, [data](Call& call) -> Outcome {
    const auto items = call.find();
    if (const auto obstacle = call.obstacle(items)) return *obstacle;
    call.change(items.front().get(), data);
    return call.outcome();
  });
}

Result<void, KeychainError> SecretServiceKeychain::add(std::string_view service,
                                                       std::string_view account,
                                                       const Bytes& data) {
  return change(service, account, [data](Call& call) -> Outcome {
    if (!call.find().empty()) return secret_service_error::duplicate;
    call.store(data);
    return call.outcome();
  });
}

Result<void, KeychainError> SecretServiceKeychain::remove(std::string_view service,
                                                          std::string_view account) {
  return change(service, account, [](Call& call) -> Outcome {
    const auto items = call.find();
    if (const auto obstacle = call.obstacle(items)) return *obstacle;
    for (const auto& item : items) call.erase(item.get());
    return call.outcome();
  });
}

}  // namespace quillo::linux_host
