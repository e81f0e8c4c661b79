// TableSchema does the catalogue work of CQvConnection's schema operations
// on one open database: creating a logical table as its key table `x` and
// data table `x_t`, adding columns in a conversion, and making or removing
// the parent/child relation between two key tables. It checks what the
// callers hand in and raises the connection's errors; the caller owns the
// transaction around creation and conversion and writes the version rows;
// a relation is added or removed by one rebuild of the child's key table,
// which is atomic by itself and must not run inside a transaction.
// Threads: a TableSchema is a short-lived helper on one connection and used by
// that connection's thread.
#ifndef QVGLOBAL_DATA_INTERNAL_TABLE_SCHEMA_H_
#define QVGLOBAL_DATA_INTERNAL_TABLE_SCHEMA_H_

#include <string>
#include <vector>

#include "com/variant.h"
#include "datasource/ado_types.h"
#include "datasource/db_catalog.h"

namespace qv::ds {
class DbConnection;
}

namespace qv {

// The columns of a new logical table, read from addTable's arguments.
struct TableLayout {
  std::vector<ds::ColumnDef> keys;  // of both tables, in key order
  std::vector<ds::ColumnDef> data;  // of the data table only
};

// Checks addTable's arguments in their order and reads the layout. For a
// numeric table the last key becomes a running number. `name` is already
// normalised.
TableLayout ReadNewTableLayout(const std::string& name, const Variant& vKey,
                               const Variant& vData, bool bIsNumeric);

class TableSchema {
 public:
  explicit TableSchema(ds::DbConnection& con);

  // Creates `name`_t (keys and data) and then `name` (keys and the long
  // binary column "OtherFields"), both keyed over all key columns.
  void CreateTablePair(const std::string& name, const TableLayout& layout);

  // Appends `columns` to the data table of `name` (`name`_t, or `name`
  // itself for a table without a data table).
  void AddDataColumns(const std::string& name,
                      const std::vector<ds::ColumnDef>& columns);

  // Drops the record templates stored for `name` in "QvTemplate", when the
  // database has that table.
  void DropRecordTemplates(const std::string& name);

  // Raises QvConnectionError 3 from convertTable when the database fails its
  // integrity or foreign-key check.
  void CheckIntegrity(const std::string& name);

  // Makes `child` a child of `parent`: a foreign key named after the child
  // over the parent's key columns, cascading updates and deletes. Raises
  // QvConnectionError 5 when the keys do not match, when `child` is `parent`
  // or when `child` is already an ancestor of `parent` (a cycle would make
  // every later insert into the tables fail).
  void Relate(const std::string& parent, const std::string& child);

  // Removes the relation; raises QvConnectionError 6 when there is none.
  void Unrelate(const std::string& parent, const std::string& child);

 private:
  // True when `table` is a parent, grandparent ... of `of`.
  bool IsAncestor(const std::string& table, const std::string& of) const;

  ds::DbConnection& con_;
  ds::DbCatalog catalog_;
};

}  // namespace qv

#endif  // QVGLOBAL_DATA_INTERNAL_TABLE_SCHEMA_H_
