#include "datasource/db_catalog.h"

#include <algorithm>
#include <map>
#include <utility>

#include "com/error.h"
#include "com/text.h"
#include "datasource/db_error.h"
#include "datasource/internal/db_compact.h"
#include "datasource/internal/schema_sql.h"
#include "datasource/internal/table_rebuild.h"

namespace qv::ds {
namespace {

// Runs `body`, giving every error it raises the operation's name as source.
template <class F>
auto Run(const char* source, F&& body) -> decltype(body()) {
  try {
    return body();
  } catch (const Error& e) {
    throw Error(e.number(), source, e.description());
  }
}

Error CatalogError(std::string text) {
  return Error(dberr::kCatalog, "DbCatalog", std::move(text));
}

Error TableNotFound(std::string_view table) {
  return CatalogError("table not found: '" + std::string(table) + "'");
}

Error ColumnNotFound(std::string_view column, std::string_view table) {
  return CatalogError("column not found: '" + std::string(column) +
                      "' in table '" + std::string(table) + "'");
}

bool HasColumn(const std::vector<ColumnDef>& columns, std::string_view name) {
  return std::any_of(columns.begin(), columns.end(), [&](const ColumnDef& c) {
    return text::EqualsText(c.name, name);
  });
}

void ValidateColumn(std::string_view table, const ColumnDef& c) {
  if (c.name.empty()) {
    throw CatalogError("column name is empty in table '" + std::string(table) +
                       "'");
  }
  if (c.type == kAdVarWChar && c.size < 1) {
    throw CatalogError("invalid size " + std::to_string(c.size) +
                       " for column '" + c.name + "' of table '" +
                       std::string(table) + "'");
  }
  ColumnDeclaration(table, c);  // raises for an unknown type
}

// The stored name and CREATE statement of a table.
std::pair<std::string, std::string> TableDefinition(DbConnection& con,
                                                    std::string_view table) {
  const auto rows = con.Query(
      "SELECT name, sql FROM sqlite_master WHERE type = 'table' AND name = ?1 "
      "COLLATE NOCASE",
      {Variant(table)});
  if (rows.empty()) throw TableNotFound(table);
  return {rows[0][0].ToString(), rows[0][1].ToString()};
}

bool SameColumns(const ForeignKeyDef& fk,
                 const std::vector<std::string>& columns) {
  if (fk.columns.size() != columns.size()) return false;
  for (size_t i = 0; i < columns.size(); ++i) {
    if (!text::EqualsText(fk.columns[i].first, columns[i])) return false;
  }
  return true;
}

// Gives the keys their names from the CONSTRAINT clauses of the table's
// CREATE statement and puts them in the order of that statement.
std::vector<ForeignKeyDef> NameAndOrder(std::vector<ForeignKeyDef> keys,
                                        const CreateTableText& parsed) {
  std::vector<ForeignKeyDef> ordered;
  for (const auto& item : parsed.items) {
    if (!item.foreign_key) continue;
    auto it =
        std::find_if(keys.begin(), keys.end(), [&](const ForeignKeyDef& fk) {
          return text::EqualsText(fk.related_table, item.related_table) &&
                 SameColumns(fk, item.columns);
        });
    if (it == keys.end()) continue;
    it->name = item.constraint_name;
    ordered.push_back(std::move(*it));
    keys.erase(it);
  }
  for (auto& fk : keys)
    ordered.push_back(std::move(fk));  // declared with their columns
  return ordered;
}

}  // namespace

DbCatalog::DbCatalog(DbConnection& con) : con_(con) {}

std::string DbCatalog::ImpliedRelatedColumn(const ForeignKeyDef& fk) const {
  // A key whose related table is missing has no related column to name.
  if (!HasTable(fk.related_table)) return "";
  const std::vector<std::string> key = PrimaryKey(fk.related_table);
  return fk.columns.size() < key.size() ? key[fk.columns.size()] : "";
}

std::vector<std::string> DbCatalog::Tables() const {
  return Run("DbCatalog.Tables", [&] {
    std::vector<std::string> names;
    for (const auto& row :
         con_.Query("SELECT name FROM sqlite_master WHERE type = 'table' AND "
                    "name NOT LIKE 'sqlite\\_%' ESCAPE '\\' ORDER BY name "
                    "COLLATE NOCASE")) {
      names.push_back(row[0].ToString());
    }
    return names;
  });
}

bool DbCatalog::HasTable(std::string_view name) const {
  return Run("DbCatalog.HasTable", [&] {
    return !con_.Query(
                    "SELECT 1 FROM sqlite_master WHERE type = 'table' AND name "
                    "= ?1 "
                    "COLLATE NOCASE",
                    {Variant(name)})
                .empty();
  });
}

std::vector<ColumnDef> DbCatalog::Columns(std::string_view table) const {
  return Run("DbCatalog.Columns", [&] {
    std::vector<ColumnDef> columns;
    for (const auto& row :
         con_.Query("SELECT name, type FROM pragma_table_info(?1) ORDER BY cid",
                    {Variant(table)})) {
      columns.push_back(
          ColumnFromDeclaredType(row[0].ToString(), row[1].ToString()));
    }
    if (columns.empty()) throw TableNotFound(table);
    return columns;
  });
}

std::vector<std::string> DbCatalog::PrimaryKey(std::string_view table) const {
  return Run("DbCatalog.PrimaryKey", [&] {
    if (!HasTable(table)) throw TableNotFound(table);
    std::vector<std::string> key;
    for (const auto& row : con_.Query(
             "SELECT name FROM pragma_table_info(?1) WHERE pk > 0 ORDER BY pk",
             {Variant(table)})) {
      key.push_back(row[0].ToString());
    }
    return key;
  });
}

std::string DbCatalog::PrimaryKeyName(std::string_view table) const {
  return Run("DbCatalog.PrimaryKeyName", [&] {
    const auto [name, sql] = TableDefinition(con_, table);
    for (const auto& item : ParseCreateTable(sql, name).items) {
      if (item.primary_key) return item.constraint_name;
    }
    return std::string();
  });
}

std::vector<ForeignKeyDef> DbCatalog::ForeignKeys(
    std::string_view table) const {
  return Run("DbCatalog.ForeignKeys", [&] {
    const auto [name, sql] = TableDefinition(con_, table);
    std::map<int32_t, ForeignKeyDef> by_id;
    for (const auto& row : con_.Query(
             "SELECT id, \"table\", \"from\", \"to\", on_update, on_delete "
             "FROM pragma_foreign_key_list(?1) ORDER BY id, seq",
             {Variant(name)})) {
      ForeignKeyDef& fk = by_id[row[0].ToLong()];
      fk.related_table = row[1].ToString();
      // A key declared without related columns refers to the primary key.
      const std::string related =
          row[3].IsNull() ? ImpliedRelatedColumn(fk) : row[3].ToString();
      fk.columns.emplace_back(row[2].ToString(), related);
      fk.update_rule = RuleFromText(row[4].ToString());
      fk.delete_rule = RuleFromText(row[5].ToString());
    }
    std::vector<ForeignKeyDef> keys;
    for (auto it = by_id.rbegin(); it != by_id.rend(); ++it)
      keys.push_back(it->second);
    return NameAndOrder(std::move(keys), ParseCreateTable(sql, name));
  });
}

std::vector<std::pair<std::string, ForeignKeyDef>> DbCatalog::ReferencingKeys(
    std::string_view table) const {
  std::vector<std::pair<std::string, ForeignKeyDef>> found;
  for (const std::string& other : Tables()) {
    for (ForeignKeyDef& fk : ForeignKeys(other)) {
      if (text::EqualsText(fk.related_table, table))
        found.emplace_back(other, std::move(fk));
    }
  }
  return found;
}

void DbCatalog::CreateTable(std::string_view table,
                            const std::vector<ColumnDef>& columns,
                            const std::vector<std::string>& primary_key,
                            std::string_view primary_key_name) {
  Run("DbCatalog.CreateTable", [&] {
    if (table.empty()) throw CatalogError("table name is empty");
    if (columns.empty()) {
      throw CatalogError("table '" + std::string(table) + "' has no columns");
    }
    if (HasTable(table)) {
      throw CatalogError("table already exists: '" + std::string(table) + "'");
    }
    std::string sql = "CREATE TABLE " + QuoteIdentifier(table) + " (";
    for (size_t i = 0; i < columns.size(); ++i) {
      ValidateColumn(table, columns[i]);
      if (HasColumn(
              {columns.begin(), columns.begin() + static_cast<ptrdiff_t>(i)},
              columns[i].name)) {
        throw CatalogError("duplicate column '" + columns[i].name +
                           "' in table '" + std::string(table) + "'");
      }
      sql += (i > 0 ? ", " : "") + ColumnDeclaration(table, columns[i]);
    }
    std::string key;
    for (const std::string& k : primary_key) {
      if (!HasColumn(columns, k)) throw ColumnNotFound(k, table);
      key += (key.empty() ? "" : ", ") + QuoteIdentifier(k);
    }
    if (!key.empty()) {
      if (!primary_key_name.empty()) {
        sql += ", CONSTRAINT " + QuoteIdentifier(primary_key_name);
      }
      sql += (primary_key_name.empty() ? ", " : " ") +
             std::string("PRIMARY KEY (") + key + ")";
    }
    sql += ")";
    DbConnection::Transaction transaction(con_);
    con_.Execute(sql);
    transaction.Commit();
  });
}

void DbCatalog::CreateOrderIndex(std::string_view table,
                                 const std::vector<std::string>& keys) {
  Run("DbCatalog.CreateOrderIndex", [&] {
    if (keys.empty())
      throw CatalogError("table '" + std::string(table) +
                         "' has no key for an order index");
    std::string columns;
    for (size_t i = 0; i + 1 < keys.size(); ++i)
      columns += QuoteIdentifier(keys[i]) + ", ";
    columns +=
        QuoteIdentifier("OrderNum") + ", " + QuoteIdentifier(keys.back());
    con_.Execute("CREATE INDEX IF NOT EXISTS " +
                 QuoteIdentifier(std::string(table) + "_order") + " ON " +
                 QuoteIdentifier(table) + " (" + columns + ")");
  });
}

void DbCatalog::AddColumn(std::string_view table, const ColumnDef& column) {
  Run("DbCatalog.AddColumn", [&] {
    const auto [name, sql] = TableDefinition(con_, table);
    ValidateColumn(name, column);
    if (HasColumn(Columns(name), column.name)) {
      throw CatalogError("column already exists: '" + column.name +
                         "' in table '" + name + "'");
    }
    con_.Execute("ALTER TABLE " + QuoteIdentifier(name) + " ADD COLUMN " +
                 ColumnDeclaration(name, column));
  });
}

void DbCatalog::AddForeignKey(std::string_view table, const ForeignKeyDef& fk) {
  Run("DbCatalog.AddForeignKey", [&] {
    const auto [name, sql] = TableDefinition(con_, table);
    if (fk.name.empty()) throw CatalogError("foreign key name is empty");
    if (fk.columns.empty()) {
      throw CatalogError("foreign key '" + fk.name + "' of table '" + name +
                         "' has no columns");
    }
    if (!IsValidRule(fk.update_rule) || !IsValidRule(fk.delete_rule)) {
      throw CatalogError("invalid rule for foreign key '" + fk.name + "'");
    }
    const std::vector<ColumnDef> columns = Columns(name);
    const std::vector<ColumnDef> related = Columns(fk.related_table);
    for (const auto& [column, related_column] : fk.columns) {
      if (!HasColumn(columns, column)) throw ColumnNotFound(column, name);
      if (!HasColumn(related, related_column)) {
        throw ColumnNotFound(related_column, fk.related_table);
      }
    }
    const CreateTableText parsed = ParseCreateTable(sql, name);
    for (const auto& item : parsed.items) {
      if (!item.constraint_name.empty() &&
          text::EqualsText(item.constraint_name, fk.name)) {
        throw CatalogError("foreign key already exists: '" + fk.name +
                           "' in table '" + name + "'");
      }
    }
    RebuildTable(con_, name, AppendItem(sql, parsed, ForeignKeyClause(fk)));
  });
}

void DbCatalog::DropForeignKey(std::string_view table,
                               std::string_view fk_name) {
  Run("DbCatalog.DropForeignKey", [&] {
    const auto [name, sql] = TableDefinition(con_, table);
    const CreateTableText parsed = ParseCreateTable(sql, name);
    for (size_t i = 0; i < parsed.items.size(); ++i) {
      if (parsed.items[i].foreign_key &&
          text::EqualsText(parsed.items[i].constraint_name, fk_name)) {
        RebuildTable(con_, name, RemoveItem(sql, parsed, i));
        return;
      }
    }
    throw CatalogError("foreign key not found: '" + std::string(fk_name) +
                       "' in table '" + name + "'");
  });
}

void DbCatalog::DropTable(std::string_view table) {
  Run("DbCatalog.DropTable", [&] {
    const std::string name = TableDefinition(con_, table).first;
    con_.Execute("DROP TABLE " + QuoteIdentifier(name));
  });
}

void DbCatalog::Compact(const std::string& path,
                        std::function<void(uint64_t, uint64_t)> progress) {
  CompactDatabaseFile(path, std::move(progress));
}

}  // namespace qv::ds
