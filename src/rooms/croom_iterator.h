// CRoomIterator_t_ walks the rooms of a project in hierarchy order:
// building ("Gebaeude"), storey ("Stock"), apartment ("Wohnung"), room
// ("Raum"), each level in "OrderNum" order within its parent. It moves
// forwards and backwards, jumps to a room given by its four keys and reports
// the key of the room it stands on.
//
//   auto it = std::make_shared<CRoomIterator_t_>();
//   it->init(con->getTable("Gebaeude"), con->getTable("Stock", true),
//            con->getTable("Wohnung", true), con->getTable("Raum", true));
//   for (bool ok = it->FirstRoom(); ok; ok = it->NextRoom()) Use(it->Raum());
//
// The iterator moves the four record sets it is given (the room record set
// stands on the current room afterwards, so a module reads the room's data
// from it) and links them parent to child where they are not linked yet.
// It keeps one ordered view (QvDs) per upper level, holding the records of
// the current parent; a parent that moved hands its child to a recordset
// tree node for the re-read. A public call that makes more than one read
// makes them inside one read transaction of its own; no lock is held between
// calls. NextRoom(True) and PreviousRoom(True) first re-position on the
// current room: the apartment is looked up by its keys in the file (and, when
// it is gone, the building and the storey, to name the highest level that is
// missing), and the room's block is read again (an upper level's block is
// read again when it no longer holds its record, and whenever the walk
// enters a new parent).
//
// Decisions where the behaviour was open:
// - GotoRoomLast behaves as GotoRoom, with its own message prefix.
// - TestExistCurRoom re-positions with the re-reading go-to and answers
//   False instead of raising when the room is gone (or none is current).
// - bReReadBlock defaults to False.
// - A re-raised description is the prefix, the caught description, then
//   CR LF and the four key lines "Gebäude: ", "Stock: ", "Wohnung: ",
//   "Raum: " (requested key for the go-tos, current key otherwise), each
//   line but the last ending in CR LF.
// - FirstRoom and LastRoom answer True only when the iterator moved onto a
//   room: a second FirstRoom in a row answers False.
// - A move that runs off either end puts the record sets back on the room
//   whose key it keeps, so that the walk can turn back from there.
//
// Errors: an empty key passed to a go-to raises -2147220504 "Es wurde eine
// leerer Raumschlüssel übergeben."; a key that no longer exists raises
// -2147221504 "Gebäude <key> nicht mehr gefunden." ("Stockwerk ",
// "Wohnung ", "Raum "). NextRoom, PreviousRoom, GotoRoom ("CRoomInterator->"
// sic), GotoRoomLast and TestExistCurRoom re-raise with their prefixes as
// above; record-set and data-set errors pass through the same way. Running
// off either end is no error: the move answers False and keeps the last key.
// init with a missing record set raises 91. A move off the end that cannot
// put the record sets back (the room was deleted meanwhile) raises as
// NextRoom(True) would.
//
// Threads: an iterator and its record sets are used on one thread.
#ifndef QVGLOBAL_ROOMS_CROOM_ITERATOR_H_
#define QVGLOBAL_ROOMS_CROOM_ITERATOR_H_

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "com/object.h"
#include "com/safe_array.h"
#include "com/variant.h"
#include "datasource/db_connection.h"

namespace qv::ds {
class QvDs;
class QvRecordset;
}  // namespace qv::ds

namespace qv {

class CQvRecordsetTree;
class Error;

// The four keys of a room: building, storey, apartment, room.
using RoomKey = std::array<std::string, 4>;

class CRoomIterator_t_ : public Dispatchable<CRoomIterator_t_> {
 public:
  using RecordsetPtr = std::shared_ptr<ds::QvRecordset>;

  CRoomIterator_t_();
  ~CRoomIterator_t_() override;
  CRoomIterator_t_(const CRoomIterator_t_&) = delete;
  CRoomIterator_t_& operator=(const CRoomIterator_t_&) = delete;

  void init(RecordsetPtr QvRsGebaeude, RecordsetPtr QvRsStock,
            RecordsetPtr QvRsWohnung, RecordsetPtr QvRsRaum);
  const std::string& Gebaeude() const { return key_[0]; }
  const std::string& Stock() const { return key_[1]; }
  const std::string& Wohnung() const { return key_[2]; }
  const std::string& Raum() const { return key_[3]; }
  // The four current keys, lower bound 0.
  SafeArray GetCurRoomKeys() const;
  bool FirstRoom();
  bool NextRoom(bool bReReadBlock = false);
  bool PreviousRoom(bool bReReadBlock = false);
  bool LastRoom();
  bool GotoRoom(const std::string& sGebaeude, const std::string& sStock,
                const std::string& sWohnung, const std::string& sRaum);
  bool ExistRoom() const;
  bool TestExistCurRoom();
  // True when the four elements from the array's lower bound equal the
  // current keys without regard to letter case; a variant that holds no
  // array raises 13, fewer than four elements 9.
  bool EqualRoom(const Variant& arrRoomKeys) const;
  bool GotoRoomLast(const std::string& sGebaeude, const std::string& sStock,
                    const std::string& sWohnung, const std::string& sRaum);

  // The current key as one value, for C++ callers.
  const RoomKey& key() const { return key_; }

  static ClassInfo BuildClassInfo();

 private:
  // Levels: 0 building, 1 storey, 2 apartment, 3 room. Views exist for 0-2.
  void SelectLevel(int level, int32_t ordinal);
  void ReReadChild(int level);
  void LoadView(int level);
  int32_t Ordinal(int level) const;
  int32_t Count(int level) const;
  void ReadCurRoomKeys(int from_level);
  // Ends the read transaction of a public call when the call ends.
  class CallScope;
  // Begins the call's read transaction unless it has begun.
  void BeginRead();
  // Positions the four record sets on `key`. Each upper level is checked by
  // a keyed lookup in the file and its block read again only when it no
  // longer holds the record; the room block is always read again.
  void PositionOn(const RoomKey& key);
  bool StillOn(int level, const std::string& key) const;
  bool Exists(int level, const RoomKey& key);
  bool GotoRoomQvRs(const RoomKey& key);
  bool Goto(const char* prefix, const RoomKey& key);
  // NextRoom (forward) and PreviousRoom.
  bool Step(bool forward, bool reread);
  bool WalkForward();
  bool WalkBackward();
  void StandOnCurrentRoom(bool forward);
  bool MoveToEnd(bool last);
  bool Moved(const RoomKey& before) const;
  void RequireInit() const;
  [[noreturn]] static void Raise(const char* prefix, const Error& e,
                                 const RoomKey& key);

  std::array<RecordsetPtr, 4> rs_;
  std::array<std::shared_ptr<ds::QvDs>, 3> ds_;
  std::array<int16_t, 4> key_field_{};
  // The recordset tree: one node per level, each the child of the one above.
  std::shared_ptr<CQvRecordsetTree> tree_;
  std::array<std::shared_ptr<CQvRecordsetTree>, 4> nodes_;
  // Record sets of their own on the upper tables, for keyed existence
  // checks that leave the walked blocks as they are.
  std::array<RecordsetPtr, 3> probes_;
  std::array<std::array<int16_t, 3>, 3> probe_fields_{};  // key positions
  // The read transaction of the public call under way, begun when the call
  // makes more than one read.
  std::optional<ds::DbConnection::ReadTransaction> read_;
  RoomKey key_;
  int changed_from_ = 0;  // lowest level moved during the current call
};

}  // namespace qv

#endif  // QVGLOBAL_ROOMS_CROOM_ITERATOR_H_
