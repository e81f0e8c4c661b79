// Column descriptor arrays, the way client modules describe table layouts in
// code: a flat array listing columns one after another, each as its name, its
// ADO type code and, for type 202 only, its size in characters. The
// functions here read such an array into column definitions and raise the
// connection's errors for arrays that do not describe columns.
#ifndef QVGLOBAL_DATA_INTERNAL_COLUMN_DESCRIPTOR_H_
#define QVGLOBAL_DATA_INTERNAL_COLUMN_DESCRIPTOR_H_

#include <vector>

#include "com/safe_array.h"
#include "com/variant.h"
#include "datasource/ado_types.h"

namespace qv {

// Which array is read: the key and data arrays of a new table accept every
// column type; a conversion adds only text, memo, yes/no, date and integer
// columns.
enum class DescriptorKind { kKey, kData, kConvert };

// True for an array without elements and for a variant that holds nothing.
bool IsEmptyDescriptor(const Variant& descriptor);

// The columns `items` describes, in order. Raises QvConnectionError 2 for a
// column whose type or size is missing or whose type code `kind` does not
// accept.
std::vector<ds::ColumnDef> ParseColumnDescriptor(const SafeArray& items,
                                                 DescriptorKind kind);

}  // namespace qv

#endif  // QVGLOBAL_DATA_INTERNAL_COLUMN_DESCRIPTOR_H_
