// SQLite behind one lock: every access is a transaction, one after another.
#pragma once

#include <initializer_list>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

struct sqlite3;

namespace quillo::service {

using SqlValue = std::variant<std::nullptr_t, std::int64_t, double, std::string>;

SqlValue sqlText(const std::optional<std::string>& text);

class DatabaseError final : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class Row {
 public:
  explicit Row(std::vector<SqlValue> values) : values_(std::move(values)) {}
  // The column must be of that type; a number may be stored as an integer.
  std::int64_t integer(std::size_t column) const { return std::get<std::int64_t>(values_[column]); }
  double number(std::size_t column) const;
  const std::string& text(std::size_t column) const {
    return std::get<std::string>(values_[column]);
  }
  std::optional<std::string> optionalText(std::size_t column) const;
  std::optional<std::int64_t> optionalInteger(std::size_t column) const;

 private:
  std::vector<SqlValue> values_;
};

class Database {
 public:
  // `file` is created with its tables when it is missing; ":memory:" lives as long as this object.
  explicit Database(const std::string& file);
  ~Database();

  // Holds the database for its thread. What was not committed is undone.
  class Transaction {
   public:
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    std::vector<Row> rows(std::string_view sql, std::initializer_list<SqlValue> values = {});
    std::optional<Row> row(std::string_view sql, std::initializer_list<SqlValue> values = {});
    // The number of rows that it changed.
    int run(std::string_view sql, std::initializer_list<SqlValue> values = {});
    void commit();

   private:
    friend class Database;
    explicit Transaction(Database& database);

    Database& database_;
    std::unique_lock<std::mutex> lock_;
    bool committed_ = false;
  };

  // Any thread; not while it holds another transaction.
  Transaction begin() { return Transaction(*this); }

 private:
  void execute(const char* sql);

  std::mutex mutex_;
  std::unique_ptr<sqlite3, int (*)(sqlite3*)> connection_;
};

}  // namespace quillo::service
