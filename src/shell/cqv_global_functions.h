// CQVGlobalFunctions is the suite's public helper class: stateless functions
// every module needs on messages, record sets, the display and rooms. Each
// group of members is implemented in its own source file
// (cqv_global_functions_<group>.cpp) and adds itself to the class's
// dispatch table in the interface order: messages, record helpers, display
// helpers, room ordering.
//
// Ownership: the object holds no state of its own beyond caches noted at
// their members; everything it works on is handed to it.
// Threads: an object is used on the thread that created it.
#ifndef QVGLOBAL_SHELL_CQV_GLOBAL_FUNCTIONS_H_
#define QVGLOBAL_SHELL_CQV_GLOBAL_FUNCTIONS_H_

#include <memory>

#include "com/dispatch.h"
#include "com/object.h"

namespace qv::ds {
class QvDs;
class QvRecordset;
}  // namespace qv::ds

namespace qv {

class CQVGlobalFunctions : public Dispatchable<CQVGlobalFunctions> {
 public:
  // Message members.

  // End of message members.

  // Record helpers.

  // End of record helpers.

  // Display helpers.

  // End of display helpers.

  // Room ordering.

  // Numbers the rows of QvDsRooms (room key in columns 0 to 3, and
  // "OrderNum") 0, 1, 2 ... in the walking order of the four record sets'
  // rooms and writes the changed numbers to the data set's table in one
  // transaction; rooms that the data set does not hold get no number, rows
  // that the walk never meets keep theirs (rooms/room_ordering.h). Errors of
  // the record sets, the data set and the walk pass through.
  void SortOrderNumRooms(const std::shared_ptr<ds::QvDs>& QvDsRooms,
                         std::shared_ptr<ds::QvRecordset> QvRsGebaeude,
                         std::shared_ptr<ds::QvRecordset> QvRsStock,
                         std::shared_ptr<ds::QvRecordset> QvRsWohnung,
                         std::shared_ptr<ds::QvRecordset> QvRsRaum);

  // End of room ordering.

  static ClassInfo BuildClassInfo();

 private:
  using Builder = ClassBuilder<CQVGlobalFunctions>;
  static void AddRoomOrdering(Builder& builder);
};

}  // namespace qv

#endif  // QVGLOBAL_SHELL_CQV_GLOBAL_FUNCTIONS_H_
