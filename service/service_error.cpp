#include "service/service_error.h"

namespace quillo::service {

ServiceError::ServiceError(int status, const std::string& code, const std::string& sentence)
    : reply_{status,
             Json{{"error", code}, {"error_description", sentence}, {"message", sentence}}} {}

ServiceError badRequest(const std::string& sentence) {
  return ServiceError(400, "bad_request", sentence);
}

}  // namespace quillo::service
