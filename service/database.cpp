#include "service/database.h"

#include <sqlite3.h>

namespace quillo::service {
namespace {

// Times are whole seconds since 1970. Tokens and codes are kept as digests only.
constexpr const char* schema = R"(
  PRAGMA journal_mode = WAL;
  PRAGMA synchronous = NORMAL;
  PRAGMA foreign_keys = ON;
  CREATE TABLE IF NOT EXISTS accounts (
    id TEXT PRIMARY KEY, email TEXT NOT NULL UNIQUE, password_hash TEXT NOT NULL, full_name TEXT,
    plan TEXT NOT NULL, created_at INTEGER NOT NULL, confirmed_at INTEGER);
  CREATE TABLE IF NOT EXISTS sign_ins (
    id TEXT PRIMARY KEY, signed_in_at INTEGER NOT NULL,
    account_id TEXT NOT NULL REFERENCES accounts(id) ON DELETE CASCADE);
  CREATE INDEX IF NOT EXISTS sign_ins_by_account ON sign_ins(account_id);
  CREATE TABLE IF NOT EXISTS access_tokens (
    digest TEXT PRIMARY KEY, expires_at INTEGER NOT NULL,
    sign_in_id TEXT NOT NULL REFERENCES sign_ins(id) ON DELETE CASCADE);
  CREATE INDEX IF NOT EXISTS access_tokens_by_sign_in ON access_tokens(sign_in_id);
  CREATE TABLE IF NOT EXISTS refresh_tokens (
    digest TEXT PRIMARY KEY, used INTEGER NOT NULL DEFAULT 0,
    sign_in_id TEXT NOT NULL REFERENCES sign_ins(id) ON DELETE CASCADE);
  CREATE INDEX IF NOT EXISTS refresh_tokens_by_sign_in ON refresh_tokens(sign_in_id);
  CREATE TABLE IF NOT EXISTS one_time_codes (
    account_id TEXT NOT NULL REFERENCES accounts(id) ON DELETE CASCADE, purpose TEXT NOT NULL,
    digest TEXT NOT NULL, expires_at INTEGER NOT NULL, tries_left INTEGER NOT NULL,
    PRIMARY KEY (account_id, purpose));
  CREATE TABLE IF NOT EXISTS usage (
    subject TEXT NOT NULL, kind TEXT NOT NULL, period TEXT NOT NULL, amount REAL NOT NULL,
    PRIMARY KEY (subject, kind, period));
  CREATE TABLE IF NOT EXISTS session_parts (
    session TEXT NOT NULL, part TEXT NOT NULL, seconds REAL NOT NULL, heard_at INTEGER NOT NULL,
    PRIMARY KEY (session, part));
  CREATE TABLE IF NOT EXISTS feedback (
    id TEXT PRIMARY KEY, received_at INTEGER NOT NULL, user_id TEXT, device_id TEXT,
    message TEXT NOT NULL, mode TEXT NOT NULL, request_type TEXT NOT NULL, app TEXT NOT NULL,
    os TEXT NOT NULL);
)";

class Statement {
 public:
  Statement(sqlite3* connection, std::string_view sql, std::initializer_list<SqlValue> values)
      : connection_(connection), statement_(nullptr, sqlite3_finalize) {
    sqlite3_stmt* statement = nullptr;
    check(sqlite3_prepare_v2(connection, sql.data(), static_cast<int>(sql.size()), &statement,
                             nullptr));
    statement_.reset(statement);
    int position = 0;
    for (const SqlValue& value : values) bind(++position, value);
  }

  // False behind the last row.
  bool step() {
    const int result = sqlite3_step(statement_.get());
    if (result == SQLITE_ROW) return true;
    if (result != SQLITE_DONE) throw DatabaseError(sqlite3_errmsg(connection_));
    return false;
  }

  Row row() const {
    std::vector<SqlValue> values;
    for (int column = 0; column < sqlite3_column_count(statement_.get()); ++column)
      values.push_back(value(column));
    return Row(std::move(values));
  }

