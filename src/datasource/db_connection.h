// DbConnection is the database engine adapter's connection: one open SQLite
// file, reached by an ADO-style connection string. It plays the role of the
// ADO connection object (it sits in CQvConnection::m_conConnection), runs SQL
// with bound parameters for the rest of src/datasource/, and hands out
// nesting transactions (BeginTrans / CommitTrans / RollbackTrans and the
// RAII Transaction). It owns the SQLite handle; Close() or the destructor
// releases it, rolling back a transaction still open. Errors are qv::Error
// with the numbers of db_error.h.
// Threads: a connection is used by one thread at a time; different connections,
// also to the same file, may be used on different threads at once (SQLite
// serialises writers through the file lock and the busy timeout). A Transaction
// belongs to the thread of its connection. The connection takes no lock of its
// own; it registers in the process-wide count of open files, which has its own
// lock.
#ifndef QVGLOBAL_DATASOURCE_DB_CONNECTION_H_
#define QVGLOBAL_DATASOURCE_DB_CONNECTION_H_

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "com/class_info.h"
#include "com/object.h"
#include "com/variant.h"
#include "datasource/open_files.h"

namespace SQLite {
class Database;
}

namespace qv::ds {

namespace internal {
struct DbHandleAccess;
}

class DbConnection : public qv::Dispatchable<DbConnection> {
 public:
  static constexpr int32_t kStateClosed = 0, kStateOpen = 1;
  // How long a statement waits for another process's lock before it fails
  // with kBusy "database is locked: '<path>'": 5 s, or the number of
  // milliseconds in the environment variable QVGLOBAL_BUSY_TIMEOUT_MS.
  static constexpr int kBusyTimeoutMs = 5000;
  static int BusyTimeoutMs();

  DbConnection();
  ~DbConnection() override;
  DbConnection(const DbConnection&) = delete;
  DbConnection& operator=(const DbConnection&) = delete;

  // "Provider=SQLite;Data Source=<path>;..." (provider
  // "Microsoft.Jet.OLEDB.4.0" accepted as alias; keys without regard to
  // case, values may be quoted; other keys kept but ignored; no provider
  // means SQLite). Raises when the file does not exist or is not a database;
  // a path that does not exist as written but exists with other letter case
  // (any level) is opened. Sets busy timeout (BusyTimeoutMs()),
  // foreign_keys=ON, journal_mode=DELETE. A path with a NUL character and a
  // path longer than the system allows raise kConnection "invalid path
  // (NUL character): '<path>'" and "path too long: '<path>'". An empty argument
  // opens the ConnectionString set before.
  void Open(const std::string& connection_string);
  void Close();  // no-op when closed; open transactions are rolled back
  int32_t State() const { return db_ ? kStateOpen : kStateClosed; }
  const std::string& ConnectionString() const;     // as given to Open (or set)
  void SetConnectionString(const std::string& s);  // only while closed
  const std::string& Path() const;                 // the file actually opened
  // The identity of the file opened last (device and inode).
  const FileId& File() const { return file_; }

  // Creates a new database file with the version table "qvversions"
  // ("Name" VARCHAR(255) COLLATE NOCASE primary key, "Version" INTEGER).
  // Raises when the file exists.
  static void CreateDatabase(const std::string& path);
  // "Provider=SQLite;Data Source=" + path
  static std::string MakeConnectionString(const std::string& path);

