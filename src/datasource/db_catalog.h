// DbCatalog reads and changes the schema of an open DbConnection: the role
// of the ADOX catalogue. It lists tables, columns (with their ADO type
// codes), primary keys and foreign keys, creates tables, adds columns, adds
// and removes foreign keys (SQLite cannot alter constraints, so the table is
// rebuilt in one transaction with its data, indexes and other keys kept),
// and compacts a database file. It keeps a reference to the connection,
// which must outlive it. Foreign keys are named by a CONSTRAINT clause in
// the table's CREATE statement, so names survive reopening.
// Threads: as the DbConnection it works on (one thread at a time).
#ifndef QVGLOBAL_DATASOURCE_DB_CATALOG_H_
#define QVGLOBAL_DATASOURCE_DB_CATALOG_H_

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "datasource/ado_types.h"
#include "datasource/db_connection.h"

namespace qv::ds {

class DbCatalog {
 public:
  explicit DbCatalog(DbConnection& con);

  std::vector<std::string> Tables()
      const;  // user tables; not sqlite_* system tables
  bool HasTable(std::string_view name) const;  // case-insensitive like SQLite
  // Columns in table order; raises kCatalog "table not found: 't'".
  std::vector<ColumnDef> Columns(std::string_view table) const;
  std::vector<std::string> PrimaryKey(
      std::string_view table) const;  // in key order
  // The name of the primary key; "" when it has none or is unnamed.
  std::string PrimaryKeyName(std::string_view table) const;
  std::vector<ForeignKeyDef> ForeignKeys(std::string_view table) const;
  // Foreign keys of other tables whose related table is `table` (added).
  std::vector<std::pair<std::string, ForeignKeyDef>> ReferencingKeys(
      std::string_view table) const;

  // Creates a table; primary key over `primary_key` (column names, in
  // order). A numeric table's last key column has auto_increment (the
  // record set assigns max+1 when left empty on insert).
  // `primary_key_name`, when not empty, names the key (a CONSTRAINT clause,
  // so the name survives reopening).
  void CreateTable(std::string_view table,
                   const std::vector<ColumnDef>& columns,
                   const std::vector<std::string>& primary_key,
                   std::string_view primary_key_name = {});
  void AddColumn(std::string_view table, const ColumnDef& column);
  // Creates, unless it exists, the index "<table>_order" over the leading
  // keys, "OrderNum" and the last key, in that order: a block read of the
  // records of one parent then finds them already in block order.
  void CreateOrderIndex(std::string_view table,
                        const std::vector<std::string>& keys);
  // Rebuild the table inside one transaction (data, other keys, checks,
  // indexes kept); foreign_key_check before commit. They switch foreign
  // keys off around the rebuild, which SQLite allows only outside a
  // transaction: called while a Transaction is open they raise
  // kTransaction "schema rebuild not possible inside a transaction".
  void AddForeignKey(std::string_view table, const ForeignKeyDef& fk);
  void DropForeignKey(std::string_view table, std::string_view fk_name);
  void DropTable(std::string_view table);

  // Compacts the file in place (VACUUM under the engine's locking and
  // journal): inode, permissions, owner and links stay; a writer of another
  // process is waited for (busy timeout), never lost; failure leaves the
  // file as it was. `progress` receives the bytes of the file read so far
  // and the file's size, and (size, size) once more at the end.
  static void Compact(
      const std::string& path,
      std::function<void(uint64_t read, uint64_t total)> progress = nullptr);

 private:
  // The related column of a foreign key column declared without one: the
  // related table's key column at the same position ("" when none).
  std::string ImpliedRelatedColumn(const ForeignKeyDef& fk) const;

  DbConnection& con_;
};

}  // namespace qv::ds

#endif  // QVGLOBAL_DATASOURCE_DB_CATALOG_H_
