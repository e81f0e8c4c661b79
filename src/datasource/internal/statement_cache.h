// StatementCache keeps the prepared statements of one record set, by slot,
// so that a block read binds and steps a statement that was prepared once.
// It owns the statements; the connection must outlive it. Statements belong
// to one database handle: when the connection has been closed and opened
// again the cache prepares them anew. Before a connection closes its handle,
// ReleaseCachedStatements finalizes the statements of every cache on it
// (SQLite refuses to close a handle with statements still prepared).
// Internal to src/datasource/.
// Threads: a cache belongs to one record set and its thread; the process-wide
// map from connections to their caches, which Close uses to release them, is
// guarded by a mutex.
#ifndef QVGLOBAL_DATASOURCE_INTERNAL_STATEMENT_CACHE_H_
#define QVGLOBAL_DATASOURCE_INTERNAL_STATEMENT_CACHE_H_

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace SQLite {
class Statement;
}

namespace qv::ds {

class DbConnection;

class StatementCache {
 public:
  explicit StatementCache(DbConnection& con);
  ~StatementCache();
  StatementCache(const StatementCache&) = delete;
  StatementCache& operator=(const StatementCache&) = delete;

  // The statement of `slot`, reset and ready to be bound; prepared from
  // make_sql() when the slot is empty or the handle has changed since.
  // Raises the adapter's errors (closed connection, bad SQL).
  template <class MakeSql>
  SQLite::Statement& Get(size_t slot, MakeSql&& make_sql) {
    if (SQLite::Statement* s = Find(slot)) return *s;
    return Prepare(slot, make_sql());
  }
  // Finalizes all statements.
  void Clear();

  DbConnection& connection() const { return con_; }

 private:
  SQLite::Statement* Find(size_t slot);
  SQLite::Statement& Prepare(size_t slot, const std::string& sql);

  DbConnection& con_;
  const void* handle_ = nullptr;  // the sqlite3 handle the statements belong to
  std::vector<std::unique_ptr<SQLite::Statement>> slots_;
};

// Finalizes the statements of every cache on `con`; a connection calls it
// before it closes its handle.
void ReleaseCachedStatements(const DbConnection& con);

}  // namespace qv::ds

#endif  // QVGLOBAL_DATASOURCE_INTERNAL_STATEMENT_CACHE_H_
