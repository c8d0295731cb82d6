// The settings store in memory.
#pragma once

#include <variant>

#include "platform/user_defaults.h"

namespace quillo::simulated {

class MemoryUserDefaults final : public UserDefaults {
 public:
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

  // --- Driver ---

  std::vector<std::string> keys() const;
  // Stores a value of a type that no reading fits.
  void setForeignValue(std::string_view key);
  // From now on nothing reaches the disk; the process goes on with what it holds.
  void loseWrites(bool lost) { writesAreLost_ = lost; }
  // What a new process reads: the state of the disk.
  void reload() { values_ = onDisk_; }

 private:
  struct Data {
    Bytes bytes;
  };
  struct Foreign {};
  using Value = std::variant<Foreign, std::string, bool, std::int64_t, double, Data,
                             std::vector<std::string>, std::vector<TextDictionary>>;
  using Values = std::map<std::string, Value, std::less<>>;

  template <class T>
  const T* find(std::string_view key) const;
  void set(std::string_view key, Value value);
  void persist();

  Values values_;
  Values onDisk_;
  bool writesAreLost_ = false;
};

}  // namespace quillo::simulated
