// CQVGlobalFunctions: the room ordering group.
#include "com/error.h"
#include "datasource/qv_ds.h"
#include "datasource/qv_recordset.h"
#include "rooms/room_ordering.h"
#include "shell/cqv_global_functions.h"

namespace qv {

void CQVGlobalFunctions::SortOrderNumRooms(
    const std::shared_ptr<ds::QvDs>& QvDsRooms,
    std::shared_ptr<ds::QvRecordset> QvRsGebaeude,
    std::shared_ptr<ds::QvRecordset> QvRsStock,
    std::shared_ptr<ds::QvRecordset> QvRsWohnung,
    std::shared_ptr<ds::QvRecordset> QvRsRaum) {
  if (!QvDsRooms) throw Error::Runtime(err::kObjectVariableNotSet);
  NumberRoomsInWalkingOrder(*QvDsRooms, std::move(QvRsGebaeude),
                            std::move(QvRsStock), std::move(QvRsWohnung),
                            std::move(QvRsRaum));
}

void CQVGlobalFunctions::AddRoomOrdering(Builder& builder) {
  builder.Method("SortOrderNumRooms", &CQVGlobalFunctions::SortOrderNumRooms);
}

}  // namespace qv
