// RecordBlock holds the records of a record set's current block in memory,
// in block order: one row of field values per record, all rows in one flat
// vector that keeps its capacity from read to read. The record set owns it.
// Internal to src/datasource/.
// Threads: a block belongs to one record set and its thread.
#ifndef QVGLOBAL_DATASOURCE_INTERNAL_RECORD_BLOCK_H_
#define QVGLOBAL_DATASOURCE_INTERNAL_RECORD_BLOCK_H_

#include <cstddef>
#include <span>
#include <vector>

#include "com/variant.h"
#include "datasource/internal/sql_values.h"

namespace SQLite {
class Statement;
}

namespace qv::ds {

class RecordBlock {
 public:
  // Steps `statement` (bound, not yet stepped) to its end and keeps its
  // rows; column i is read as kinds[i]. The statement is reset afterwards,
  // so it holds no read lock on the file.
  void Load(SQLite::Statement& statement, const std::vector<ReadAs>& kinds);
  void Clear() {
    values_.clear();
    rows_ = 0;
  }

  int size() const { return static_cast<int>(rows_); }
  bool empty() const { return rows_ == 0; }
  // Unchecked, for the record set's hot paths: `row` must be in
  // [0, size()) and `field` below the number of fields a row was loaded
  // with; anything else is undefined.
  std::span<const Variant> Row(int row) const {
    return {values_.data() + static_cast<size_t>(row) * width_, width_};
  }
  const Variant& At(int row, int field) const {
    return values_[static_cast<size_t>(row) * width_ +
                   static_cast<size_t>(field)];
  }
  // `row` must be in [0, size()) (not checked).
  void EraseRow(int row);

  // The first row whose fields 0..keys.size()-1 equal `keys` (as a lookup by
  // key compares), -1 when none.
  int FindKeys(std::span<const Variant> keys) const;
  // The first row whose field `field` equals `value`, -1 when none.
  int FindValue(int field, const Variant& value) const;

 private:
  std::vector<Variant> values_;
  size_t width_ = 0;
  size_t rows_ = 0;
};

}  // namespace qv::ds

#endif  // QVGLOBAL_DATASOURCE_INTERNAL_RECORD_BLOCK_H_
