#include "base/error.h"

namespace quillo {

const char* Error::what() const noexcept {
  what_ = description();
  return what_.c_str();
}

std::string describe(const std::exception_ptr& error) {
  if (!error) return "no error";
  try {
    std::rethrow_exception(error);
  } catch (const Error& e) {
    return e.errorDescription().value_or(e.description());
  } catch (const std::exception& e) {
    return e.what();
  } catch (...) {
    return "unknown error";
  }
}

}  // namespace quillo
