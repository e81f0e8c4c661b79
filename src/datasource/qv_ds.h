// QvDs is a data set: an ordered in-memory view of rows with named columns,
// loaded from the current block of a record set. Rows are addressed by
// their record number (0-based load order, which is the record's ordinal in
// the record set's block at load time); a stable sort by a column gives
// each record an ordinal (its place in sorted order) without renumbering
// the records. Rows can be found by the values of some columns, and an
// opening and a closing call around a renumbering write the changed
// "OrderNum" values back to the record set's table in one transaction.
//
// The data set shares the record set it was loaded from (its bound table)
// and owns its rows. Errors: qv::Error; rows and columns outside the data
// set raise 9, misuse object error 1000 with source "QvDs.<member>".
// Threads: an object is used by one thread at a time; different objects may be
// used on different threads at once. It takes no locks.
#ifndef QVGLOBAL_DATASOURCE_QV_DS_H_
#define QVGLOBAL_DATASOURCE_QV_DS_H_

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "com/class_info.h"
#include "com/object.h"
#include "com/variant.h"

namespace qv::ds {

class QvRecordset;

class QvDs : public qv::Dispatchable<QvDs> {
 public:
  // Loads the records of the record set's current block (without moving
  // it), with the named fields as columns; the order is the load order.
  void loadFromRecordset(std::shared_ptr<QvRecordset> rs,
                         const std::vector<std::string>& columns);
  void setLevel(int32_t level) { level_ = level; }
  int32_t getLevel() const { return level_; }
  // Stable sort by a column: Null first, then numbers, then text without
  // regard to letter case; equal values keep their present order.
  void sortBy(const std::string& column);
  int32_t getRowCount() const { return rows_; }
  qv::Variant getValue(int32_t row, const std::string& col) const;
  qv::Variant getValue(int32_t row, int32_t col) const;
  // The record at an ordinal of the sorted order, and the other way round;
  // -1 outside the data set.
  int32_t recordForOrdinal(int32_t ordinal) const;
  int32_t ordinalForRecord(int32_t record) const;
  // The first record whose columns column_indexes[i] hold values[i]
  // (compared as text without regard to letter case; Null matches
  // nothing); -1 when none. Lookups by the same columns use an index built
  // on the first of them.
  int32_t findRow(const std::vector<int32_t>& column_indexes,
                  const std::vector<qv::Variant>& values) const;
  void setRowValue(int32_t row, const std::string& col, qv::Variant v);
  // Remembers the "OrderNum" values; endRenumber writes those that have
  // changed since to the bound table, each row found by its key columns
  // (which the data set must hold), in one transaction.
  void beginRenumber();
  void endRenumber();

  int32_t getColumnCount() const {
    return static_cast<int32_t>(columns_.size());
  }
  std::string getColumnName(int32_t col) const;
  int32_t getColumnIndex(const std::string& name) const;  // -1 when none

  static qv::ClassInfo BuildClassInfo();

 private:
  int32_t CheckedRow(int32_t row, const char* member) const;
  int32_t CheckedColumn(int32_t col, const char* member) const;
  int32_t ColumnByName(const std::string& name, const char* member) const;
  Variant& At(int32_t row, int32_t col) { return values_[Offset(row, col)]; }
  const Variant& At(int32_t row, int32_t col) const {
    return values_[Offset(row, col)];
  }
  size_t Offset(int32_t row, int32_t col) const {
    return static_cast<size_t>(row) * columns_.size() +
           static_cast<size_t>(col);
  }
  // The lookup key of a row's (or the wanted) values; nullopt with a Null.
  static std::optional<std::string> LookupKey(
      const std::vector<const Variant*>& values);
  std::vector<std::vector<Variant>> ChangedRowKeys(
      int32_t order_col, std::vector<Variant>& values) const;

  std::shared_ptr<QvRecordset> rs_;
  std::vector<std::string> columns_;
  std::vector<Variant> values_;  // rows_ x columns_, row after row
  int32_t rows_ = 0;
  int32_t level_ = 0;
  std::vector<int32_t> order_;       // ordinal -> record
  std::vector<int32_t> ordinal_of_;  // record -> ordinal
  std::optional<std::vector<Variant>> renumber_from_;
  // Lookup indexes by column list ("0,1,2,3") -> key -> first record.
  mutable std::unordered_map<std::string,
                             std::unordered_map<std::string, int32_t>>
      indexes_;
};

}  // namespace qv::ds

#endif  // QVGLOBAL_DATASOURCE_QV_DS_H_
