// RoomFile opens a module file for the room commands of the qv tool: the
// project connection from a database container of its own, and the record
// sets of the four room tables ("Gebaeude", "Stock", "Wohnung", "Raum"),
// not yet linked (the room iterator links them). A file that does not exist
// or lacks one of the tables raises object error 1000 naming what is
// missing, before anything is read or written. The connection is closed
// when the object goes.
#ifndef QVGLOBAL_TOOLS_QV_ROOM_FILE_H_
#define QVGLOBAL_TOOLS_QV_ROOM_FILE_H_

#include <array>
#include <memory>
#include <string>

#include "data/cqv_db_container.h"

namespace qv {
class CQvConnection;
class CRoomIterator_t_;
namespace ds {
class QvRecordset;
}
}  // namespace qv

namespace qv::tool {

class RoomFile {
 public:
  explicit RoomFile(const std::string& path);
  ~RoomFile();
  RoomFile(const RoomFile&) = delete;
  RoomFile& operator=(const RoomFile&) = delete;

  CQvConnection& connection() const { return *con_; }
  const std::shared_ptr<ds::QvRecordset>& level(int i) const {
    return levels_[static_cast<size_t>(i)];
  }
  // An iterator initialised with the four tables.
  std::shared_ptr<CRoomIterator_t_> Iterator() const;
  // "key  label" of the record the level's record set stands on; just the
  // key when the table has no "Bezeichnung".
  std::string Describe(int level) const;

 private:
  CQvDbContainer container_;
  std::shared_ptr<CQvConnection> con_;
  std::array<std::shared_ptr<ds::QvRecordset>, 4> levels_;
};

}  // namespace qv::tool

#endif  // QVGLOBAL_TOOLS_QV_ROOM_FILE_H_
