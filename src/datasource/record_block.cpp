#include "datasource/record_block.h"

#include <SQLiteCpp/Statement.h>

#include "datasource/field_value.h"

namespace qv::ds {

void RecordBlock::Load(SQLite::Statement& statement, const std::vector<ReadAs>& kinds) {
  width_ = kinds.size();
  rows_ = 0;
  size_t used = 0;
  while (statement.executeStep()) {
    if (values_.size() < used + width_) values_.resize(used + width_);
    for (size_t i = 0; i < width_; ++i) {
      values_[used + i] = ReadColumn(statement, static_cast<int>(i), kinds[i]);
    }
    used += width_;
    ++rows_;
  }
  statement.reset();
  values_.resize(used);
}

void RecordBlock::EraseRow(int row) {
  const auto first = values_.begin() + static_cast<ptrdiff_t>(row) * static_cast<ptrdiff_t>(width_);
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
