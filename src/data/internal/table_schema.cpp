#include "data/internal/table_schema.h"

#include <algorithm>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "com/text.h"
#include "data/internal/column_descriptor.h"
#include "data/qv_connection_error.h"
#include "datasource/db_connection.h"
#include "datasource/db_maintenance.h"

namespace qv {
namespace {

Error AddTableError(std::string text) {
  return ConnectionError(QvConnectionErrorAddTable, "addTable",
                         std::move(text));
}

Error SetChildError(std::string text) {
  return ConnectionError(QvConnectionErrorSetChild, "setChild",
                         std::move(text));
}

std::string Quoted(const std::string& name) { return "'" + name + "'"; }

}  // namespace

TableLayout ReadNewTableLayout(const std::string& name, const Variant& vKey,
                               const Variant& vData, bool bIsNumeric) {
  if (name.empty()) throw AddTableError("no tablename");
  if (IsEmptyDescriptor(vKey)) {
    throw AddTableError("no key data for: " + Quoted(name));
  }
  if (IsEmptyDescriptor(vData)) {
    throw AddTableError("no data for: " + Quoted(name));
  }
  TableLayout layout;
  layout.keys = ParseColumnDescriptor(vKey.ToArray(), DescriptorKind::kKey);
  if (bIsNumeric) {
    // The last key of a numeric table is a running number.
    if (layout.keys.back().type != ds::kAdInteger) {
      throw AddTableError("last key of: " + Quoted(name) + " is not Integer");
    }
    if (layout.keys.size() < 2) {
      throw AddTableError("numeric table: " + Quoted(name) +
                          " have to have at least 2 keys");
    }
    layout.keys.back().auto_increment = true;
  }
  layout.data = ParseColumnDescriptor(vData.ToArray(), DescriptorKind::kData);
  return layout;
}

TableSchema::TableSchema(ds::DbConnection& con) : con_(con), catalog_(con) {}

void TableSchema::CreateTablePair(const std::string& name,
                                  const TableLayout& layout) {
  std::vector<std::string> primary_key;
  for (const ds::ColumnDef& key : layout.keys) primary_key.push_back(key.name);

  std::vector<ds::ColumnDef> data_columns = layout.keys;
  data_columns.insert(data_columns.end(), layout.data.begin(),
                      layout.data.end());
  // Both keys are named after the first key column.
  const std::string key_name = layout.keys.front().name;
  catalog_.CreateTable(name + "_t", data_columns, primary_key, key_name);
  // Records are read in blocks per parent in "OrderNum" order: an index in
  // that order spares SQLite a sort for every block.
  const bool ordered = std::any_of(
      layout.data.begin(), layout.data.end(), [](const ds::ColumnDef& c) {
        return text::EqualsText(c.name, "OrderNum");
      });
  if (ordered) catalog_.CreateOrderIndex(name + "_t", primary_key);

  std::vector<ds::ColumnDef> key_columns = layout.keys;
  key_columns.push_back({.name = "OtherFields", .type = ds::kAdLongVarBinary});
  catalog_.CreateTable(name, key_columns, primary_key, key_name);
}

void TableSchema::AddDataColumns(const std::string& name,
                                 const std::vector<ds::ColumnDef>& columns) {
  const std::string data_table =
      catalog_.HasTable(name + "_t") ? name + "_t" : name;
  for (const ds::ColumnDef& column : columns) {
    catalog_.AddColumn(data_table, column);
  }
}

void TableSchema::DropRecordTemplates(const std::string& name) {
  if (!catalog_.HasTable("QvTemplate")) return;
  ds::DeleteRowsWhere(con_, "QvTemplate", "Name", Variant(name));
}

void TableSchema::CheckIntegrity(const std::string& name) {
  if (!ds::CheckDatabase(con_, /*quick=*/true).empty()) {
    throw ConnectionError(QvConnectionErrorOpenToConvert, "convertTable",
                          "integrity check failed for: " + Quoted(name));
  }
}

bool TableSchema::IsAncestor(const std::string& table,
                             const std::string& of) const {
  std::vector<std::string> pending{of};
  std::set<std::string> seen;
  while (!pending.empty()) {
    const std::string current = std::move(pending.back());
    pending.pop_back();
    if (!seen.insert(current).second || !catalog_.HasTable(current)) continue;
    for (const ds::ForeignKeyDef& key : catalog_.ForeignKeys(current)) {
      const std::string parent = text::LCase(key.related_table);
      if (parent == table) return true;
      pending.push_back(parent);
    }
  }
  return false;
}

void TableSchema::Relate(const std::string& parent, const std::string& child) {
  if (parent == child) {
    throw SetChildError("table: " + Quoted(child) +
                        " can not be a child of itself");
  }
  if (IsAncestor(child, parent)) {
    throw SetChildError("relation between: " + Quoted(parent) + " and " +
                        Quoted(child) + " would close a cycle, " +
                        Quoted(child) + " is already a parent of " +
                        Quoted(parent));
  }
  const std::vector<std::string> parent_keys = catalog_.PrimaryKey(parent);
  if (parent_keys.empty()) {
    throw SetChildError("in parent table: " + Quoted(parent) +
                        " no keys found");
  }
  const std::vector<std::string> child_keys = catalog_.PrimaryKey(child);
  if (child_keys.empty()) {
    throw SetChildError("in child table: " + Quoted(child) + " no keys found");
  }
  if (child_keys.size() < parent_keys.size()) {
    throw SetChildError("child table: " + Quoted(child) +
                        " have to have the same count off or mores keys as "
                        "the parent table: " +
                        Quoted(parent));
  }
  ds::ForeignKeyDef relation;
  relation.name = child;
  relation.related_table = parent;
  for (size_t i = 0; i < parent_keys.size(); ++i) {
    if (child_keys[i] != parent_keys[i]) {
      throw SetChildError("column: " + std::to_string(i) +
                          " off the tables: " + Quoted(parent) + " and " +
                          Quoted(child) + " have not the same name");
    }
    relation.columns.emplace_back(child_keys[i], parent_keys[i]);
  }
  relation.update_rule = ds::kAdRiCascade;
  relation.delete_rule = ds::kAdRiCascade;
  catalog_.AddForeignKey(child, relation);
}

void TableSchema::Unrelate(const std::string& parent,
                           const std::string& child) {
  for (const ds::ForeignKeyDef& key : catalog_.ForeignKeys(child)) {
    if (text::EqualsText(key.related_table, parent)) {
      catalog_.DropForeignKey(child, key.name);
      return;
    }
  }
  throw ConnectionError(QvConnectionErrorDelChild, "delChild",
                        "there is no relation between : " + Quoted(parent) +
                            " and " + Quoted(child));
}

}  // namespace qv
