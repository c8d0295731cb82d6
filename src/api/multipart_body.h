// Bodies of the type "multipart/form-data" (RFC 7578).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/bytes.h"

namespace quillo {

struct FormFile {
  std::string_view name;
  std::string_view filename;
  std::string_view contentType;
  std::string_view contents;
};

struct FormField {
  std::string_view name;
  std::string value;
};

std::string multipartContentType(std::string_view boundary);
// The file first, then the fields in their order; every line ends with CR LF. One allocation, since
// recordings are large.
Bytes multipartBody(std::string_view boundary, const FormFile& file,
                    const std::vector<FormField>& fields);

}  // namespace quillo
