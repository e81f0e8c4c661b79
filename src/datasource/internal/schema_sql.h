// SQL text of table schemas for the catalogue: column declarations with
// their declared types and value checks, foreign key clauses, the way back
// from declared types to ADO codes, and reading and editing the CREATE
// TABLE statements that SQLite keeps (the catalogue changes a table's
// foreign keys by editing that text and rebuilding the table). Internal to
// src/datasource/.
// Threads: the functions keep no state.
#ifndef QVGLOBAL_DATASOURCE_INTERNAL_SCHEMA_SQL_H_
#define QVGLOBAL_DATASOURCE_INTERNAL_SCHEMA_SQL_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "datasource/ado_types.h"

namespace qv::ds {

// `"c" VARCHAR(50) COLLATE NOCASE CONSTRAINT "..." CHECK (...)` and so on;
// `table` names the table in the texts of the value checks.
std::string ColumnDeclaration(std::string_view table, const ColumnDef& column);
// The ADO description of a column from its declared type.
ColumnDef ColumnFromDeclaredType(std::string name,
                                 std::string_view declared_type);
// `CONSTRAINT "n" FOREIGN KEY ("a") REFERENCES "p" ("a") ON UPDATE ... ON
// DELETE ...`
std::string ForeignKeyClause(const ForeignKeyDef& fk);
// "CASCADE" -> 1, "SET NULL" -> 2, "SET DEFAULT" -> 3, others -> 0.
int32_t RuleFromText(std::string_view rule);
bool IsValidRule(int32_t rule);

// The parts of a CREATE TABLE statement, as offsets into its text.
struct CreateTableText {
  struct Item {  // a column definition or a table constraint
    size_t begin = 0, end = 0;
    std::string constraint_name;  // "" when not named
    bool primary_key = false;     // a PRIMARY KEY table constraint
    bool foreign_key = false;
    std::string related_table;         // foreign keys only
    std::vector<std::string> columns;  // foreign keys only
  };
  size_t name_begin = 0, name_end = 0;  // the table name
  size_t body_close = 0;                // the ")" after the last item
  std::vector<Item> items;
};

// Raises kCatalog "cannot read the definition of table 't'" when the text
// is not a CREATE TABLE statement with a column list.
CreateTableText ParseCreateTable(std::string_view sql, std::string_view table);
// The statement with a table constraint appended to its items.
std::string AppendItem(std::string_view sql, const CreateTableText& parsed,
                       std::string_view item);
// The statement without items[index].
std::string RemoveItem(std::string_view sql, const CreateTableText& parsed,
                       size_t index);
// The statement with the table name replaced by `name` (quoted).
std::string RenameTable(std::string_view sql, const CreateTableText& parsed,
                        std::string_view name);

}  // namespace qv::ds

#endif  // QVGLOBAL_DATASOURCE_INTERNAL_SCHEMA_SQL_H_
