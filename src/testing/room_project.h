// RoomProject is a test fixture: a project database in a temporary folder
// with the four room tables made by the library's own table creation
// (AddRoomTables), filled from room paths, and the CQvConnection open on it.
//
//   RoomProject p({"G1/S1/W1/R1", "G1/S1/W1/R2#5", "G2", "G3/S1"});
//
// Each path names a building, storey, apartment and room down to any depth;
// missing ancestors are added. "KEY#n" gives the record the "OrderNum" n;
// without it a record gets 10 times the number of its siblings added before
// it, so that records come in the order of the paths. "Bezeichnung" is
// "<level> <key>".
#ifndef QVGLOBAL_TESTING_ROOM_PROJECT_H_
#define QVGLOBAL_TESTING_ROOM_PROJECT_H_

#include <memory>
#include <string>
#include <vector>

#include "testing/project_database.h"

namespace qv::ds {
class QvRecordset;
}

namespace qv::testing {

class RoomProject : public ProjectDatabase {
 public:
  explicit RoomProject(const std::vector<std::string>& paths);

  // The four room tables from the connection's cache, building first; the
  // lower three opened with their parent link when `linked`.
  std::vector<std::shared_ptr<ds::QvRecordset>> Levels(bool linked = true);
  // Adds more records to the file through a connection of its own.
  void Add(const std::vector<std::string>& paths);
};

// "G/S/W/R": the four room keys of the record set's current record.
std::string RoomPath(const ds::QvRecordset& rs);

}  // namespace qv::testing

#endif  // QVGLOBAL_TESTING_ROOM_PROJECT_H_
