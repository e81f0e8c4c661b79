// Column and relation descriptions of the database engine adapter. Column
// types keep their ADO type codes; the adapter stores them in SQLite as
// declared types and maps them back when it reads the catalogue:
//
//   202 VARCHAR(n) COLLATE NOCASE, length checked (at most n characters)
//   203 LONGTEXT COLLATE NOCASE       11 BIT (stored -1 / 0)
//     7 DATETIME (ISO 8601 text)        2 SMALLINT, range -32768..32767 checked
//     3 INTEGER ("INTEGER COUNTER" for a running number)
//     4 SINGLE      5 DOUBLE      205 LONGBINARY
//
// Plain value types, owned by whoever holds them.
// Threads: the types here are plain values.
#ifndef QVGLOBAL_DATASOURCE_ADO_TYPES_H_
#define QVGLOBAL_DATASOURCE_ADO_TYPES_H_

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace qv::ds {

// ADO data type codes kept through SQLite declared types.
enum AdoType : int32_t {
  kAdSmallInt = 2,
  kAdInteger = 3,
  kAdSingle = 4,
  kAdDouble = 5,
  kAdDate = 7,
  kAdBoolean = 11,
  kAdVarWChar = 202,
  kAdLongVarWChar = 203,
  kAdLongVarBinary = 205,
};

// ADO referential-integrity rules of a foreign key.
enum AdoRule : int32_t {
  kAdRiNone = 0,        // NO ACTION (RESTRICT reads back as this too)
  kAdRiCascade = 1,     // CASCADE
  kAdRiSetNull = 2,     // SET NULL
  kAdRiSetDefault = 3,  // SET DEFAULT
};

struct ColumnDef {
  std::string name;
  int32_t type = kAdInteger;
  int32_t size = 0;             // size only for 202
  bool auto_increment = false;  // running number (numeric tables)

  bool operator==(const ColumnDef&) const = default;
};

struct ForeignKeyDef {
  std::string name;  // the relation's name (setChild names it after the child)
  std::string related_table;  // the parent table
  std::vector<std::pair<std::string, std::string>>
      columns;  // (column, related column)
  int32_t update_rule = kAdRiCascade;
  int32_t delete_rule = kAdRiCascade;

  bool operator==(const ForeignKeyDef&) const = default;
};

}  // namespace qv::ds

#endif  // QVGLOBAL_DATASOURCE_ADO_TYPES_H_
