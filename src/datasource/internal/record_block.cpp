#include "datasource/internal/record_block.h"

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Statement.h>
#include <sqlite3.h>

#include <limits>

#include "com/variant_date.h"
#include "datasource/internal/field_value.h"

namespace qv::ds {
namespace {

// The value of a result column read as `kind`: the mapping of the adapter's
// ReadColumn (sql_values.h), with a single type query per value, since
// block reads are the hot path of every walk.
Variant ReadValue(const SQLite::Column& c, ReadAs kind) {
  switch (c.getType()) {
    case SQLITE_NULL:
      return Variant(kNull);
    case SQLITE_INTEGER: {
      const int64_t v = c.getInt64();
      switch (kind) {
        case ReadAs::kBoolean:
          return Variant(v != 0);
        case ReadAs::kSmallInt:
          if (v >= INT16_MIN && v <= INT16_MAX)
            return Variant(static_cast<int16_t>(v));
          break;
        case ReadAs::kSingle:
          return Variant(static_cast<float>(v));
        case ReadAs::kDouble:
          return Variant(static_cast<double>(v));
        case ReadAs::kDate:
          return Variant(Date{static_cast<double>(v)});
        case ReadAs::kText:
          return Variant(
              std::string(c.getText(), static_cast<size_t>(c.getBytes())));
        default:
          break;
      }
      if (v >= std::numeric_limits<int32_t>::min() &&
          v <= std::numeric_limits<int32_t>::max()) {
        return Variant(static_cast<int32_t>(v));
      }
      return Variant(static_cast<double>(v));
    }
    case SQLITE_FLOAT: {
      const double d = c.getDouble();
      switch (kind) {
        case ReadAs::kBoolean:
          return Variant(d != 0);
        case ReadAs::kSingle:
          return Variant(static_cast<float>(d));
        case ReadAs::kDate:
          return Variant(Date{d});
        case ReadAs::kText:
          return Variant(
              std::string(c.getText(), static_cast<size_t>(c.getBytes())));
        default:
          return Variant(d);
      }
    }
    default: {  // text and blobs: the bytes
      const char* text = static_cast<const char*>(c.getBlob());
      std::string bytes(text ? text : "", static_cast<size_t>(c.getBytes()));
      if (kind == ReadAs::kDate) {
        if (std::optional<Date> d = ParseDate(bytes)) return Variant(*d);
      }
      return Variant(std::move(bytes));
    }
  }
}

// Reads the column into `slot`; text read as text reuses the slot's string.
void ReadInto(const SQLite::Column& c, ReadAs kind, Variant& slot) {
  if (kind == ReadAs::kText && c.getType() == SQLITE_TEXT) {
    const char* text = static_cast<const char*>(c.getBlob());
    slot.AssignText(
        std::string_view(text ? text : "", static_cast<size_t>(c.getBytes())));
  } else {
    slot = ReadValue(c, kind);
  }
}

}  // namespace

void RecordBlock::Load(SQLite::Statement& statement,
                       const std::vector<ReadAs>& kinds) {
  width_ = kinds.size();
  rows_ = 0;
  size_t used = 0;
  try {
    // A column object reads the row the statement stands on when asked, so
    // one per column serves every row of the block.
    std::vector<SQLite::Column> columns;
    while (statement.executeStep()) {
      if (columns.empty()) {
        columns.reserve(width_);
        for (size_t i = 0; i < width_; ++i)
          columns.push_back(statement.getColumn(static_cast<int>(i)));
      }
      if (values_.size() < used + width_) values_.resize(used + width_);
      for (size_t i = 0; i < width_; ++i)
        ReadInto(columns[i], kinds[i], values_[used + i]);
      used += width_;
      ++rows_;
    }
  } catch (...) {
    statement.tryReset();  // give the read lock back at once
    Clear();
    throw;
  }
  statement.reset();
  values_.resize(used);
}

void RecordBlock::EraseRow(int row) {
  const auto first = values_.begin() + static_cast<ptrdiff_t>(row) *
                                           static_cast<ptrdiff_t>(width_);
  values_.erase(first, first + static_cast<ptrdiff_t>(width_));
  --rows_;
}

int RecordBlock::FindKeys(std::span<const Variant> keys) const {
  for (int row = 0; row < size(); ++row) {
    bool match = true;
    for (size_t k = 0; k < keys.size() && match; ++k) {
      match = KeyEquals(At(row, static_cast<int>(k)), keys[k]);
    }
    if (match) return row;
  }
  return -1;
}

int RecordBlock::FindValue(int field, const Variant& value) const {
  for (int row = 0; row < size(); ++row) {
    if (KeyEquals(At(row, field), value)) return row;
  }
  return -1;
}

}  // namespace qv::ds
