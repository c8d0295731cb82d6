// What a call gives that may fail: its value, or why there is none.
#pragma once

#include <cassert>
#include <concepts>
#include <string>
#include <utility>
#include <variant>

namespace quillo {

// An error that nobody tells from others: what a log line says of it.
struct Problem {
  std::string words;
  friend bool operator==(const Problem&, const Problem&) = default;
};

// Made from either. Its members are those of std::expected (C++23), and so are their names.
template <class T, class E>
class Result {
 public:
  template <class U = T>
    requires(std::constructible_from<T, U> && !std::convertible_to<U, E> &&
             !std::same_as<std::remove_cvref_t<U>, Result>)
  Result(U&& value) : content_(std::in_place_index<0>, std::forward<U>(value)) {}
  Result(E error) : content_(std::in_place_index<1>, std::move(error)) {}

  bool has_value() const { return content_.index() == 0; }
  explicit operator bool() const { return has_value(); }

  // Only with a value.
  T& operator*() & { return std::get<0>(content_); }
  const T& operator*() const& { return std::get<0>(content_); }
  T&& operator*() && { return std::get<0>(std::move(content_)); }
  T* operator->() { return &**this; }
  const T* operator->() const { return &**this; }
  T value_or(T otherwise) const& { return has_value() ? **this : std::move(otherwise); }
  T value_or(T otherwise) && { return has_value() ? *std::move(*this) : std::move(otherwise); }

  // Only without.
  const E& error() const { return std::get<1>(content_); }

  friend bool operator==(const Result& a, const Result& b)
    requires std::equality_comparable<T> && std::equality_comparable<E>
  = default;

 private:
  std::variant<T, E> content_;
};

// Whether it worked, or why not.
template <class E>
class Result<void, E> {
 public:
  Result() = default;
  Result(E error) : content_(std::move(error)) {}

  bool has_value() const { return content_.index() == 0; }
  explicit operator bool() const { return has_value(); }
  const E& error() const { return std::get<1>(content_); }

  friend bool operator==(const Result&, const Result&) = default;

 private:
  std::variant<std::monostate, E> content_;
};

}  // namespace quillo
