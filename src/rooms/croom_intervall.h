// CRoomIntervall_t_ restricts a walk over a project's rooms to an interval:
// every room from a start room to an end room, both included, in the
// walking order of CRoomIterator_t_. A client sets start and end by their
// four keys, may test that the end does not lie before the start, and then
// steps through the interval with firstRec / nextRec, each of which tells
// whether the client's own record set stands on the interval's current room.
//
//   CRoomIntervall_t_ range;
//   range.init(buildings, storeys, apartments, rooms);
//   if (range.startIntervall("G1", "S1", "W1", "R1") &&
//       range.endIntervall("G1", "S2", "W1", "R4") &&
//       range.testStartEndIntervall()) {
//     for (bool ok = range.firstRec(rooms); ok; ok = range.nextRec(rooms)) ...
//   }
//
// Until init, and while the start or the end is unset (a failed
// startIntervall / endIntervall unsets it), every operation does nothing and
// answers False. The end room is recognised by exact, case-sensitive
// comparison of the keys the iterator read back, so an end key that differs
// only in letter case is never reached and the walk runs to the project's
// end. firstRec / nextRec compare the current record of the given record set
// with the iterator's room; they do not move it.
//
// Owns its iterator. Errors of the iterator and the record sets pass
// through unchanged. Threads: used on one thread with its record sets.
#ifndef QVGLOBAL_ROOMS_CROOM_INTERVALL_H_
#define QVGLOBAL_ROOMS_CROOM_INTERVALL_H_

#include <memory>
#include <string>

#include "com/object.h"
#include "rooms/croom_iterator.h"

namespace qv {

class CRoomIntervall_t_ : public Dispatchable<CRoomIntervall_t_> {
 public:
  using RecordsetPtr = CRoomIterator_t_::RecordsetPtr;

  void init(RecordsetPtr QvRsGebaeude, RecordsetPtr QvRsStock,
            RecordsetPtr QvRsWohnung, RecordsetPtr QvRsRaum);
  bool startIntervall(const std::string& sGeb, const std::string& sStock,
                      const std::string& sWohn, const std::string& sRaum);
  bool endIntervall(const std::string& sGeb, const std::string& sStock,
                    const std::string& sWohn, const std::string& sRaum);
  bool testStartEndIntervall();
  bool firstRec(const RecordsetPtr& aRec);
  bool nextRec(const RecordsetPtr& aRec);

  static ClassInfo BuildClassInfo();

 private:
  bool SetRoom(RoomKey& target, const RoomKey& key);
  bool IsIntervallSet() const;
  bool IsEndRoom() const;
  bool MatchRec(const RecordsetPtr& aRec) const;

  bool m_bInit = false;
  std::shared_ptr<CRoomIterator_t_> m_RoomIter;
  RoomKey m_arrStart;
  RoomKey m_arrEnd;
};

}  // namespace qv

#endif  // QVGLOBAL_ROOMS_CROOM_INTERVALL_H_
