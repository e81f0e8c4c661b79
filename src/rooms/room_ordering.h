// Numbering a project's rooms in walking order: the rows of a room data set
// (its first four columns the room key, and an "OrderNum" column) get the
// order numbers 0, 1, 2 ... in the order in which CRoomIterator_t_ meets
// their rooms. Rooms that the data set does not hold get no number and use
// none up; rows whose room the walk never meets keep their number.
//
// The data set's opening call (beginRenumber) comes before the walk and its
// closing call (endRenumber, which writes the changed numbers to the data
// set's table in one transaction) after it; when the project has no room,
// nothing is numbered and the closing call is not made. The walk and the
// write share one transaction on the hierarchy's database, so the whole
// call takes the file's lock once; nothing of it is kept when it fails.
//
// Errors of the record sets, the data set and the iterator pass through.
// Threads: used on the thread of its record sets.
#ifndef QVGLOBAL_ROOMS_ROOM_ORDERING_H_
#define QVGLOBAL_ROOMS_ROOM_ORDERING_H_

#include <cstdint>
#include <memory>

namespace qv::ds {
class QvDs;
class QvRecordset;
}  // namespace qv::ds

namespace qv {

// Returns how many rows it numbered.
int32_t NumberRoomsInWalkingOrder(ds::QvDs& rooms,
                                  std::shared_ptr<ds::QvRecordset> QvRsGebaeude,
                                  std::shared_ptr<ds::QvRecordset> QvRsStock,
                                  std::shared_ptr<ds::QvRecordset> QvRsWohnung,
                                  std::shared_ptr<ds::QvRecordset> QvRsRaum);

}  // namespace qv

#endif  // QVGLOBAL_ROOMS_ROOM_ORDERING_H_
