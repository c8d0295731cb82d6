#include "base/error.h"

namespace quillo {

const char* Error::what() const noexcept {
  what_ = description();
  return what_.c_str();
}

Words wordsOf(const std::exception_ptr& error) {
  if (!error) return asItStands("no error");
  try {
    std::rethrow_exception(error);
  } catch (const Error& e) {
    return e.errorDescription().value_or(asItStands(e.description()));
  } catch (const std::exception& e) {
    return asItStands(e.what());
  } catch (...) {
    return asItStands("unknown error");
  }
}

std::string describe(const std::exception_ptr& error) {
  return wordsOf(error).english();
}

}  // namespace quillo
