// The settings, as one JSON object in one file.
#pragma once

#include <memory>
#include <string>

#include "base/json.h"
#include "base/log.h"
#include "base/main_thread.h"
#include "hosts/linux/posix/thread_serial_queue.h"
#include "platform/clock.h"
#include "platform/file_path.h"
#include "platform/user_defaults.h"

namespace quillo::linux_host {

// Key → JSON value; data are {"$data": "<base64>"}. Writes of one turn of the main thread reach the
// file together, in the next turn, and so survive a kill from then on; a thread of its own sees
// them onto the medium. Values that nobody reads stay in the file as they are.
//
// A file that is not a JSON object is set aside under another name and logged, and the store
// begins empty. Where the file cannot be written, settings last as long as the process does.
class JsonUserDefaults final : public UserDefaults {
 public:
  // The other three outlive this.
  JsonUserDefaults(FilePath file, MainThread& mainThread, const Clock& clock, Log& log);
  ~JsonUserDefaults() override;  // writes what is not written yet

  bool contains(std::string_view key) const override;
  std::optional<std::string> text(std::string_view key) const override;
  std::optional<bool> boolean(std::string_view key) const override;
  std::optional<std::int64_t> integer(std::string_view key) const override;
  std::optional<double> number(std::string_view key) const override;
  std::optional<Bytes> data(std::string_view key) const override;
  std::optional<std::vector<std::string>> texts(std::string_view key) const override;
  std::optional<std::vector<TextDictionary>> dictionaries(std::string_view key) const override;

  void setText(std::string_view key, std::string_view value) override;
  void setBoolean(std::string_view key, bool value) override;
  void setInteger(std::string_view key, std::int64_t value) override;
  void setNumber(std::string_view key, double value) override;
  void setData(std::string_view key, const Bytes& value) override;
  void setTexts(std::string_view key, const std::vector<std::string>& value) override;
  void setDictionaries(std::string_view key, const std::vector<TextDictionary>& value) override;
  void remove(std::string_view key) override;

 private:
  void load();
  void setAside(std::string_view problem);
  const Json* find(std::string_view key) const;
  void set(std::string_view key, Json value);
  void writeSoon();
  void writeNow();

  const FilePath file_;
  MainThread& mainThread_;
  const Clock& clock_;
  Log& log_;
  Json values_ = Json::object();
  std::string written_;  // contents of the file, when it is ours
  bool isWriteFailing_ = false;
  std::shared_ptr<bool> pendingWrite_;  // present while a write is posted
  ThreadSerialQueue sync_{"quillo.settings"};
};

}  // namespace quillo::linux_host
