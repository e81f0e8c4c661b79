// RecordWriter writes the records of one logical table for a record set:
// insert, update and delete, each in one transaction and written through at
// once. For a pair it writes the key row and the data row together; it
// assigns a numeric table's running number; and since relations join the
// key tables only, it removes (or re-keys) the data rows of the descendant
// tables that the relations' cascades reach. Values are converted to the
// column types first, so a value that does not fit fails with a clear error
// before anything is written. Owned by the record set; the connection and
// the layout must outlive it. Internal to src/datasource/.
// Threads: a writer is a short-lived helper of one record set and its thread.
#ifndef QVGLOBAL_DATASOURCE_INTERNAL_RECORD_WRITER_H_
#define QVGLOBAL_DATASOURCE_INTERNAL_RECORD_WRITER_H_

#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "com/variant.h"
#include "datasource/internal/statement_cache.h"

namespace qv::ds {

class DbConnection;
class RecordsetLayout;

class RecordWriter {
 public:
  RecordWriter(DbConnection& con, const RecordsetLayout& layout,
               std::string table_name);

  // Adds the record `values` (all fields). On success `values` holds what
  // was stored: converted values and the assigned running number.
  void Insert(std::vector<Variant>& values);
  // Writes `values` over the record whose keys are `old_keys`; on success
  // `values` holds what was stored. Raises when the record is gone.
  void Update(std::span<const Variant> old_keys, std::vector<Variant>& values);
  // Deletes the record with `keys`, its data row and the data rows of its
  // descendants (its key row's cascade removes their key rows).
  void Delete(std::span<const Variant> keys);
  // Sets field `field` of each record keys[i] to values[i].
  void WriteField(int field, const std::vector<std::vector<Variant>>& keys,
                  const std::vector<Variant>& values);

 private:
  // A data table of a descendant reached through cascading relations: its
  // columns that hold our key values, each with our key's position.
  struct DataChild {
    std::string table;
    std::vector<std::pair<std::string, int>> columns;
    bool cascade_delete = true;
    bool cascade_update = true;
  };
  using Mapping = std::vector<std::pair<std::string, int>>;

  std::vector<Variant> Converted(const std::vector<Variant>& values,
                                 const char* source) const;
  Variant NextNumber(std::span<const Variant> keys);
  static int Run(SQLite::Statement& statement,
                 const std::vector<Variant>& params);
  const std::vector<DataChild>& DataChildren();
  void CollectDataChildren(const std::string& table, const Mapping& mapping,
                           bool del, bool upd, std::vector<std::string>& seen,
                           std::vector<DataChild>& found);
  void UpdateDataChildren(std::span<const Variant> old_keys,
                          std::span<const Variant> new_keys);
  [[noreturn]] void Rethrow(const char* source) const;
  // Updates and deletes find a record by its key.
  void RequireKey(const char* source) const;

  DbConnection& con_;
  const RecordsetLayout& layout_;
  std::string table_name_;
  StatementCache statements_;
  std::optional<std::vector<DataChild>> data_children_;
};

}  // namespace qv::ds

#endif  // QVGLOBAL_DATASOURCE_INTERNAL_RECORD_WRITER_H_
