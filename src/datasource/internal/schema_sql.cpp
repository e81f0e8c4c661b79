#include "datasource/internal/schema_sql.h"

#include <cstdlib>

#include "com/error.h"
#include "com/text.h"
#include "datasource/db_connection.h"
#include "datasource/db_error.h"
#include "datasource/internal/engine_error.h"
#include "datasource/internal/sql_tokenizer.h"

namespace qv::ds {
namespace {

bool Contains(const std::string& s, std::string_view part) {
  return s.find(part) != std::string::npos;
}

std::string QuotedList(const std::vector<std::string>& names) {
  std::string list;
  for (const std::string& n : names) {
    if (!list.empty()) list += ", ";
    list += QuoteIdentifier(n);
  }
  return list;
}

const char* RuleText(int32_t rule) {
  switch (rule) {
    case kAdRiCascade:
      return "CASCADE";
    case kAdRiSetNull:
      return "SET NULL";
    case kAdRiSetDefault:
      return "SET DEFAULT";
    default:
      return "NO ACTION";
  }
}

// The size in "VARCHAR(50)", or 0.
int32_t DeclaredSize(const std::string& t) {
  const size_t open = t.find('(');
  return open == std::string::npos ? 0 : std::atoi(t.c_str() + open + 1);
}

// Reads one table item (tokens [first, last)) of a CREATE TABLE statement.
CreateTableText::Item ReadItem(const std::vector<SqlToken>& tokens,
                               size_t first, size_t last) {
  CreateTableText::Item item;
  item.begin = tokens[first].begin;
  item.end = tokens[last - 1].end;
  size_t i = first;
  if (tokens[i].IsKeyword("CONSTRAINT") && i + 1 < last) {
    item.constraint_name = tokens[i + 1].text;
    i += 2;
  }
  if (i + 1 < last && tokens[i].IsKeyword("PRIMARY") &&
      tokens[i + 1].IsKeyword("KEY")) {
    item.primary_key = true;
    return item;
  }
  if (i + 1 >= last || !tokens[i].IsKeyword("FOREIGN") ||
      !tokens[i + 1].IsKeyword("KEY")) {
    return item;
  }
  item.foreign_key = true;
  for (i += 2; i < last && !tokens[i].IsPunct(')'); ++i) {
    if (tokens[i].IsName()) item.columns.push_back(tokens[i].text);
  }
  for (; i < last; ++i) {
    if (tokens[i].IsKeyword("REFERENCES") && i + 1 < last) {
      item.related_table = tokens[i + 1].text;
      break;
    }
  }
  return item;
}

}  // namespace

std::string ColumnDeclaration(std::string_view table, const ColumnDef& c) {
  const std::string name = QuoteIdentifier(c.name);
  switch (c.type) {
    case kAdVarWChar:
      return name + " VARCHAR(" + std::to_string(c.size) +
             ") COLLATE NOCASE CONSTRAINT " +
             QuoteIdentifier(TextTooLongText(table, c.name, c.size)) +
             " CHECK (length(" + name + ") <= " + std::to_string(c.size) + ")";
    case kAdLongVarWChar:
      return name + " LONGTEXT COLLATE NOCASE";
    case kAdBoolean:
      return name + " BIT";
    case kAdDate:
      return name + " DATETIME";
    case kAdSmallInt:
      return name + " SMALLINT CONSTRAINT " +
             QuoteIdentifier(SmallIntRangeText(table, c.name)) + " CHECK (" +
             name + " BETWEEN -32768 AND 32767)";
    case kAdInteger:
      return name + (c.auto_increment ? " INTEGER COUNTER" : " INTEGER");
    case kAdSingle:
      return name + " SINGLE";
    case kAdDouble:
      return name + " DOUBLE";
    case kAdLongVarBinary:
      return name + " LONGBINARY";
    default:
      throw Error(dberr::kCatalog, "DbCatalog",
                  "unknown column type " + std::to_string(c.type) +
                      " for column '" + c.name + "' of table '" +
                      std::string(table) + "'");
  }
}

ColumnDef ColumnFromDeclaredType(std::string name,
                                 std::string_view declared_type) {
  const std::string t = text::ToLowerAscii(text::Trim(declared_type));
  ColumnDef c{std::move(name), kAdLongVarBinary, 0, false};
  if (t == "longtext") {
    c.type = kAdLongVarWChar;
  } else if (t == "bit") {
    c.type = kAdBoolean;
  } else if (t == "datetime") {
    c.type = kAdDate;
  } else if (t == "smallint") {
    c.type = kAdSmallInt;
  } else if (t == "single") {
    c.type = kAdSingle;
  } else if (t == "longbinary" || t.empty() || Contains(t, "blob")) {
    c.type = kAdLongVarBinary;
  } else if (Contains(t, "int")) {
    c.type = kAdInteger;
    c.auto_increment = t == "integer counter";
  } else if (Contains(t, "char") || Contains(t, "text") ||
             Contains(t, "clob")) {
    c.size = DeclaredSize(t);
    c.type = c.size > 0 ? kAdVarWChar : kAdLongVarWChar;
  } else {
    c.type = kAdDouble;  // DOUBLE, REAL, FLOAT, NUMERIC, DECIMAL ...
  }
  return c;
}

std::string ForeignKeyClause(const ForeignKeyDef& fk) {
  std::vector<std::string> columns, related;
  for (const auto& [column, related_column] : fk.columns) {
    columns.push_back(column);
    related.push_back(related_column);
  }
  return "CONSTRAINT " + QuoteIdentifier(fk.name) + " FOREIGN KEY (" +
         QuotedList(columns) + ") REFERENCES " +
         QuoteIdentifier(fk.related_table) + " (" + QuotedList(related) +
         ") ON UPDATE " + RuleText(fk.update_rule) + " ON DELETE " +
         RuleText(fk.delete_rule);
}

int32_t RuleFromText(std::string_view rule) {
  const std::string r = text::ToLowerAscii(rule);
  if (r == "cascade") return kAdRiCascade;
  if (r == "set null") return kAdRiSetNull;
  if (r == "set default") return kAdRiSetDefault;
  return kAdRiNone;
}

bool IsValidRule(int32_t rule) {
  return rule >= kAdRiNone && rule <= kAdRiSetDefault;
}

CreateTableText ParseCreateTable(std::string_view sql, std::string_view table) {
  const std::vector<SqlToken> tokens = TokenizeSql(sql);
  CreateTableText parsed;
  size_t open = 0;
  while (open < tokens.size() && !tokens[open].IsPunct('(')) ++open;
  if (open < 3 || open == tokens.size() || !tokens[0].IsKeyword("CREATE") ||
      !tokens[open - 1].IsName()) {
    throw Error(
        dberr::kCatalog, "DbCatalog",
        "cannot read the definition of table '" + std::string(table) + "'");
  }
  parsed.name_begin = tokens[open - 1].begin;
  parsed.name_end = tokens[open - 1].end;
  int depth = 0;
  size_t item_first = open + 1;
  for (size_t i = open; i < tokens.size(); ++i) {
    if (tokens[i].IsPunct('(')) ++depth;
    const bool closes = tokens[i].IsPunct(')') && --depth == 0;
    if ((depth == 1 && tokens[i].IsPunct(',')) || closes) {
      if (i > item_first)
        parsed.items.push_back(ReadItem(tokens, item_first, i));
      item_first = i + 1;
    }
    if (closes) {
      parsed.body_close = tokens[i].begin;
      return parsed;
    }
  }
  throw Error(
      dberr::kCatalog, "DbCatalog",
      "cannot read the definition of table '" + std::string(table) + "'");
}

std::string AppendItem(std::string_view sql, const CreateTableText& parsed,
                       std::string_view item) {
  const size_t at =
      parsed.items.empty() ? parsed.body_close : parsed.items.back().end;
  return std::string(sql.substr(0, at)) + (parsed.items.empty() ? "" : ", ") +
         std::string(item) + std::string(sql.substr(at));
}

std::string RemoveItem(std::string_view sql, const CreateTableText& parsed,
                       size_t index) {
  const auto& items = parsed.items;
  // Cut from the end of the item before (taking the comma with it), or for
  // the first item up to the start of the next one.
  const size_t from = index > 0 ? items[index - 1].end : items[index].begin;
  const size_t to = index > 0 || items.size() == 1 ? items[index].end
                                                   : items[index + 1].begin;
  return std::string(sql.substr(0, from)) + std::string(sql.substr(to));
}

std::string RenameTable(std::string_view sql, const CreateTableText& parsed,
                        std::string_view name) {
  return std::string(sql.substr(0, parsed.name_begin)) + QuoteIdentifier(name) +
         std::string(sql.substr(parsed.name_end));
}

}  // namespace qv::ds
