#include "testing/room_project.h"

#include <map>

#include "com/text.h"
#include "data/qv_project.h"
#include "datasource/qv_recordset.h"

namespace qv::testing {
namespace {

const char* const kLevels[] = {"Gebaeude", "Stock", "Wohnung", "Raum"};

void Insert(CQvConnection& con, const std::vector<std::string>& paths) {
  std::map<std::string, int> seen;  // parent path -> children added
  std::map<std::string, bool> added;
  for (const std::string& path : paths) {
    const std::vector<std::string> parts = text::Split(path, "/");
    std::string parent;
    std::vector<std::string> keys;
    for (size_t level = 0; level < parts.size(); ++level) {
      const size_t hash = parts[level].find('#');
      keys.push_back(parts[level].substr(0, hash));
      const std::string here = parent + "/" + keys.back();
      if (!added[here]) {
        added[here] = true;
        const int order = hash == std::string::npos
                              ? 10 * seen[parent]
                              : std::stoi(parts[level].substr(hash + 1));
        ++seen[parent];
        auto rs = con.getTable(kLevels[level]);
        rs->clearVars();
        for (size_t k = 0; k <= level; ++k)
          rs->setValue(kLevels[k], Variant(keys[k]));
        rs->setValue("OrderNum", Variant(int32_t{order}));
        rs->setValue("Bezeichnung",
                     Variant(std::string(kLevels[level]) + " " + keys.back()));
        rs->insertRecord();
      }
      parent = here;
    }
  }
}

}  // namespace

RoomProject::RoomProject(const std::vector<std::string>& paths) {
  AddRoomTables(connection());
  Insert(connection(), paths);
  Reopen();  // a fresh table cache, as a module would find it
}

std::vector<std::shared_ptr<ds::QvRecordset>> RoomProject::Levels(bool linked) {
  std::vector<std::shared_ptr<ds::QvRecordset>> levels;
  for (int level = 0; level < 4; ++level)
    levels.push_back(
        connection().getTable(kLevels[level], linked && level > 0));
  return levels;
}

void RoomProject::Add(const std::vector<std::string>& paths) {
  std::shared_ptr<CQvConnection> other = OpenAnother();
  Insert(*other, paths);
}

std::string RoomPath(const ds::QvRecordset& rs) {
  std::string path;
  for (const char* level : kLevels)
    path += (path.empty() ? "" : "/") + rs.getValue(level).ToString();
  return path;
}

}  // namespace qv::testing
