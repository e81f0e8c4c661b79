#include "datasource/qv_ds.h"

#include <algorithm>
#include <numeric>

#include "com/class_factory.h"
#include "com/dispatch.h"
#include "com/error.h"
#include "com/safe_array.h"
#include "datasource/internal/field_value.h"
#include "datasource/internal/recordset_layout.h"
#include "datasource/qv_recordset.h"

namespace qv::ds {

QV_REGISTER_CLASS(QvDs);

namespace {

std::string Source(const char* member) { return std::string("QvDs.") + member; }

[[noreturn]] void RaiseOutOfRange(const char* member) {
  throw Error(err::kSubscriptOutOfRange, Source(member),
              RuntimeErrorText(err::kSubscriptOutOfRange));
}

std::string LowerAscii(std::string s) {
  for (char& c : s) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return s;
}

}  // namespace

void QvDs::loadFromRecordset(std::shared_ptr<QvRecordset> rs,
                             const std::vector<std::string>& columns) {
  if (!rs) throw Error::Runtime(err::kObjectVariableNotSet);
  std::vector<int16_t> fields;
  for (const std::string& name : columns) {
    const int16_t f = rs->getFieldIndex(name);
    if (f < 0) {
      throw Error(err::kObjectError1000, Source("loadFromRecordset"),
                  "field '" + name + "' not found in table '" +
                      rs->getTableName() + "'");
    }
    fields.push_back(f);
  }
  const int32_t count = rs->getRecordCount();
  std::vector<Variant> values;
  values.reserve(static_cast<size_t>(count) * fields.size());
  for (int32_t r = 0; r < count; ++r) {
    for (int16_t f : fields) values.push_back(rs->getBlockValue(r, f));
  }
  rs_ = std::move(rs);
  columns_ = columns;
  values_ = std::move(values);
  rows_ = count;
  order_.resize(static_cast<size_t>(count));
  std::iota(order_.begin(), order_.end(), 0);
  ordinal_of_ = order_;
  renumber_from_.reset();
  indexes_.clear();
}

void QvDs::sortBy(const std::string& column) {
  const int32_t c = ColumnByName(column, "sortBy");
  std::stable_sort(order_.begin(), order_.end(), [&](int32_t a, int32_t b) {
    return CompareForSort(At(a, c), At(b, c)) < 0;
  });
  for (int32_t ordinal = 0; ordinal < rows_; ++ordinal)
    ordinal_of_[order_[ordinal]] = ordinal;
}

Variant QvDs::getValue(int32_t row, const std::string& col) const {
  return At(CheckedRow(row, "getValue"), ColumnByName(col, "getValue"));
}

Variant QvDs::getValue(int32_t row, int32_t col) const {
  return At(CheckedRow(row, "getValue"), CheckedColumn(col, "getValue"));
}

int32_t QvDs::recordForOrdinal(int32_t ordinal) const {
  return ordinal >= 0 && ordinal < rows_ ? order_[ordinal] : -1;
}

int32_t QvDs::ordinalForRecord(int32_t record) const {
  return record >= 0 && record < rows_ ? ordinal_of_[record] : -1;
}

std::optional<std::string> QvDs::LookupKey(
    const std::vector<const Variant*>& values) {
  std::string key;
  for (const Variant* v : values) {
    if (v->IsNull() || v->IsEmpty()) return std::nullopt;
    const std::string text = LowerAscii(v->ToString());
    key += std::to_string(text.size()) + ':' + text;
  }
  return key;
}

int32_t QvDs::findRow(const std::vector<int32_t>& column_indexes,
                      const std::vector<Variant>& values) const {
  if (column_indexes.size() != values.size()) {
    throw Error(err::kInvalidProcedureCall, Source("findRow"),
                RuntimeErrorText(err::kInvalidProcedureCall));
  }
  std::string signature;
  for (int32_t c : column_indexes)
    signature += std::to_string(CheckedColumn(c, "findRow")) + ',';
  std::vector<const Variant*> parts;
  for (const Variant& v : values) parts.push_back(&v);
  const std::optional<std::string> wanted = LookupKey(parts);
  if (!wanted) return -1;
  auto [index, created] = indexes_.try_emplace(signature);
  if (created) {
    for (int32_t r = 0; r < rows_; ++r) {
      for (size_t i = 0; i < column_indexes.size(); ++i)
        parts[i] = &At(r, column_indexes[i]);
      if (std::optional<std::string> key = LookupKey(parts))
        index->second.try_emplace(*key, r);
    }
  }
  const auto found = index->second.find(*wanted);
  return found == index->second.end() ? -1 : found->second;
}

void QvDs::setRowValue(int32_t row, const std::string& col, Variant v) {
  const int32_t c = ColumnByName(col, "setRowValue");
  At(CheckedRow(row, "setRowValue"), c) = std::move(v);
  const std::string mark = std::to_string(c);
  std::erase_if(indexes_, [&](const auto& entry) {
    const std::string& sig = entry.first;
    return sig.rfind(mark + ',', 0) == 0 ||
           sig.find(',' + mark + ',') != std::string::npos;
  });
}

void QvDs::beginRenumber() {
  const int32_t c = ColumnByName(std::string(kOrderNumColumn), "beginRenumber");
  std::vector<Variant> numbers;
  for (int32_t r = 0; r < rows_; ++r) numbers.push_back(At(r, c));
  renumber_from_ = std::move(numbers);
}

std::vector<std::vector<Variant>> QvDs::ChangedRowKeys(
    int32_t order_col, std::vector<Variant>& values) const {
  std::vector<int32_t> key_cols;
  for (int16_t k = 0; k < rs_->getKeyCount(); ++k) {
    const int32_t c = getColumnIndex(rs_->getFieldName(k));
    if (c < 0) {
      throw Error(err::kObjectError1000, Source("endRenumber"),
                  "the data set does not hold the key column '" +
                      rs_->getFieldName(k) + "' of table '" +
                      rs_->getTableName() + "'");
    }
    key_cols.push_back(c);
  }
  std::vector<std::vector<Variant>> keys;
  for (int32_t r = 0; r < rows_; ++r) {
    const Variant& now = At(r, order_col);
    const Variant& before = (*renumber_from_)[r];
    if (CompareForSort(now, before) == 0 && now.type() == before.type())
      continue;
    std::vector<Variant> key;
    for (int32_t c : key_cols) key.push_back(At(r, c));
    keys.push_back(std::move(key));
    values.push_back(now);
  }
  return keys;
}

void QvDs::endRenumber() {
  if (!renumber_from_ || !rs_) {
    throw Error(err::kObjectError1000, Source("endRenumber"),
                "no renumbering has begun");
  }
  const int32_t c = ColumnByName(std::string(kOrderNumColumn), "endRenumber");
  std::vector<Variant> values;
  const std::vector<std::vector<Variant>> keys = ChangedRowKeys(c, values);
  if (!keys.empty()) {
    rs_->writeFieldByKeys(rs_->getFieldIndex(std::string(kOrderNumColumn)),
                          keys, values);
  }
  renumber_from_.reset();
}

std::string QvDs::getColumnName(int32_t col) const {
  return columns_[CheckedColumn(col, "getColumnName")];
}

int32_t QvDs::getColumnIndex(const std::string& name) const {
  for (size_t i = 0; i < columns_.size(); ++i) {
    if (EqualsNoCase(columns_[i], name)) return static_cast<int32_t>(i);
  }
  return -1;
}

int32_t QvDs::CheckedRow(int32_t row, const char* member) const {
  if (row < 0 || row >= rows_) RaiseOutOfRange(member);
  return row;
}

int32_t QvDs::CheckedColumn(int32_t col, const char* member) const {
  if (col < 0 || col >= getColumnCount()) RaiseOutOfRange(member);
  return col;
}

int32_t QvDs::ColumnByName(const std::string& name, const char* member) const {
  const int32_t c = getColumnIndex(name);
  if (c < 0) {
    throw Error(err::kObjectError1000, Source(member),
                "column '" + name + "' not found in the data set");
  }
  return c;
}

ClassInfo QvDs::BuildClassInfo() {
  auto strings = [](const SafeArray& a) {
    std::vector<std::string> out;
    for (const Variant& v : a) out.push_back(v.ToString());
    return out;
  };
  return ClassBuilder<QvDs>("QvDs")
      .Method("loadFromRecordset",
              [strings](QvDs& self, std::shared_ptr<QvRecordset> rs,
                        SafeArray columns) {
                self.loadFromRecordset(std::move(rs), strings(columns));
              })
      .Method("setLevel", &QvDs::setLevel)
      .Method("getLevel", &QvDs::getLevel)
      .Method("sortBy", &QvDs::sortBy)
      .Method("getRowCount", &QvDs::getRowCount)
      .Method("getValue",
              [](QvDs& self, int32_t row, Variant col) {
                return col.IsString() ? self.getValue(row, *col.AsString())
                                      : self.getValue(row, col.ToLong());
              })
      .Method("recordForOrdinal", &QvDs::recordForOrdinal)
      .Method("ordinalForRecord", &QvDs::ordinalForRecord)
      .Method("findRow",
              [](QvDs& self, SafeArray columns, SafeArray values) {
                std::vector<int32_t> cols;
                for (const Variant& v : columns) cols.push_back(v.ToLong());
                return self.findRow(cols, values.items());
              })
      .Method("setRowValue", &QvDs::setRowValue)
      .Method("beginRenumber", &QvDs::beginRenumber)
      .Method("endRenumber", &QvDs::endRenumber)
      .Method("getColumnCount", &QvDs::getColumnCount)
      .Method("getColumnName", &QvDs::getColumnName)
      .Method("getColumnIndex", &QvDs::getColumnIndex)
      .Build();
}

}  // namespace qv::ds
