// Files and addresses that the program had opened.
#pragma once

#include <string>
#include <vector>

#include "platform/opener.h"

namespace quillo::simulated {

class RecordedOpener final : public Opener {
 public:
  bool openFile(const FilePath& path) override {
    files_.push_back(path);
    return succeeds_;
  }
  bool openURL(std::string_view url) override {
    urls_.emplace_back(url);
    return succeeds_;
  }

  // --- Driver ---

  void setSucceeds(bool succeeds) { succeeds_ = succeeds; }
  const std::vector<FilePath>& files() const { return files_; }
  const std::vector<std::string>& urls() const { return urls_; }

 private:
  bool succeeds_ = true;
  std::vector<FilePath> files_;
  std::vector<std::string> urls_;
};

}  // namespace quillo::simulated
