// Test helpers for record sets: filling the leading key fields, reading a
// block by them, and listing one field over the current block.
#ifndef QVGLOBAL_TESTING_DS_HELPERS_H_
#define QVGLOBAL_TESTING_DS_HELPERS_H_

#include <string>
#include <vector>

#include "datasource/qv_recordset.h"

namespace qv::testing {

// Sets buffer fields 0, 1, ... to `keys`.
void SetKeys(ds::QvRecordset& rs, const std::vector<std::string>& keys);

// Sets the leading keys and reads their block afresh; readBlock's result.
bool ReadBlock(ds::QvRecordset& rs, const std::vector<std::string>& keys);

// The values of `field` as text over the current block, in block order,
// without moving.
std::vector<std::string> BlockColumn(const ds::QvRecordset& rs,
                                     const std::string& field);

}  // namespace qv::testing

#endif  // QVGLOBAL_TESTING_DS_HELPERS_H_
