// The module table: one CQvModulDef per module of the suite, compiled in,
// in a fixed order that every scan over the table follows. Each thread
// builds its own copy once, on the first CQvModulDefs object, and checks it
// for consistency; the records then stay unchanged for the thread's life.
// A build failure has no caller to reach: it goes to the ErrorCollector with
// "modQvModulDefs->Init: " in front of its source, and the thread keeps
// whatever was built (it is not rebuilt).
// Threads: the table is per thread (thread_local) and read-only once built; no
// locks are taken.
#ifndef QVGLOBAL_MODULES_MODUL_TABLE_H_
#define QVGLOBAL_MODULES_MODUL_TABLE_H_

#include <functional>
#include <memory>
#include <vector>

#include "modules/qv_modul_def.h"

namespace qv {

using ModulTable = std::vector<std::shared_ptr<CQvModulDef>>;
using ModulRowFactory = std::function<ModulTable()>;

// A new set of the sixteen fixed records, in table order.
ModulTable BuildModulTable();

// Checks the rules that keep the table consistent and raises object error
// 1000 (no source) at the first record that breaks one:
// - a record whose module list has more than one entry must list its own
//   code first, must list no multi-instance module but itself, must name its
//   own code first among its catalogues (when it has any), and must not be
//   multi-instance when it has a calculation class;
// - a record with a calculation class must list "EZ" among its modules.
void CheckModulTable(const ModulTable& table);

// This thread's table, built and checked on the first call.
const ModulTable& ThreadModulTable();

// Test seam: forgets this thread's table so that the next ThreadModulTable
// builds it again from `factory` (the fixed rows when `factory` is empty).
void ResetThreadModulTableForTesting(ModulRowFactory factory = nullptr);

}  // namespace qv

#endif  // QVGLOBAL_MODULES_MODUL_TABLE_H_
