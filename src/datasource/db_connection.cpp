#include "datasource/db_connection.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <sqlite3.h>

#include <cstdlib>
#include <filesystem>
#include <limits>
#include <system_error>

#include "com/dispatch.h"
#include "com/error.h"
#include "com/safe_array.h"
#include "datasource/db_catalog.h"
#include "datasource/db_error.h"
#include "datasource/internal/connection_string.h"
#include "datasource/internal/engine_error.h"
#include "datasource/internal/sql_values.h"
#include "datasource/internal/statement_cache.h"
#include "datasource/open_files.h"
#include "platform/file_system.h"

namespace qv::ds {
namespace {

constexpr const char* kOpenSource = "DbConnection.Open";

std::string FileNotFoundText(std::string_view path) {
  return "database file not found: '" + std::string(path) + "'";
}

bool IsRegularFile(const std::string& path) {
  std::error_code ec;
  return std::filesystem::is_regular_file(path, ec);
}

// Opens and prepares a SQLite handle on an existing file.
std::unique_ptr<SQLite::Database> OpenFile(const std::string& path) {
  try {
    // A connection is used by one thread at a time (the library keeps its
    // objects per thread), so SQLite need not lock it on every call.
    auto db = std::make_unique<SQLite::Database>(
        path, SQLite::OPEN_READWRITE | SQLite::OPEN_NOMUTEX,
        DbConnection::BusyTimeoutMs());
    // Reading the schema tells a database from any other file.
    db->exec("SELECT count(*) FROM sqlite_master");
    db->exec("PRAGMA foreign_keys=ON");
    SQLite::Statement(*db, "PRAGMA journal_mode=DELETE").executeStep();
    return db;
  } catch (...) {
    RethrowAsDbError(kOpenSource, path);
  }
}

std::string SavepointName(size_t level) {
  return "qv_sp_" + std::to_string(level);
}

}  // namespace

int DbConnection::BusyTimeoutMs() {
  const char* text = std::getenv("QVGLOBAL_BUSY_TIMEOUT_MS");
  if (text == nullptr || *text == '\0') return kBusyTimeoutMs;
  char* end = nullptr;
  const long ms = std::strtol(text, &end, 10);
  if (*end != '\0' || ms < 0 || ms > std::numeric_limits<int>::max()) {
    return kBusyTimeoutMs;
  }
  return static_cast<int>(ms);
}

DbConnection::DbConnection() = default;
DbConnection::~DbConnection() { Close(); }

void DbConnection::Open(const std::string& connection_string) {
  if (db_)
    throw Error(dberr::kConnection, kOpenSource, "connection is already open");
  const std::string cs =
      connection_string.empty() ? connection_string_ : connection_string;
  const ConnectionSettings settings = ParseConnectionString(cs, kOpenSource);
  CheckPathUsable(settings.data_source, kOpenSource);
  const std::optional<std::string> path =
      FindPathIgnoringCase(settings.data_source);
  if (!path || !IsRegularFile(*path)) {
    throw Error(dberr::kConnection, kOpenSource,
                FileNotFoundText(settings.data_source));
  }
  db_ = OpenFile(*path);
  connection_string_ = cs;
  path_ = *path;
  file_ = FileId::Of(path_).value_or(FileId{});
  levels_.clear();
  ++opens_;
  OpenFiles::Add(file_);
}

void DbConnection::Close() {
  if (!db_) return;
  // A transaction the caller left open is rolled back, and record sets that
  // hold what it wrote read again should the connection be opened again.
  sqlite3* handle = db_->getHandle();
  if (sqlite3_get_autocommit(handle) == 0) {
    rollbacks_ += levels_.empty() ||
                  sqlite3_total_changes64(handle) != levels_.front().changes;
    db_->tryExec("ROLLBACK");
  }
  levels_.clear();
  // SQLite closes a handle only when no statement is prepared on it.
  ReleaseCachedStatements(*this);
  db_.reset();
  OpenFiles::Remove(file_);
}

const std::string& DbConnection::ConnectionString() const {
  return connection_string_;
}

void DbConnection::SetConnectionString(const std::string& s) {
  if (db_) {
    throw Error(dberr::kConnection, "DbConnection.ConnectionString",
                "connection is already open");
  }
  connection_string_ = s;
}

const std::string& DbConnection::Path() const { return path_; }

void DbConnection::CreateDatabase(const std::string& path) {
  constexpr const char* kSource = "DbConnection.CreateDatabase";
  CheckPathUsable(path, kSource);
  if (FindPathIgnoringCase(path)) {
    throw Error(dberr::kConnection, kSource,
                "database file already exists: '" + path + "'");
  }
  const std::string native = platform::FileSystem::ToNativePath(path);
  try {
    SQLite::Database created(native,
                             SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    created.exec("PRAGMA journal_mode=DELETE");
  } catch (...) {
    RethrowAsDbError(kSource, path);
  }
  try {
    DbConnection con;
    con.Open(MakeConnectionString(native));
    DbCatalog(con).CreateTable(
        "qvversions", {{"Name", kAdVarWChar, 255}, {"Version", kAdInteger}},
        {"Name"});
  } catch (...) {
    std::error_code ec;
    std::filesystem::remove(native, ec);
    RethrowAsDbError(kSource, path);
  }
}

std::string DbConnection::MakeConnectionString(const std::string& path) {
  return "Provider=SQLite;Data Source=" + path;
}

SQLite::Database& DbConnection::db() {
  if (!db_)
    throw Error(dberr::kNotOpen, "DbConnection", "connection is closed");
  return *db_;
}

void DbConnection::Execute(std::string_view sql,
                           const std::vector<Variant>& params) {
  SQLite::Database& database = db();
  try {
    SQLite::Statement statement(database, std::string(sql));
    BindParams(statement, params);
    while (statement.executeStep()) {
    }
  } catch (...) {
    RethrowAsDbError("DbConnection.Execute", path_);
  }
}

std::vector<std::vector<Variant>> DbConnection::Query(
    std::string_view sql, const std::vector<Variant>& params) {
  SQLite::Database& database = db();
  std::vector<std::vector<Variant>> rows;
  try {
    SQLite::Statement statement(database, std::string(sql));
    BindParams(statement, params);
    const std::vector<ReadAs> kinds = ResultKinds(statement);
    while (statement.executeStep()) {
      std::vector<Variant>& row = rows.emplace_back();
      row.reserve(kinds.size());
      for (size_t i = 0; i < kinds.size(); ++i) {
        row.push_back(ReadColumn(statement, static_cast<int>(i), kinds[i]));
      }
    }
  } catch (...) {
    RethrowAsDbError("DbConnection.Query", path_);
  }
  return rows;
}

Variant DbConnection::QueryValue(std::string_view sql,
                                 const std::vector<Variant>& params) {
  std::vector<std::vector<Variant>> rows = Query(sql, params);
  if (rows.empty() || rows.front().empty()) return Variant();
  return std::move(rows.front().front());
}

int32_t DbConnection::Changes() const { return db_ ? db_->getChanges() : 0; }

int64_t DbConnection::LastInsertRowid() const {
  return db_ ? db_->getLastInsertRowid() : 0;
}

// ---------------------------------------------------------------------------
// ReadTransaction

DbConnection::ReadTransaction::ReadTransaction(DbConnection* con) {
  if (!con || !con->db_ || !con->levels_.empty() ||
      sqlite3_get_autocommit(con->db_->getHandle()) == 0) {
    return;
  }
  try {
    con->db_->exec("BEGIN");
  } catch (...) {
    RethrowAsDbError("DbConnection.ReadTransaction", con->path_);
  }
  con_ = con;
}

DbConnection::ReadTransaction::~ReadTransaction() {
  if (!con_ || !con_->db_ ||
      sqlite3_get_autocommit(con_->db_->getHandle()) != 0) {
    return;
  }
  sqlite3_exec(con_->db_->getHandle(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void DbConnection::ReadTransaction::Commit() {
  DbConnection* con = con_;
  con_ = nullptr;
  if (!con || !con->db_ || sqlite3_get_autocommit(con->db_->getHandle()) != 0)
    return;
  try {
    con->db_->exec("COMMIT");
  } catch (...) {
    sqlite3_exec(con->db_->getHandle(), "ROLLBACK", nullptr, nullptr, nullptr);
    RethrowAsDbError("DbConnection.ReadTransaction", con->path_);
  }
}

// ---------------------------------------------------------------------------
// Transactions

int32_t DbConnection::BeginTrans() {
  SQLite::Database& database = db();
  // Outside any transaction, take the write lock at once, so that a second
  // process waits for it (busy timeout) instead of failing later.
  const bool savepoint =
      !levels_.empty() || sqlite3_get_autocommit(database.getHandle()) == 0;
  try {
    database.exec(savepoint ? "SAVEPOINT " + SavepointName(levels_.size())
                            : "BEGIN IMMEDIATE");
  } catch (...) {
    RethrowAsDbError("DbConnection.BeginTrans", path_);
  }
  levels_.push_back({savepoint, sqlite3_total_changes64(database.getHandle())});
  return static_cast<int32_t>(levels_.size());
}

void DbConnection::CommitTrans() { EndTrans(true, "DbConnection.CommitTrans"); }

void DbConnection::RollbackTrans() {
  EndTrans(false, "DbConnection.RollbackTrans");
}

void DbConnection::EndTrans(bool commit, const char* source) {
  SQLite::Database& database = db();
  if (levels_.empty())
    throw Error(dberr::kTransaction, source, "no transaction is open");
  const bool savepoint = levels_.back().savepoint;
  // A rollback that takes no changed row back (a failed single write) leaves
  // what record sets hold valid.
  const bool took_back =
      sqlite3_total_changes64(database.getHandle()) != levels_.back().changes;
  levels_.pop_back();
  const std::string sp = SavepointName(levels_.size());
  const std::string rollback =
      savepoint ? "ROLLBACK TO " + sp + "; RELEASE " + sp : "ROLLBACK";
  try {
    if (!commit) {
      rollbacks_ += took_back;
      database.exec(rollback);
      return;
    }
    database.exec(savepoint ? "RELEASE " + sp : "COMMIT");
  } catch (...) {
    // A failed commit leaves the transaction open: undo it, then report.
    if (commit && sqlite3_get_autocommit(database.getHandle()) == 0) {
      ++rollbacks_;
      database.tryExec(rollback);
    }
    RethrowAsDbError(source, path_);
  }
}

DbConnection::Transaction::Transaction(DbConnection& con)
    : con_(con), opened_(con.opens_), level_(con.BeginTrans()) {}

DbConnection::Transaction::~Transaction() {
  if (done_) return;
  try {
    Finish(false);
  } catch (...) {  // nothing can be reported from a destructor
  }
}

void DbConnection::Transaction::Commit() { Finish(true); }
void DbConnection::Transaction::Rollback() { Finish(false); }

void DbConnection::Transaction::Finish(bool commit) {
  constexpr const char* kSource = "DbConnection.Transaction";
  if (done_)
    throw Error(dberr::kTransaction, kSource, "transaction already finished");
  // Closing the connection rolled the transaction back.
  if (!con_.db_ || con_.opens_ != opened_ || con_.TransactionDepth() < level_) {
    done_ = true;
    return;
  }
  if (con_.TransactionDepth() != level_) {
    throw Error(dberr::kTransaction, kSource, "inner transaction still open");
  }
  done_ = true;
  con_.EndTrans(commit, kSource);
}

// ---------------------------------------------------------------------------
// Dispatch

ClassInfo DbConnection::BuildClassInfo() {
  return ClassBuilder<DbConnection>("DbConnection")
      .Get("State", &DbConnection::State)
      .Get("ConnectionString",
           [](DbConnection& self) { return self.ConnectionString(); })
      .Let("ConnectionString",
           [](DbConnection& self, std::string s) {
             self.SetConnectionString(s);
           })
      .Method("Open", [](DbConnection& self, std::string s) { self.Open(s); },
              {Variant(std::string())})
      .Method("Close", &DbConnection::Close)
      .Method("BeginTrans", &DbConnection::BeginTrans)
      .Method("CommitTrans", &DbConnection::CommitTrans)
      .Method("RollbackTrans", &DbConnection::RollbackTrans)
      .Method("Execute",
              [](DbConnection& self, std::string sql, Variant params) {
                std::vector<Variant> values;
                if (params.IsArray()) {
                  const SafeArray& a = params.ToArray();
                  for (int32_t i = a.LBound(); i <= a.UBound(); ++i)
                    values.push_back(a[i]);
                } else if (!params.IsEmpty()) {
                  values.push_back(params);
                }
                self.Execute(sql, values);
              },
              {Variant()})
      .Build();
}

std::string QuoteIdentifier(std::string_view name) {
  std::string quoted = "\"";
  for (char c : name) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  quoted += '"';
  return quoted;
}

}  // namespace qv::ds
