#include "qv/room_file.h"

#include <filesystem>

#include "com/error.h"
#include "data/cqv_connection.h"
#include "datasource/qv_recordset.h"
#include "rooms/croom_iterator.h"

namespace qv::tool {
namespace {

const char* const kLevels[] = {"Gebaeude", "Stock", "Wohnung", "Raum"};

}  // namespace

RoomFile::RoomFile(const std::string& path) {
  if (!std::filesystem::is_regular_file(path))
    throw Error::Object1000("no such file: " + path);
  con_ = container_.getQvProjectConnection(path);
  if (!con_) throw Error::Object1000("cannot open " + path);
  std::string missing;
  for (int i = 0; i < 4; ++i) {
    levels_[static_cast<size_t>(i)] = con_->getTable(kLevels[i]);
    if (!levels_[static_cast<size_t>(i)])
      missing += (missing.empty() ? "" : ", ") + std::string(kLevels[i]);
  }
  if (!missing.empty()) {
    container_.closeQvConnection(con_);
    throw Error::Object1000(path +
                            " is not a module file with rooms: missing "
                            "table(s) " +
                            missing);
  }
}

RoomFile::~RoomFile() {
  try {
    container_.closeQvConnection(con_);
  } catch (const Error&) {  // nothing to report from a destructor
  }
}

std::shared_ptr<CRoomIterator_t_> RoomFile::Iterator() const {
  auto it = std::make_shared<CRoomIterator_t_>();
  it->init(levels_[0], levels_[1], levels_[2], levels_[3]);
  return it;
}

std::string RoomFile::Describe(int level) const {
  const ds::QvRecordset& rs = *levels_[static_cast<size_t>(level)];
  std::string text = rs.getValue(kLevels[level]).ToString();
  if (rs.getFieldIndex("Bezeichnung") >= 0) {
    const Variant label = rs.getValue("Bezeichnung");
    if (!label.IsNull() && !label.IsEmpty()) text += "  " + label.ToString();
  }
  return text;
}

}  // namespace qv::tool