 private:
  void check(int result) const {
    if (result != SQLITE_OK) throw DatabaseError(sqlite3_errmsg(connection_));
  }

  void bind(int position, const SqlValue& value) {
    if (const auto* integer = std::get_if<std::int64_t>(&value)) {
      check(sqlite3_bind_int64(statement_.get(), position, *integer));
    } else if (const auto* number = std::get_if<double>(&value)) {
      check(sqlite3_bind_double(statement_.get(), position, *number));
    } else if (const auto* text = std::get_if<std::string>(&value)) {
      check(sqlite3_bind_text64(statement_.get(), position, text->data(), text->size(),
                                SQLITE_TRANSIENT, SQLITE_UTF8));
    } else {
      check(sqlite3_bind_null(statement_.get(), position));
    }
  }

  SqlValue value(int column) const {
    switch (sqlite3_column_type(statement_.get(), column)) {
      case SQLITE_INTEGER:
        return std::int64_t{sqlite3_column_int64(statement_.get(), column)};
      case SQLITE_FLOAT:
        return sqlite3_column_double(statement_.get(), column);
      case SQLITE_NULL:
        return nullptr;
      default:
        return std::string(
            reinterpret_cast<const char*>(sqlite3_column_text(statement_.get(), column)),
            static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column)));
    }
  }

  sqlite3* connection_;
  std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> statement_;
};

}  // namespace

SqlValue sqlText(const std::optional<std::string>& text) {
  if (text) return *text;
  return nullptr;
}

double Row::number(std::size_t column) const {
  if (const auto* integer = std::get_if<std::int64_t>(&values_[column]))
    return static_cast<double>(*integer);
  return std::get<double>(values_[column]);
}

std::optional<std::string> Row::optionalText(std::size_t column) const {
  const auto* text = std::get_if<std::string>(&values_[column]);
  return text ? std::optional(*text) : std::nullopt;
}

std::optional<std::int64_t> Row::optionalInteger(std::size_t column) const {
  const auto* integer = std::get_if<std::int64_t>(&values_[column]);
  return integer ? std::optional(*integer) : std::nullopt;
}

Database::Database(const std::string& file) : connection_(nullptr, sqlite3_close) {
  sqlite3* connection = nullptr;
  const int result = sqlite3_open(file.c_str(), &connection);
  connection_.reset(connection);
  if (result != SQLITE_OK) throw DatabaseError("cannot open " + file);
  // Another process may hold the file, as an administrator's shell does.
  sqlite3_busy_timeout(connection, 5000);
  execute(schema);
}

Database::~Database() = default;

void Database::execute(const char* sql) {
  if (sqlite3_exec(connection_.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK)
    throw DatabaseError(sqlite3_errmsg(connection_.get()));
}

Database::Transaction::Transaction(Database& database)
    : database_(database), lock_(database.mutex_) {
  database_.execute("BEGIN IMMEDIATE");
}

Database::Transaction::~Transaction() {
  if (!committed_) sqlite3_exec(database_.connection_.get(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void Database::Transaction::commit() {
  database_.execute("COMMIT");
  committed_ = true;
}

std::vector<Row> Database::Transaction::rows(std::string_view sql,
                                             std::initializer_list<SqlValue> values) {
  Statement statement(database_.connection_.get(), sql, values);
  std::vector<Row> all;
  while (statement.step()) all.push_back(statement.row());
  return all;
}

std::optional<Row> Database::Transaction::row(std::string_view sql,
                                              std::initializer_list<SqlValue> values) {
  Statement statement(database_.connection_.get(), sql, values);
  if (!statement.step()) return std::nullopt;
  return statement.row();
}

int Database::Transaction::run(std::string_view sql, std::initializer_list<SqlValue> values) {
  Statement statement(database_.connection_.get(), sql, values);
  while (statement.step()) continue;
  return sqlite3_changes(database_.connection_.get());
}

}  // namespace quillo::service
