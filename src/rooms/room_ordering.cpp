#include "rooms/room_ordering.h"

#include <vector>

#include "com/error.h"
#include "datasource/db_connection.h"
#include "datasource/qv_ds.h"
#include "datasource/qv_recordset.h"
#include "rooms/croom_iterator.h"

namespace qv {

int32_t NumberRoomsInWalkingOrder(ds::QvDs& rooms,
                                  std::shared_ptr<ds::QvRecordset> QvRsGebaeude,
                                  std::shared_ptr<ds::QvRecordset> QvRsStock,
                                  std::shared_ptr<ds::QvRecordset> QvRsWohnung,
                                  std::shared_ptr<ds::QvRecordset> QvRsRaum) {
  if (!QvRsGebaeude) throw Error::Runtime(err::kObjectVariableNotSet);
  ds::DbConnection::ReadTransaction transaction(
      QvRsGebaeude->getConnection().get());
  CRoomIterator_t_ iterator;
  rooms.beginRenumber();
  iterator.init(std::move(QvRsGebaeude), std::move(QvRsStock),
                std::move(QvRsWohnung), std::move(QvRsRaum));
  if (!iterator.FirstRoom()) return 0;
  const std::vector<int32_t> key_columns{0, 1, 2, 3};
  std::vector<Variant> key(4);
  int32_t counter = 0;
  do {
    for (int level = 0; level < 4; ++level) key[level] = iterator.key()[level];
    const int32_t row = rooms.findRow(key_columns, key);
    if (row >= 0) rooms.setRowValue(row, "OrderNum", Variant(counter++));
  } while (iterator.NextRoom(false));
  rooms.endRenumber();
  transaction.Commit();
  return counter;
}

}  // namespace qv
