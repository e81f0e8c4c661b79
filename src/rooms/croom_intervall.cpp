#include "rooms/croom_intervall.h"

#include "com/class_factory.h"
#include "com/dispatch.h"
#include "com/error.h"
#include "datasource/qv_recordset.h"

namespace qv {

QV_REGISTER_CLASS(CRoomIntervall_t_);

void CRoomIntervall_t_::init(RecordsetPtr QvRsGebaeude, RecordsetPtr QvRsStock,
                             RecordsetPtr QvRsWohnung, RecordsetPtr QvRsRaum) {
  m_bInit = true;
  if (!m_RoomIter) m_RoomIter = std::make_shared<CRoomIterator_t_>();
  m_RoomIter->init(std::move(QvRsGebaeude), std::move(QvRsStock),
                   std::move(QvRsWohnung), std::move(QvRsRaum));
}

bool CRoomIntervall_t_::SetRoom(RoomKey& target, const RoomKey& key) {
  if (!m_bInit) return false;
  bool found = false;
  try {
    found = m_RoomIter->GotoRoom(key[0], key[1], key[2], key[3]);
  } catch (const Error&) {
    found = false;  // an unknown or empty key leaves the interval unset
  }
  if (!found) {
    target[0].clear();
    return false;
  }
  target = m_RoomIter->key();
  return true;
}

bool CRoomIntervall_t_::startIntervall(const std::string& sGeb,
                                       const std::string& sStock,
                                       const std::string& sWohn,
                                       const std::string& sRaum) {
  return SetRoom(m_arrStart, {sGeb, sStock, sWohn, sRaum});
}

bool CRoomIntervall_t_::endIntervall(const std::string& sGeb,
                                     const std::string& sStock,
                                     const std::string& sWohn,
                                     const std::string& sRaum) {
  return SetRoom(m_arrEnd, {sGeb, sStock, sWohn, sRaum});
}

bool CRoomIntervall_t_::IsIntervallSet() const {
  return m_bInit && !m_arrStart[0].empty() && !m_arrEnd[0].empty();
}

bool CRoomIntervall_t_::IsEndRoom() const {
  return m_RoomIter->key() == m_arrEnd;  // exact, letter case included
}

bool CRoomIntervall_t_::MatchRec(const RecordsetPtr& aRec) const {
  if (!aRec) throw Error::Runtime(err::kObjectVariableNotSet);
  const RoomKey& room = m_RoomIter->key();
  const char* const columns[] = {"Gebaeude", "Stock", "Wohnung", "Raum"};
  for (int level = 0; level < 4; ++level) {
    const Variant v = aRec->getValue(columns[level]);
    const std::string* text = v.AsString();
    if (text ? *text != room[level] : !(v.IsEmpty() && room[level].empty()))
      return false;
  }
  return true;
}

bool CRoomIntervall_t_::testStartEndIntervall() {
  if (!IsIntervallSet()) return false;
  m_RoomIter->GotoRoom(m_arrStart[0], m_arrStart[1], m_arrStart[2],
                       m_arrStart[3]);
  while (!IsEndRoom()) {
    if (!m_RoomIter->NextRoom(false)) return false;
  }
  return true;
}

bool CRoomIntervall_t_::firstRec(const RecordsetPtr& aRec) {
  if (!IsIntervallSet()) return false;
  m_RoomIter->GotoRoom(m_arrStart[0], m_arrStart[1], m_arrStart[2],
                       m_arrStart[3]);
  return MatchRec(aRec) || nextRec(aRec);
}

bool CRoomIntervall_t_::nextRec(const RecordsetPtr& aRec) {
  if (!IsIntervallSet() || IsEndRoom()) return false;
  for (;;) {
    if (!m_RoomIter->NextRoom(true)) return false;
    if (MatchRec(aRec)) return true;
    if (IsEndRoom()) return false;
  }
}

ClassInfo CRoomIntervall_t_::BuildClassInfo() {
  using T = CRoomIntervall_t_;
  return ClassBuilder<T>("CRoomIntervall_t_")
      .Method("init", &T::init)
      .Method("startIntervall", &T::startIntervall)
      .Method("endIntervall", &T::endIntervall)
      .Method("testStartEndIntervall", &T::testStartEndIntervall)
      .Method("firstRec", &T::firstRec)
      .Method("nextRec", &T::nextRec)
      .Build();
}

}  // namespace qv
