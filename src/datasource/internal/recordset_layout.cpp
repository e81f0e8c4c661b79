#include "datasource/internal/recordset_layout.h"

#include <algorithm>

#include "datasource/db_catalog.h"
#include "datasource/db_connection.h"
#include "datasource/internal/field_value.h"

namespace qv::ds {
namespace {

const ColumnDef* FindColumn(const std::vector<ColumnDef>& columns,
                            std::string_view name) {
  for (const ColumnDef& c : columns) {
    if (EqualsNoCase(c.name, name)) return &c;
  }
  return nullptr;
}

std::string Param(int n) { return "?" + std::to_string(n); }

}  // namespace

std::optional<RecordsetLayout> RecordsetLayout::Read(DbConnection& con,
                                                     const std::string& name) {
  const DbCatalog catalog(con);
  if (name.empty() || !catalog.HasTable(name)) return std::nullopt;
  RecordsetLayout layout;
  layout.key_table_ = name;
  layout.data_table_ = name;
  const std::vector<ColumnDef> key_columns = catalog.Columns(name);
  const std::string companion = name + "_t";
  if (FindColumn(key_columns, kOtherFieldsColumn) &&
      catalog.HasTable(companion)) {
    layout.data_table_ = companion;
  }
  const std::vector<ColumnDef> columns =
      layout.paired() ? catalog.Columns(companion) : key_columns;
  const std::vector<std::string> keys = catalog.PrimaryKey(layout.data_table_);
  for (const std::string& key : keys) {
    const ColumnDef* c = FindColumn(columns, key);
    if (!c) return std::nullopt;  // a damaged pair: keys differ
    layout.fields_.push_back(*c);
  }
  for (const ColumnDef& c : columns) {
    if (!std::any_of(keys.begin(), keys.end(), [&](const std::string& k) {
          return EqualsNoCase(k, c.name);
        })) {
      layout.fields_.push_back(c);
    }
  }
  layout.key_count_ = static_cast<int>(keys.size());
  if (!keys.empty()) {
    const ColumnDef* in_key_table = FindColumn(key_columns, keys.back());
    layout.running_number_ = layout.fields_[keys.size() - 1].auto_increment ||
                             (in_key_table && in_key_table->auto_increment);
  }
  layout.order_num_field_ = layout.FieldIndex(kOrderNumColumn);
  for (const ColumnDef& c : layout.fields_) {
    layout.read_kinds_.push_back(ReadAsForAdoType(c.type));
  }
  return layout;
}

int RecordsetLayout::FieldIndex(std::string_view name) const {
  for (size_t i = 0; i < fields_.size(); ++i) {
    if (EqualsNoCase(fields_[i].name, name)) return static_cast<int>(i);
  }
  return -1;
}

std::string RecordsetLayout::KeyCondition(int count, int first_param) const {
  std::string sql;
  for (int i = 0; i < count; ++i) {
    sql += i == 0 ? " WHERE " : " AND ";
    sql += QuoteIdentifier(fields_[i].name) + " = " + Param(first_param + i);
  }
  return sql;
}

std::string RecordsetLayout::SelectSql(int n, bool first_only) const {
  std::string sql = "SELECT ";
  for (size_t i = 0; i < fields_.size(); ++i) {
    if (i > 0) sql += ", ";
    sql += QuoteIdentifier(fields_[i].name);
  }
  sql += " FROM " + QuoteIdentifier(data_table_) + KeyCondition(n, 1) +
         " ORDER BY ";
  std::vector<std::string> order;
  if (order_num_field_ >= 0) order.push_back(QuoteIdentifier(kOrderNumColumn));
  for (int i = 0; i < key_count_; ++i)
    order.push_back(QuoteIdentifier(fields_[i].name));
  if (order.empty()) order.push_back("rowid");
  for (size_t i = 0; i < order.size(); ++i)
    sql += (i > 0 ? ", " : "") + order[i];
  if (first_only) sql += " LIMIT 1";
  return sql;
}

std::string RecordsetLayout::InsertKeySql() const {
  std::string columns, values;
  for (int i = 0; i < key_count_; ++i) {
    columns += QuoteIdentifier(fields_[i].name) + ", ";
    values += Param(i + 1) + ", ";
  }
  return "INSERT INTO " + QuoteIdentifier(key_table_) + " (" + columns +
         QuoteIdentifier(kOtherFieldsColumn) + ") VALUES (" + values + "NULL)";
}

std::string RecordsetLayout::InsertDataSql() const {
  std::string columns, values;
  for (size_t i = 0; i < fields_.size(); ++i) {
    columns += (i > 0 ? ", " : "") + QuoteIdentifier(fields_[i].name);
    values += (i > 0 ? ", " : "") + Param(static_cast<int>(i) + 1);
  }
  return "INSERT INTO " + QuoteIdentifier(data_table_) + " (" + columns +
         ") VALUES (" + values + ")";
}

std::string RecordsetLayout::UpdateDataSql() const {
  std::string sql = "UPDATE " + QuoteIdentifier(data_table_) + " SET ";
  for (size_t i = 0; i < fields_.size(); ++i) {
    sql += (i > 0 ? ", " : "") + QuoteIdentifier(fields_[i].name) + " = " +
           Param(static_cast<int>(i) + 1);
  }
  return sql + KeyCondition(key_count_, field_count() + 1);
}

std::string RecordsetLayout::UpdateKeySql() const {
  std::string sql = "UPDATE " + QuoteIdentifier(key_table_) + " SET ";
  for (int i = 0; i < key_count_; ++i) {
    sql += (i > 0 ? ", " : "") + QuoteIdentifier(fields_[i].name) + " = " +
           Param(i + 1);
  }
  return sql + KeyCondition(key_count_, key_count_ + 1);
}

std::string RecordsetLayout::UpdateFieldSql(int field) const {
  return "UPDATE " + QuoteIdentifier(data_table_) + " SET " +
         QuoteIdentifier(fields_[field].name) + " = ?1" +
         KeyCondition(key_count_, 2);
}

std::string RecordsetLayout::DeleteSql(const std::string& table) const {
  return "DELETE FROM " + QuoteIdentifier(table) + KeyCondition(key_count_, 1);
}

std::string RecordsetLayout::NextNumberSql() const {
  const std::string last = QuoteIdentifier(fields_[key_count_ - 1].name);
  return "SELECT COALESCE(MAX(" + last + "), 0) + 1 FROM " +
         QuoteIdentifier(key_table_) + KeyCondition(key_count_ - 1, 1);
}

}  // namespace qv::ds
