#include "testing/ds_helpers.h"

namespace qv::testing {

void SetKeys(ds::QvRecordset& rs, const std::vector<std::string>& keys) {
  for (size_t i = 0; i < keys.size(); ++i)
    rs.setFieldValue(static_cast<int16_t>(i), Variant(keys[i]));
}

bool ReadBlock(ds::QvRecordset& rs, const std::vector<std::string>& keys) {
  SetKeys(rs, keys);
  return rs.readBlock(static_cast<int16_t>(keys.size()), true);
}

std::vector<std::string> BlockColumn(const ds::QvRecordset& rs,
                                     const std::string& field) {
  const int16_t index = rs.getFieldIndex(field);
  std::vector<std::string> values;
  for (int32_t r = 0; r < rs.getRecordCount(); ++r)
    values.push_back(rs.getBlockValue(r, index).ToString());
  return values;
}

}  // namespace qv::testing
