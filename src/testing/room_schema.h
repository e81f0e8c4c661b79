// Test and benchmark fixture: a keyed hierarchy of paired tables, such as
// the room hierarchy building ("Gebaeude"), storey ("Stock"), apartment
// ("Wohnung") and room ("Raum"). Each level is a pair x / x_t: the key table
// holds the key columns of all levels down to its own plus "OtherFields",
// the data table the same keys plus "OrderNum" and "Bezeichnung". Each key
// table has a cascading foreign key to the key table above it, named after
// the child. Filling writes counts[i] records under every record of the
// level above, in one transaction with prepared inserts.
#ifndef QVGLOBAL_TESTING_ROOM_SCHEMA_H_
#define QVGLOBAL_TESTING_ROOM_SCHEMA_H_

#include <memory>
#include <string>
#include <vector>

#include "testing/temp_dir.h"

namespace qv::ds {
class DbConnection;
class QvRecordset;
}  // namespace qv::ds

namespace qv::testing {

struct HierarchyLevel {
  std::string table;       // also the name of the level's key column
  std::string key_prefix;  // keys are prefix + 1, prefix + 2, ...
};

// Gebaeude "G", Stock "S", Wohnung "W", Raum "R".
std::vector<HierarchyLevel> RoomLevels();

// Creates the tables of `levels` (key columns VARCHAR(20), "OrderNum"
// INTEGER, "Bezeichnung" VARCHAR(50)).
void CreateHierarchy(ds::DbConnection& con,
                     const std::vector<HierarchyLevel>& levels);

// Adds counts[i] records under each record of level i - 1 (counts.size()
// may be less than the number of levels). The record with key prefix + k
// gets "OrderNum" (counts[i] - k) * 10, so that block order (by
// "OrderNum") runs from the highest key number down to 1, and
// "Bezeichnung" "<table> <all its keys joined by '/'>".
void FillHierarchy(ds::DbConnection& con,
                   const std::vector<HierarchyLevel>& levels,
                   const std::vector<int>& counts);

// Creates a new database file at `path` holding the room hierarchy filled
// with `counts`; the returned connection is open on it.
void CreateRoomDatabase(ds::DbConnection& con, const std::string& path,
                        const std::vector<int>& counts);

// A room database in a temporary folder, open on `con`, removed with it.
class RoomDatabase {
 public:
  explicit RoomDatabase(const std::vector<int>& counts);
  ~RoomDatabase();

  const std::string& path() const { return path_; }
  const std::shared_ptr<ds::DbConnection>& con() const { return con_; }
  // A new record set opened on `table`; raises std::runtime_error when it
  // cannot be opened.
  std::shared_ptr<ds::QvRecordset> Open(const std::string& table) const;
  // The four room tables opened and linked parent to child.
  std::vector<std::shared_ptr<ds::QvRecordset>> OpenLinkedLevels() const;

 private:
  TempDir dir_;
  std::string path_;
  std::shared_ptr<ds::DbConnection> con_;
};

}  // namespace qv::testing

#endif  // QVGLOBAL_TESTING_ROOM_SCHEMA_H_
