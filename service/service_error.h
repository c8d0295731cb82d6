// A refusal that reaches the client as a status and a JSON object.
#pragma once

#include <exception>
#include <string>

#include "service/http_message.h"

namespace quillo::service {

class ServiceError final : public std::exception {
 public:
  // `code` is for programs and `sentence` for people. Clients of the dictation routes read
  // "message", those of the account routes "error_description"; both get the sentence.
  ServiceError(int status, const std::string& code, const std::string& sentence);
  // A refusal with a body of its own.
  explicit ServiceError(HttpReply reply) : reply_(std::move(reply)) {}

  const HttpReply& reply() const { return reply_; }
  const char* what() const noexcept override { return "refused request"; }

 private:
  HttpReply reply_;
};

// 400: the request is not of the right form.
ServiceError badRequest(const std::string& sentence);

}  // namespace quillo::service
