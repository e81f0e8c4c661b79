#include "datasource/internal/record_writer.h"

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Statement.h>

#include <algorithm>

#include "com/error.h"
#include "datasource/db_catalog.h"
#include "datasource/db_connection.h"
#include "datasource/db_error.h"
#include "datasource/internal/engine_error.h"
#include "datasource/internal/field_value.h"
#include "datasource/internal/recordset_layout.h"

namespace qv::ds {
namespace {

// Statement slots; the field updates and the descendants' statements follow.
enum Slot : size_t {
  kInsertKey,
  kInsertData,
  kUpdateData,
  kUpdateKey,
  kDeleteKey,
  kDeleteData,
  kNextNumber,
  kFirstFieldUpdate,
};

constexpr char kInsertSource[] = "QvRecordset.insertRecord";
constexpr char kUpdateSource[] = "QvRecordset.updateRecord";
constexpr char kDeleteSource[] = "QvRecordset.deleteRecord";
constexpr char kWriteSource[] = "QvDs.endRenumber";

std::vector<Variant> Concat(std::span<const Variant> a,
                            std::span<const Variant> b) {
  std::vector<Variant> all(a.begin(), a.end());
  all.insert(all.end(), b.begin(), b.end());
  return all;
}

std::string DataChildSql(
    const std::string& table,
    const std::vector<std::pair<std::string, int>>& columns, bool update) {
  std::string set, where;
  const int n = static_cast<int>(columns.size());
  for (int i = 0; i < n; ++i) {
    const std::string column = QuoteIdentifier(columns[i].first);
    set += (i > 0 ? ", " : "") + column + " = ?" + std::to_string(i + 1);
    where += (i > 0 ? " AND " : "") + column + " = ?" +
             std::to_string(i + 1 + (update ? n : 0));
  }
  return update ? "UPDATE " + QuoteIdentifier(table) + " SET " + set +
                      " WHERE " + where
                : "DELETE FROM " + QuoteIdentifier(table) + " WHERE " + where;
}

}  // namespace

RecordWriter::RecordWriter(DbConnection& con, const RecordsetLayout& layout,
                           std::string table_name)
    : con_(con),
      layout_(layout),
      table_name_(std::move(table_name)),
      statements_(con) {}

int RecordWriter::Run(SQLite::Statement& statement,
                      const std::vector<Variant>& params) {
  BindParams(statement, params);
  try {
    const int changes = statement.exec();
    statement.reset();
    return changes;
  } catch (...) {
    statement.tryReset();
    throw;
  }
}

void RecordWriter::Rethrow(const char* source) const {
  RethrowAsDbError(source, con_.Path());
}

std::vector<Variant> RecordWriter::Converted(const std::vector<Variant>& values,
                                             const char* source) const {
  std::vector<Variant> out;
  out.reserve(values.size());
  for (int i = 0; i < layout_.field_count(); ++i) {
    out.push_back(
        ToColumnValue(values[i], layout_.fields()[i], table_name_, source));
  }
  return out;
}

Variant RecordWriter::NextNumber(std::span<const Variant> keys) {
  SQLite::Statement& s =
      statements_.Get(kNextNumber, [&] { return layout_.NextNumberSql(); });
  BindParams(s, std::vector<Variant>(keys.begin(), keys.end() - 1));
  s.executeStep();
  const int64_t next = s.getColumn(0).getInt64();
  s.reset();
  if (next > INT32_MAX) throw Error::Runtime(err::kOverflow);
  return Variant(static_cast<int32_t>(next));
}

void RecordWriter::Insert(std::vector<Variant>& values) {
  std::vector<Variant> row = Converted(values, kInsertSource);
  const int keys = layout_.key_count();
  try {
    DbConnection::Transaction tx(con_);
    if (layout_.running_number() && row[keys - 1].IsNull()) {
      row[keys - 1] = NextNumber(std::span<const Variant>(row).first(keys));
    }
    for (int i = 0; i < keys; ++i) {
      if (row[i].IsNull()) {
        throw Error(dberr::kConstraint, kInsertSource,
                    "column '" + layout_.fields()[i].name + "' of table '" +
                        table_name_ + "' must not be Null");
      }
    }
    if (layout_.paired()) {
      Run(statements_.Get(kInsertKey, [&] { return layout_.InsertKeySql(); }),
          std::vector<Variant>(row.begin(), row.begin() + keys));
    }
    Run(statements_.Get(kInsertData, [&] { return layout_.InsertDataSql(); }),
        row);
    tx.Commit();
  } catch (...) {
    Rethrow(kInsertSource);
  }
  values = std::move(row);
}

void RecordWriter::RequireKey(const char* source) const {
  if (layout_.key_count() == 0) {
    throw Error(err::kObjectError1000, source,
                "table '" + table_name_ +
                    "' has no primary key: its records cannot be told apart");
  }
}

void RecordWriter::Update(std::span<const Variant> old_keys,
                          std::vector<Variant>& values) {
  RequireKey(kUpdateSource);
  std::vector<Variant> row = Converted(values, kUpdateSource);
  const auto new_keys = std::span<const Variant>(row).first(old_keys.size());
  const bool rekeyed =
      !std::equal(old_keys.begin(), old_keys.end(), new_keys.begin());
  try {
    DbConnection::Transaction tx(con_);
    if (rekeyed && layout_.paired()) {
      Run(statements_.Get(kUpdateKey, [&] { return layout_.UpdateKeySql(); }),
          Concat(new_keys, old_keys));
    }
    if (rekeyed) UpdateDataChildren(old_keys, new_keys);
    if (Run(statements_.Get(kUpdateData,
                            [&] { return layout_.UpdateDataSql(); }),
            Concat(row, old_keys)) == 0) {
      throw Error(err::kObjectError1000, kUpdateSource,
                  "the record no longer exists in table '" + table_name_ + "'");
    }
    tx.Commit();
  } catch (...) {
    Rethrow(kUpdateSource);
  }
  values = std::move(row);
}

void RecordWriter::Delete(std::span<const Variant> keys) {
  RequireKey(kDeleteSource);
  try {
    DbConnection::Transaction tx(con_);
    const std::vector<DataChild>& children = DataChildren();
    const size_t base =
        kFirstFieldUpdate + static_cast<size_t>(layout_.field_count());
    for (size_t d = 0; d < children.size(); ++d) {
      if (!children[d].cascade_delete) continue;
      std::vector<Variant> params;
      for (const auto& [column, key] : children[d].columns)
        params.push_back(keys[key]);
      Run(statements_.Get(base + 2 * d,
                          [&] {
                            return DataChildSql(children[d].table,
                                                children[d].columns, false);
                          }),
          params);
    }
    const std::vector<Variant> key_params(keys.begin(), keys.end());
    if (layout_.paired()) {
      Run(statements_.Get(
              kDeleteKey,
              [&] { return layout_.DeleteSql(layout_.key_table()); }),
          key_params);
    }
    Run(statements_.Get(
            kDeleteData,
            [&] { return layout_.DeleteSql(layout_.data_table()); }),
        key_params);
    tx.Commit();
  } catch (...) {
    Rethrow(kDeleteSource);
  }
}

void RecordWriter::WriteField(int field,
                              const std::vector<std::vector<Variant>>& keys,
                              const std::vector<Variant>& values) {
  RequireKey(kWriteSource);
  const ColumnDef& column = layout_.fields()[field];
  std::vector<Variant> params;
  try {
    DbConnection::Transaction tx(con_);
    SQLite::Statement& s =
        statements_.Get(kFirstFieldUpdate + static_cast<size_t>(field),
                        [&] { return layout_.UpdateFieldSql(field); });
    for (size_t i = 0; i < keys.size(); ++i) {
      params.assign(
          1, ToColumnValue(values[i], column, table_name_, kWriteSource));
      params.insert(params.end(), keys[i].begin(), keys[i].end());
      Run(s, params);
    }
    tx.Commit();
  } catch (...) {
    Rethrow(kWriteSource);
  }
}

void RecordWriter::UpdateDataChildren(std::span<const Variant> old_keys,
                                      std::span<const Variant> new_keys) {
  const std::vector<DataChild>& children = DataChildren();
  const size_t base =
      kFirstFieldUpdate + static_cast<size_t>(layout_.field_count());
  for (size_t d = 0; d < children.size(); ++d) {
    if (!children[d].cascade_update) continue;
    std::vector<Variant> params;
    for (const auto& [column, key] : children[d].columns)
      params.push_back(new_keys[key]);
    for (const auto& [column, key] : children[d].columns)
      params.push_back(old_keys[key]);
    Run(statements_.Get(base + 2 * d + 1,
                        [&] {
                          return DataChildSql(children[d].table,
                                              children[d].columns, true);
                        }),
        params);
  }
}

const std::vector<RecordWriter::DataChild>& RecordWriter::DataChildren() {
  if (!data_children_) {
    Mapping mapping;
    for (int i = 0; i < layout_.key_count(); ++i) {
      mapping.emplace_back(layout_.fields()[i].name, i);
    }
    std::vector<std::string> seen{layout_.key_table()};
    std::vector<DataChild> found;
    CollectDataChildren(layout_.key_table(), mapping, true, true, seen, found);
    data_children_ = std::move(found);
  }
  return *data_children_;
}

// Walks the relations that reference `table` (whose columns hold our keys as
// `mapping` says) down to every descendant reached by cascading rules.
void RecordWriter::CollectDataChildren(const std::string& table,
                                       const Mapping& mapping, bool del,
                                       bool upd, std::vector<std::string>& seen,
                                       std::vector<DataChild>& found) {
  const DbCatalog catalog(con_);
  for (const auto& [child, fk] : catalog.ReferencingKeys(table)) {
    const bool child_del = del && fk.delete_rule == kAdRiCascade;
    const bool child_upd = upd && fk.update_rule == kAdRiCascade;
    if (!child_del && !child_upd) continue;
    // clang 14 (the fuzz build) cannot capture a structured binding itself.
    if (std::any_of(seen.begin(), seen.end(),
                    [&name = child](const std::string& s) {
                      return EqualsNoCase(s, name);
                    })) {
      continue;
    }
    seen.push_back(child);
    Mapping child_mapping;
    for (const auto& [column, related] : fk.columns) {
      for (const auto& [name, key] : mapping) {
        if (EqualsNoCase(name, related))
          child_mapping.emplace_back(column, key);
      }
    }
    if (child_mapping.empty()) continue;
    const std::string data = child + "_t";
    if (catalog.HasTable(data)) {
      found.push_back({data, child_mapping, child_del, child_upd});
    }
    CollectDataChildren(child, child_mapping, child_del, child_upd, seen,
                        found);
  }
}

}  // namespace qv::ds
