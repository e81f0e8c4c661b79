/* Binding of record structures of callers written in C to record sets.
 *
 * A C caller describes its record structure once, field by field (name as
 * in the table, type as an ADO type code, offset and size in the structure),
 * and registers it for the structure's address together with the table's
 * name. A record set bound to it (QvRecordset::attachCPointer) copies its
 * current record into the structure after every move and takes the
 * structure's values back before it inserts or updates a record.
 *
 * Field types and the C types they stand for:
 *   202, 203  char[size], NUL-terminated UTF-8 (longer text is cut at a
 *             character boundary to size - 1 bytes)
 *   2  int16_t     3  int32_t     4  float     5  double
 *   7  double (automation date: days since 1899-12-30)
 *   11 int32_t (-1 true, 0 false; any non-zero value reads as true)
 * Null values are copied out as "" or 0.
 *
 * The pointer that names a structure in the automation interface (the
 * variant of tableNameFromCPointer and attachCPointer) is the structure's
 * address as a Double: user-space addresses have at most 48 significant
 * bits, which a double holds exactly. qv_c_record_pointer gives that value.
 *
 * The registry owns a copy of each layout; the caller owns the structure
 * and must unregister it before the structure goes away. Unregistering
 * detaches it from every record set bound to it. The functions may be
 * called from any thread.
 * Threads: the registry is process-wide and guarded by one mutex.
 */
#ifndef QVGLOBAL_DATASOURCE_C_RECORD_BINDING_H_
#define QVGLOBAL_DATASOURCE_C_RECORD_BINDING_H_

#ifdef __cplusplus
#include <cstddef>
extern "C" {
#else
#include <stddef.h>
#endif

typedef struct QvCFieldLayout {
  const char* name; /* field (column) name, letter case ignored */
  int type;         /* ADO type code, see above */
  size_t offset;    /* offsetof(struct, member) */
  size_t size;      /* sizeof the member */
} QvCFieldLayout;

/* Registers the structure at `address` as a record of `table` with `count`
 * fields. A second registration of the same address replaces the first.
 * Returns 0, or -1 when an argument is invalid (null pointer, no fields,
 * unknown type, a size that does not fit the type, an empty name). */
int qv_register_c_record(void* address, const char* table,
                         const QvCFieldLayout* fields, size_t count);
/* Forgets the structure at `address`; returns 0, or -1 when it was not
 * registered. */
int qv_unregister_c_record(void* address);
/* The value that stands for `address` in a pointer variant. */
double qv_c_record_pointer(const void* address);

#ifdef __cplusplus
}  // extern "C"

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "com/variant.h"
#include "datasource/ado_types.h"

namespace qv::ds {

struct CRecordLayout {
  void* address = nullptr;
  std::string table;
  std::vector<QvCFieldLayout> fields;
  std::vector<std::string> names;  // owned copies of the field names
};

// The pointer variant for `address` (a Double).
Variant CRecordPointer(const void* address);
// The registered structure that a pointer variant designates, nullptr when
// none is registered there. Raises 13 when the variant is no pointer.
std::shared_ptr<const CRecordLayout> FindCRecord(const Variant& pointer);

// One record set's binding to a registered structure. It holds the layout
// weakly: once the structure is unregistered, copies do nothing.
class CRecordBinding {
 public:
  // The binding of `layout` to a record set with `fields`; nullptr when a
  // structure field names no field or its C type cannot hold the field's.
  static std::unique_ptr<CRecordBinding> Bind(
      std::shared_ptr<const CRecordLayout> layout,
      const std::vector<ColumnDef>& fields);

  // Record buffer -> structure.
  void CopyOut(std::span<const Variant> buffer) const;
  // Structure -> record buffer.
  void CopyIn(std::vector<Variant>& buffer) const;

 private:
  std::weak_ptr<const CRecordLayout> layout_;
  std::vector<int> field_of_;  // record-set field of each structure field
};

}  // namespace qv::ds
#endif  // __cplusplus

#endif  // QVGLOBAL_DATASOURCE_C_RECORD_BINDING_H_
