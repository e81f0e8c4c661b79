// CQvConnection is the shared handle on one open project or catalogue
// database. It owns the database connection (m_conConnection), opens the
// record sets of the database's tables by name and keeps them in its table
// cache for its whole life, links a record set to its parents through the
// database's foreign keys, keeps the table versions in the version table
// "qvversions", creates, converts and relates tables, and counts its users
// (addRef / release) so that the database container knows when it may close
// the database. Table names are trimmed and lower-cased everywhere.
//
// Transactions are begun and ended on m_conConnection (BeginTrans,
// CommitTrans, RollbackTrans, or its RAII Transaction); after a rollback
// the record sets read their blocks again, tables created in it leave the
// cache (and the application clipboard), converted ones get their old
// layout back.
//
// Ownership: the connection owns its cache entries (CQvRSwithBookMark) and
// through them the cached record sets; callers of getTable share the record
// sets but never close them. Ending the connection closes the database and
// empties the application clipboard of any of its record sets.
// Threads: a connection is used by one thread at a time; different objects may
// be used on different threads at once. Its record sets and table cache belong
// to it and follow the same rule; the connection takes no locks.
#ifndef QVGLOBAL_DATA_CQV_CONNECTION_H_
#define QVGLOBAL_DATA_CQV_CONNECTION_H_

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "com/dictionary.h"
#include "com/object.h"
#include "com/safe_array.h"
#include "com/variant.h"
#include "data/qv_connection_error.h"
#include "data/table_name_index.h"

namespace qv::ds {
class DbConnection;
class QvRecordset;
}  // namespace qv::ds

namespace qv {

class CQvRSwithBookMark;

class CQvConnection : public Dispatchable<CQvConnection> {
 public:
  CQvConnection();
  ~CQvConnection() override;
  CQvConnection(const CQvConnection&) = delete;
  CQvConnection& operator=(const CQvConnection&) = delete;

  // The wrapped database connection; the container opens it.
  std::shared_ptr<ds::DbConnection> m_conConnection;

  // One user more; raises 6 (overflow) beyond 32767 users.
  void addRef();
  // One user fewer; true when the last one has gone. Raises
  // "instance already released" when there is none.
  bool release();

  // The cached or newly opened record set of a table; null when the table
  // cannot be opened. With bWithParent a newly opened table is linked to its
  // parent tables, which must have been opened before: a parent that is not
  // in the cache raises QvConnectionErrorParentTableNotFound "parent table:
  // '<p>' for table: '<t>' not found". Raises
  // QvConnectionErrorAlreadyReleased "instance already released: table 't'
  // not available (Path: p)" once the database is closed (the container
  // closes it when the last user has given the connection back).
  std::shared_ptr<ds::QvRecordset> getTable(const std::string& sTablename,
                                            bool bWithParent = false);
  // getTable for a caller that names the table by a pointer to its own
  // record structure; the record set is bound to that structure.
  std::shared_ptr<ds::QvRecordset> getCTable(Variant& vUglyPointerToC,
                                             bool bWithParent = false);
  // The lower-case database path of the connection string; "" without one.
  std::string Datasource() const;

  // The schema version of the whole database against lVer, as getTableAge
  // for the row "qvversions_t"; raises as getTableAge does.
  QvTableAge getConnectionAge(int32_t lVer);
  // Stores lVer as the version of the whole database; raises 91 without a
  // database and the engine's errors (db_error.h) when the row cannot be
  // written.
  void setConnectionVersion(int32_t lVer);
  // Compares the stored version with lVer. A table without a version row
  // is older and gets the row with version 100 at once; writing that row
  // raises 91 without a database and the engine's errors (db_error.h).
  QvTableAge getTableAge(const std::string& sTablename, int32_t lVer);
  // Sets the table's version and adds the columns Param describes, all or
  // nothing; see table_schema.h. Raises 91 without a database,
  // QvConnectionErrorUnknownFieldType for a bad column description,
  // QvConnectionErrorOpenToConvert when the old or new table cannot be
  // opened or the converted file fails its integrity check, and the engine's
  // errors (db_error.h).
  void convertTable(const std::string& sTablename, int32_t lVer,
                    SafeArray& Param);
  void clearClipboards();
  // The stored version; 0 when there is none or no database. Never raises.
  int32_t getTableVersion(const std::string& sTablename);
  void saveIterPos();
  // True when every cached table could be positioned again.
  bool loadIterPos();
  int32_t getConnectionVersion();
  // Creates the key table and the data table and the version row, all or
  // nothing. Raises 91 without a database, QvConnectionErrorAddTable for a
  // bad name or key/data description ("no tablename", "no key data for:
  // '<t>'" ...), and the engine's errors (db_error.h: kCatalog when the
  // table exists).
  void addTable(const std::string& sTablename, int32_t lVer,
                const Variant& vKey, const Variant& vData, bool bIsNumeric);
  // Relates the key table sChild to its parent sParent (cascading update and
  // delete over the parent's key columns). Raises 91 without a database and
  // QvConnectionErrorSetChild when either table has no keys, the child has
  // fewer keys than the parent or a key column's name differs ("column: <i>
  // off the tables: '<p>' and '<c>' have not the same name"); the engine's
  // errors (db_error.h: kCatalog for a missing table, kConstraint for child
  // rows without a parent) pass through.
  void setChild(const std::string& sParent, const std::string& sChild);
  // Removes that relation. Raises 91 without a database and
  // QvConnectionErrorDelChild "there is no relation between : '<p>' and
  // '<c>'" when there is none; engine errors pass through.
  void delChild(const std::string& sParent, const std::string& sChild);
  // The database size stored in the version table; 0 when none. Never raises.
  int32_t getDatabaseSize();
  // Stores it; raises as setConnectionVersion.
  void setDatabaseSize(int32_t lSize);

  static ClassInfo BuildClassInfo();

 private:
  using EntryPtr = std::shared_ptr<CQvRSwithBookMark>;

  // The open database; raises 91 when m_conConnection is Nothing.
  ds::DbConnection& connection() const;
  void setTableVersion(const std::string& sRow, int32_t lVer);
  // The cache entry of a name, or null.
  template <class Key>
  CQvRSwithBookMark* findEntry(const Key& name) const;
  void addEntry(const std::string& name, std::shared_ptr<ds::QvRecordset> rs);
  void linkParents(const std::string& name,
                   const std::shared_ptr<ds::QvRecordset>& rs);
  // Re-opens the cached record set of `name` so that it sees a new layout.
  void refreshCached(const std::string& name);
  // Remembers a table whose layout changed inside a caller's transaction.
  void noteSchemaChange(const std::string& name);
  // After a rollback on m_conConnection: the cached record sets of tables
  // whose layout changed in it are opened again, or forgotten when the
  // table is gone with the rollback.
  void catchUpWithRollback();
  void forgetTable(const std::string& name);
  template <class F>
  void forEachEntry(F&& f) const;
  void emptyApplicationClipboard() noexcept;

  Dictionary table_cache_;  // normalised name -> CQvRSwithBookMark
  Dictionary table_order_;  // 1, 2, 3 ... -> the same entries
  // Beside the cache, for lookups by name without building a variant key.
  TableNameIndex<EntryPtr> index_;
  std::shared_ptr<ds::QvRecordset> spare_recordset_;  // never opened
  int16_t reference_count_ = 0;
  std::vector<std::string> changed_in_transaction_;
  uint64_t rollbacks_seen_ = 0;
};

}  // namespace qv

#endif  // QVGLOBAL_DATA_CQV_CONNECTION_H_
