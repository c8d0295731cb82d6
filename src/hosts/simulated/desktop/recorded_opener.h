// Files and addresses that the program had opened.
#pragma once

#include <string>
#include <vector>

#include "platform/opener.h"

namespace quillo::simulated {

class RecordedOpener final : public Opener {
 public:
  Result<void, OpenerFailure> openFile(const FilePath& path) override {
    files_.push_back(path);
    return outcome();
  }
  Result<void, OpenerFailure> openURL(std::string_view url) override {
    if (url.find(':') == std::string_view::npos) return OpenerFailure::noAddress;
    urls_.emplace_back(url);
    return outcome();
  }

  // --- Driver ---

  void setSucceeds(bool succeeds) { succeeds_ = succeeds; }
  const std::vector<FilePath>& files() const { return files_; }
  const std::vector<std::string>& urls() const { return urls_; }

 private:
  Result<void, OpenerFailure> outcome() const {
    if (!succeeds_) return OpenerFailure::noPrograms;
    return {};
  }

  bool succeeds_ = true;
  std::vector<FilePath> files_;
  std::vector<std::string> urls_;
};

}  // namespace quillo::simulated
