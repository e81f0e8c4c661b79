// Creating a project of the suite on disk: a folder NAME.qv3 with one
// module database per module (NAME_VM.qv3 ...), each holding the version
// table and the table "Beschreibung" whose field "Katalogtyp" says where the
// project's catalogues are. The room tables of a project (buildings,
// storeys, apartments, rooms) can be added to a module database and filled
// with sample rooms. These are the steps a new project takes in the
// project-management module; the `qv` tool and the tests use them.
// Threads: the functions open connections of their own and may run on any
// thread, but two threads must not create or change the same project at once.
#ifndef QVGLOBAL_DATA_QV_PROJECT_H_
#define QVGLOBAL_DATA_QV_PROJECT_H_

#include <memory>
#include <string>
#include <vector>

#include "data/cqv_db_container.h"

namespace qv {

class CQvConnection;

// Creates DIR/NAME.qv3 and a database for every module code (checked
// against the module table; a code twice or an unknown code raises before
// anything is written, as does an empty name, "Der Projektname ist leer.",
// or one with a path separator, "Ungültiger Projektname: 'x'", both object
// error 1000). Returns the module file paths in the given order.
std::vector<std::string> CreateQvProject(const std::string& dir,
                                         const std::string& name,
                                         const std::vector<std::string>& moduls,
                                         QvDbCatalogType catalog);

// Creates one module database file with "qvversions" and "Beschreibung".
void CreateModulDatabase(const std::string& path, QvDbCatalogType catalog);

// Adds the four room tables "Gebaeude", "Stock", "Wohnung", "Raum" (each
// keyed by the levels above it and its own key, with "OrderNum" and
// "Bezeichnung", related parent to child).
void AddRoomTables(CQvConnection& con);

}  // namespace qv

#endif  // QVGLOBAL_DATA_QV_PROJECT_H_