  // SQL with bound parameters (?1, ?2 ... or ?): Empty/Null -> NULL,
  // Boolean -> -1/0, Integer/Long -> integer, Single/Double -> real,
  // Date -> "YYYY-MM-DD hh:mm:ss", String -> text; objects and arrays raise
  // 13. One statement per call.
  void Execute(std::string_view sql,
               const std::vector<qv::Variant>& params = {});
  // Rows of a query. Values follow the column's declared type: BIT ->
  // Boolean, SMALLINT -> Integer, INTEGER -> Long (Double beyond 32 bits),
  // SINGLE -> Single, DOUBLE -> Double, DATETIME -> Date (text that is no
  // date stays String), VARCHAR/LONGTEXT -> String, LONGBINARY -> String of
  // the bytes; without a declared type by the stored value; NULL -> Null.
  std::vector<std::vector<qv::Variant>> Query(
      std::string_view sql, const std::vector<qv::Variant>& params = {});
  // The first column of the first row, Empty when there is no row.
  qv::Variant QueryValue(std::string_view sql,
                         const std::vector<qv::Variant>& params = {});
  // Rows changed by the last Execute.
  int32_t Changes() const;
  // The rowid of the last inserted row.
  int64_t LastInsertRowid() const;
  // Caller transactions, as an ADO connection offers them. BeginTrans
  // starts one and returns its nesting level (1 for the outermost, which
  // takes the write lock at once, BEGIN IMMEDIATE, waiting for another
  // process up to the busy timeout; inner ones are savepoints).
  // CommitTrans and RollbackTrans end the innermost one. Raise
  // kTransaction "no transaction is open" when there is none, kNotOpen on
  // a closed connection. A rollback makes the record sets on this
  // connection read their blocks again when next used.
  int32_t BeginTrans();
  void CommitTrans();
  void RollbackTrans();
  // Open transactions (BeginTrans and Transaction alike).
  int TransactionDepth() const { return static_cast<int>(levels_.size()); }
  // Rollbacks on this connection so far that took back changed rows, for
  // those who cache what they read.
  uint64_t Rollbacks() const { return rollbacks_; }

  // The typed form for C++ callers: BeginTrans in the constructor,
  // RollbackTrans in the destructor unless Commit() or Rollback() was
  // called. Nests with BeginTrans; inner transactions must end before
  // outer ones (kTransaction "inner transaction still open"), and each
  // ends once (kTransaction "transaction already finished").
  class Transaction {
   public:
    explicit Transaction(DbConnection& con);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    void Commit();
    void Rollback();

   private:
    void Finish(bool commit);
    DbConnection& con_;
    uint64_t opened_;  // the connection's open count when it began
    int level_;
    bool done_ = false;
  };

  // RAII read transaction for one call that makes many reads: outside any
  // transaction it begins a deferred one, so that SQLite takes its shared
  // lock on the file once instead of once per statement, and ends it in its
  // destructor. Inside a transaction, or on a closed connection, it does
  // nothing. Writes inside it (Transaction nests as a savepoint) last only
  // when Commit() is called; the destructor rolls back what is still open.
  // Never keep one across calls into the library.
  class ReadTransaction {
   public:
    explicit ReadTransaction(DbConnection* con);
    ~ReadTransaction();
    // Ends the transaction keeping its writes; raises the adapter's errors.
    void Commit();
    ReadTransaction(const ReadTransaction&) = delete;
    ReadTransaction& operator=(const ReadTransaction&) = delete;

   private:
    DbConnection* con_ = nullptr;  // null when nothing was begun
  };

  static qv::ClassInfo
  BuildClassInfo();  // "State", "ConnectionString", "Open", "Close", "Execute",
                     // "BeginTrans", "CommitTrans", "RollbackTrans"

 private:
  // The open handle, for the statements of src/datasource/ (reached from
  // outside this class through internal/db_handle.h). Raises kNotOpen when
  // closed.
  SQLite::Database& db();
  friend struct internal::DbHandleAccess;

  std::string connection_string_;
  std::string path_;
  FileId file_;
  void EndTrans(bool commit, const char* source);

  std::unique_ptr<SQLite::Database> db_;
  struct Level {
    bool savepoint;   // SAVEPOINT rather than BEGIN
    int64_t changes;  // the engine's count of changed rows when it began
  };
  std::vector<Level> levels_;  // one per open transaction
  uint64_t rollbacks_ = 0;
  uint64_t opens_ = 0;  // Open calls so far, to tell a reopened connection
};

// Quotes an identifier for SQL: "a""b".
std::string QuoteIdentifier(std::string_view name);

}  // namespace qv::ds

#endif  // QVGLOBAL_DATASOURCE_DB_CONNECTION_H_
