#include "api/multipart_body.h"

namespace quillo {
namespace {

using Pieces = std::vector<std::string_view>;

void append(Pieces& pieces, std::initializer_list<std::string_view> more) {
  pieces.insert(pieces.end(), more);
}

Bytes concatenated(const Pieces& pieces) {
  std::size_t size = 0;
  for (const std::string_view piece : pieces) size += piece.size();
  Bytes bytes;
  bytes.reserve(size);
  for (const std::string_view piece : pieces) bytes += piece;
  return bytes;
}

}  // namespace

std::string multipartContentType(std::string_view boundary) {
  return "multipart/form-data; boundary=" + std::string(boundary);
}

Bytes multipartBody(std::string_view boundary, const FormFile& file,
                    const std::vector<FormField>& fields) {
  Pieces pieces;
  append(pieces, {"--", boundary, "\r\n"});
  append(pieces, {"Content-Disposition: form-data; name=\"", file.name, "\"; filename=\"",
                  file.filename, "\"\r\n"});
  append(pieces, {"Content-Type: ", file.contentType, "\r\n\r\n"});
  append(pieces, {file.contents, "\r\n"});
  for (const FormField& field : fields) {
    append(pieces, {"--", boundary, "\r\n"});
    append(pieces, {"Content-Disposition: form-data; name=\"", field.name, "\"\r\n\r\n"});
    append(pieces, {field.value, "\r\n"});
  }
  append(pieces, {"--", boundary, "--\r\n"});
  return concatenated(pieces);
}

}  // namespace quillo
