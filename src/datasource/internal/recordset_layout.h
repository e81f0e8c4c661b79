// RecordsetLayout describes the logical table behind a record set and writes
// the SQL the record set runs on it. A logical table is either a pair (the
// key table "x" with the key columns and "OtherFields", and the data table
// "x_t" with the key columns and the data columns) or a plain table. Its
// fields are the key columns (in primary-key order) followed by the other
// columns of the data table (in table order). A value type, read once when
// the record set opens its table. Internal to src/datasource/.
// Threads: a layout is a value, read-only after Read.
#ifndef QVGLOBAL_DATASOURCE_INTERNAL_RECORDSET_LAYOUT_H_
#define QVGLOBAL_DATASOURCE_INTERNAL_RECORDSET_LAYOUT_H_

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "datasource/ado_types.h"
#include "datasource/internal/sql_values.h"

namespace qv::ds {

class DbConnection;

inline constexpr std::string_view kOtherFieldsColumn = "OtherFields";
inline constexpr std::string_view kOrderNumColumn = "OrderNum";

class RecordsetLayout {
 public:
  // The layout of the table `name`; std::nullopt when there is no such
  // table. Engine errors pass through.
  static std::optional<RecordsetLayout> Read(DbConnection& con,
                                             const std::string& name);

  const std::string& key_table() const { return key_table_; }
  const std::string& data_table() const { return data_table_; }
  bool paired() const { return key_table_ != data_table_; }
  const std::vector<ColumnDef>& fields() const { return fields_; }
  const std::vector<ReadAs>& read_kinds() const { return read_kinds_; }
  int key_count() const { return key_count_; }
  int field_count() const { return static_cast<int>(fields_.size()); }
  // Position of the "OrderNum" field, -1 when the table has none.
  int order_num_field() const { return order_num_field_; }
  // True when the last key is a running number (numeric table).
  bool running_number() const { return running_number_; }
  // Position of a field by name (letter case ignored), -1 when none.
  int FieldIndex(std::string_view name) const;

  // The fields of the records whose first n keys equal ?1..?n, in block
  // order ("OrderNum" where there is one, then the key); with `first_only`
  // just the first of them.
  std::string SelectSql(int n, bool first_only) const;
  // Pairs only: the key row, keys ?1..?k and a Null "OtherFields".
  std::string InsertKeySql() const;
  // The data row (or the plain table's row), all fields ?1..?f.
  std::string InsertDataSql() const;
  // All fields of the data row to ?1..?f where the keys equal ?f+1...
  std::string UpdateDataSql() const;
  // Pairs only: the keys of the key row to ?1..?k where they equal ?k+1...
  std::string UpdateKeySql() const;
  // One field (?1) of the data row where the keys equal ?2...
  std::string UpdateFieldSql(int field) const;
  // Rows of `table` whose key columns equal ?1..?k.
  std::string DeleteSql(const std::string& table) const;
  // One more than the largest last key among the rows whose leading keys
  // equal ?1..?k-1 (1 when there is none).
  std::string NextNumberSql() const;

 private:
  std::string KeyCondition(int count, int first_param) const;

  std::string key_table_;
  std::string data_table_;
  std::vector<ColumnDef> fields_;
  std::vector<ReadAs> read_kinds_;
  int key_count_ = 0;
  int order_num_field_ = -1;
  bool running_number_ = false;
};

}  // namespace qv::ds

#endif  // QVGLOBAL_DATASOURCE_INTERNAL_RECORDSET_LAYOUT_H_
