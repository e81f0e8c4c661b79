// Table names are used trimmed of blanks and in lower case everywhere, so
// that " Raum " and "raum" name the same table. NormalizeTableName is the
// general form; TableNameKey is the allocation-free form for lookups of
// short ASCII names, which is what nearly every table name is.
// Threads: a TableNameKey is a value; the functions keep no state and may run
// on any thread.
#ifndef QVGLOBAL_DATA_TABLE_NAME_H_
#define QVGLOBAL_DATA_TABLE_NAME_H_

#include <array>
#include <string>
#include <string_view>

namespace qv {

// `name` without blanks at either end, in lower case (ASCII and accented
// Latin letters).
std::string NormalizeTableName(std::string_view name);

// The normalised form of a name, kept in a small buffer when the name is
// ASCII and fits, else in a string, together with its hash (see
// table_name_index.h).
class TableNameKey {
 public:
  explicit TableNameKey(std::string_view name);
  TableNameKey(const TableNameKey&) = delete;
  TableNameKey& operator=(const TableNameKey&) = delete;

  std::string_view view() const { return view_; }
  size_t hash() const { return hash_; }

  // The hash of an already normalised name; equals hash() of any name that
  // normalises to it.
  static size_t Hash(std::string_view normalized);

 private:
  static constexpr size_t kBufferSize = 64;
  std::array<char, kBufferSize> buffer_;
  std::string fallback_;
  std::string_view view_;
  size_t hash_ = 0;
};

}  // namespace qv

#endif  // QVGLOBAL_DATA_TABLE_NAME_H_
