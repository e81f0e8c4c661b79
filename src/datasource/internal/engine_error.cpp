#include "datasource/internal/engine_error.h"

#include <SQLiteCpp/Exception.h>
#include <sqlite3.h>

#include <exception>
#include <string>

#include "datasource/db_error.h"

namespace qv::ds {
namespace {

constexpr std::string_view kTooLong = "text too long for column ";
constexpr std::string_view kOutOfRange = "value out of range for column ";

bool StartsWith(std::string_view s, std::string_view prefix) {
  return s.substr(0, prefix.size()) == prefix;
}

// The part after "<kind> constraint failed: ".
std::string_view Detail(std::string_view message) {
  const size_t colon = message.find(": ");
  return colon == std::string_view::npos ? std::string_view()
                                         : message.substr(colon + 2);
}

// "t.a, t.b" -> table "t" and "a, b".
std::string DuplicateKeyText(std::string_view detail) {
  const size_t dot = detail.find('.');
  if (dot == std::string_view::npos)
    return "duplicate key: " + std::string(detail);
  const std::string table(detail.substr(0, dot));
  std::string columns;
  std::string_view rest = detail;
  while (!rest.empty()) {
    const size_t comma = rest.find(", ");
    std::string_view item = rest.substr(0, comma);
    if (StartsWith(item, table + ".")) item.remove_prefix(table.size() + 1);
    if (!columns.empty()) columns += ", ";
    columns += item;
    rest = comma == std::string_view::npos ? std::string_view()
                                           : rest.substr(comma + 2);
  }
  return "duplicate key in table '" + table + "': " + columns;
}

std::string NotNullText(std::string_view detail) {
  const size_t dot = detail.find('.');
  if (dot == std::string_view::npos) {
    return "column '" + std::string(detail) + "' must not be Null";
  }
  return "column '" + std::string(detail.substr(dot + 1)) + "' of table '" +
         std::string(detail.substr(0, dot)) + "' must not be Null";
}

std::string CheckText(std::string_view detail) {
  if (StartsWith(detail, kTooLong) || StartsWith(detail, kOutOfRange)) {
    return std::string(detail);
  }
  return "value not allowed by a rule of the table (CHECK constraint failed: " +
         std::string(detail) + ")";
}

}  // namespace

Error DbErrorFromEngine(int extended_code, std::string_view message,
                        std::string_view source, std::string_view path) {
  const std::string src(source);
  switch (extended_code) {
    case SQLITE_CONSTRAINT_CHECK:
      return Error(dberr::kConstraint, src, CheckText(Detail(message)));
    case SQLITE_CONSTRAINT_PRIMARYKEY:
    case SQLITE_CONSTRAINT_UNIQUE:
      return Error(dberr::kConstraint, src, DuplicateKeyText(Detail(message)));
    case SQLITE_CONSTRAINT_NOTNULL:
      return Error(dberr::kConstraint, src, NotNullText(Detail(message)));
    case SQLITE_CONSTRAINT_FOREIGNKEY:
      return Error(dberr::kConstraint, src,
                   "a relation between tables does not allow this change "
                   "(FOREIGN KEY constraint failed)");
    default:
      break;
  }
  switch (extended_code & 0xff) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return Error(dberr::kBusy, src,
                   "database is locked: '" + std::string(path) + "'");
    case SQLITE_NOTADB:
      return Error(dberr::kConnection, src,
                   "file is not a database: '" + std::string(path) + "'");
    default:
      return Error(dberr::kSql, src, std::string(message));
  }
}

void RethrowAsDbError(std::string_view source, std::string_view path) {
  try {
    throw;
  } catch (const Error&) {
    throw;
  } catch (const SQLite::Exception& e) {
    throw DbErrorFromEngine(e.getExtendedErrorCode(), e.what(), source, path);
  } catch (const std::exception& e) {
    throw Error(dberr::kSql, std::string(source), e.what());
  }
}

std::string TextTooLongText(std::string_view table, std::string_view column,
                            int size) {
  return std::string(kTooLong) + "'" + std::string(column) + "' of table '" +
         std::string(table) + "': at most " + std::to_string(size) +
         " characters";
}

std::string SmallIntRangeText(std::string_view table, std::string_view column) {
  return std::string(kOutOfRange) + "'" + std::string(column) + "' of table '" +
         std::string(table) + "': -32768 to 32767";
}

}  // namespace qv::ds
