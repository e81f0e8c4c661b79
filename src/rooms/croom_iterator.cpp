#include "rooms/croom_iterator.h"

#include "com/class_factory.h"
#include "com/dispatch.h"
#include "com/error.h"
#include "com/text.h"
#include "data/cqv_recordset_tree.h"
#include "datasource/db_connection.h"
#include "datasource/qv_ds.h"
#include "datasource/qv_recordset.h"

namespace qv {

QV_REGISTER_CLASS(CRoomIterator_t_);

namespace {

const char* const kKeyColumns[] = {"Gebaeude", "Stock", "Wohnung", "Raum"};
const char* const kNotFound[] = {"Gebäude ", "Stockwerk ", "Wohnung ", "Raum "};
const char* const kKeyLabels[] = {
    "Gebäude: ", "Stock: ", "Wohnung: ", "Raum: "};
constexpr char kOrderNum[] = "OrderNum";

// The columns of the view of level 0, 1 or 2: the keys down to the level
// and "OrderNum".
std::vector<std::string> ViewColumns(int level) {
  std::vector<std::string> columns(kKeyColumns, kKeyColumns + level + 1);
  columns.emplace_back(kOrderNum);
  return columns;
}

std::string KeyText(const Variant& v) {
  if (const std::string* s = v.AsString()) return *s;
  return v.IsEmpty() || v.IsNull() ? std::string() : v.ToString();
}

}  // namespace

class CRoomIterator_t_::CallScope {
 public:
  explicit CallScope(CRoomIterator_t_& it) : it_(it) {}
  ~CallScope() { it_.read_.reset(); }
  CallScope(const CallScope&) = delete;
  CallScope& operator=(const CallScope&) = delete;

 private:
  CRoomIterator_t_& it_;
};

CRoomIterator_t_::CRoomIterator_t_() = default;

CRoomIterator_t_::~CRoomIterator_t_() {
  if (tree_) tree_->Free();  // parent and child nodes hold each other
}

void CRoomIterator_t_::init(RecordsetPtr QvRsGebaeude, RecordsetPtr QvRsStock,
                            RecordsetPtr QvRsWohnung, RecordsetPtr QvRsRaum) {
  const RecordsetPtr given[] = {QvRsGebaeude, QvRsStock, QvRsWohnung, QvRsRaum};
  for (const RecordsetPtr& rs : given) {
    if (!rs) throw Error::Runtime(err::kObjectVariableNotSet);
  }
  if (tree_) tree_->Free();
  tree_ = std::make_shared<CQvRecordsetTree>();
  std::shared_ptr<CQvRecordsetTree> node = tree_;
  for (int level = 0; level < 4; ++level) {
    rs_[level] = given[level]->getRecordset();
    if (level > 0 && rs_[level]->getParent() != rs_[level - 1])
      rs_[level - 1]->addChild(rs_[level]);
    key_field_[level] = rs_[level]->getFieldIndex(kKeyColumns[level]);
    if (key_field_[level] < 0) {
      throw Error::Object1000(
          "CRoomIterator->init: field '" + std::string(kKeyColumns[level]) +
          "' not found in table '" + rs_[level]->getTableName() + "'");
    }
    node = nodes_[level] = node->pushChild(rs_[level]);
  }
  for (int level = 0; level < 3; ++level) {
    probes_[level] = std::make_shared<ds::QvRecordset>();
    probes_[level]->openTable(rs_[level]->getConnection(),
                              rs_[level]->getTableName());
    for (int k = 0; k <= level; ++k)
      probe_fields_[level][k] = probes_[level]->getFieldIndex(kKeyColumns[k]);
  }
  CallScope scope(*this);
  BeginRead();
  rs_[0]->readBlock(0, true);  // all buildings, whatever the caller narrowed
  for (int level = 0; level < 3; ++level) {
    ds_[level] = std::make_shared<ds::QvDs>();
    ds_[level]->setLevel(level + 1);
    LoadView(level);
  }
  key_ = RoomKey();
}

void CRoomIterator_t_::BeginRead() {
  if (!read_) read_.emplace(rs_[0]->getConnection().get());
}

void CRoomIterator_t_::RequireInit() const {
  if (!rs_[0]) {
    throw Error::Object1000(
        "CRoomIterator: init must be called before the iterator is used.");
  }
}

SafeArray CRoomIterator_t_::GetCurRoomKeys() const {
  return SafeArray{Variant(key_[0]), Variant(key_[1]), Variant(key_[2]),
                   Variant(key_[3])};
}

// ---------------------------------------------------------------------------
// Selecting and reading
// ---------------------------------------------------------------------------

void CRoomIterator_t_::LoadView(int level) {
  ds_[level]->loadFromRecordset(rs_[level], ViewColumns(level));
  ds_[level]->sortBy(kOrderNum);
}

void CRoomIterator_t_::SelectLevel(int level, int32_t ordinal) {
  // Entering a new apartment reads one block; a new storey or building
  // reads more, which one read transaction makes cheaper.
  if (level < 2) BeginRead();
  if (ordinal >= 0 && ordinal < Count(level))
    rs_[level]->moveTo(ds_[level]->recordForOrdinal(ordinal));
  ReReadChild(level);
}

void CRoomIterator_t_::ReReadChild(int level) {
  // The node of the moved level hands out its child, which reads the block
  // of the parent's current record; the child's view follows it.
  const std::shared_ptr<CQvRecordsetTree> child = nodes_[level]->getChild(0);
  child->recordset()->readBlock(static_cast<int16_t>(level + 1), true);
  if (level + 1 < 3) LoadView(level + 1);
  if (level < changed_from_) changed_from_ = level;
}

int32_t CRoomIterator_t_::Ordinal(int level) const {
  return ds_[level]->ordinalForRecord(rs_[level]->getPosition());
}

int32_t CRoomIterator_t_::Count(int level) const {
  return ds_[level]->getRowCount();
}

void CRoomIterator_t_::ReadCurRoomKeys(int from_level) {
  for (int level = from_level; level < 4; ++level)
    key_[level] = KeyText(rs_[level]->getFieldValue(key_field_[level]));
}

bool CRoomIterator_t_::Moved(const RoomKey& before) const {
  bool differs = false;
  for (int level = 0; level < 4 && !differs; ++level)
    differs = !text::EqualsText(before[level], key_[level]);
  return differs && !text::Trim(key_[3]).empty();
}

// ---------------------------------------------------------------------------
// Walking
// ---------------------------------------------------------------------------

bool CRoomIterator_t_::MoveToEnd(bool last) {
  RequireInit();
  const RoomKey before = key_;
  CallScope scope(*this);
  BeginRead();
  if (!rs_[0]->isBlockEmpty()) {
    ds_[0]->sortBy(kOrderNum);
    // Ordinals from the first (or last) one on; false past the end.
    auto first = [last](int32_t count) { return last ? count - 1 : 0; };
    auto step = [last](int32_t& i, int32_t count) {
      i += last ? -1 : 1;
      return i >= 0 && i < count;
    };
    bool found = false;
    for (int32_t g = first(Count(0)); !found && g >= 0 && g < Count(0);
         step(g, Count(0))) {
      SelectLevel(0, g);
      for (int32_t s = first(Count(1)); !found && s >= 0 && s < Count(1);
           step(s, Count(1))) {
        SelectLevel(1, s);
        for (int32_t w = first(Count(2)); !found && w >= 0 && w < Count(2);
             step(w, Count(2))) {
          SelectLevel(2, w);
          found = !rs_[3]->isEOF();
        }
      }
    }
    if (found && last) rs_[3]->moveLast();
  }
  ReadCurRoomKeys(0);
  return Moved(before);
}

bool CRoomIterator_t_::FirstRoom() { return MoveToEnd(false); }

bool CRoomIterator_t_::LastRoom() { return MoveToEnd(true); }

bool CRoomIterator_t_::WalkForward() {
  int32_t g = Ordinal(0), s = Ordinal(1), w = Ordinal(2);
  for (bool first_pass = true;; first_pass = false) {
    ds::QvRecordset& room = *rs_[3];
    if (!room.isEOF()) {
      if (!first_pass) return true;
      room.moveNext();
      if (!room.isEOF()) return true;
    }
    if (++w < Count(2)) {
      SelectLevel(2, w);
    } else if (++s < Count(1)) {
      SelectLevel(1, s);
      SelectLevel(2, w = 0);
    } else if (++g < Count(0)) {
      SelectLevel(0, g);
      SelectLevel(1, s = 0);
      SelectLevel(2, w = 0);
    } else {
      return false;
    }
  }
}

bool CRoomIterator_t_::WalkBackward() {
  int32_t g = Ordinal(0), s = Ordinal(1), w = Ordinal(2);
  for (bool first_pass = true;; first_pass = false) {
    ds::QvRecordset& room = *rs_[3];
    if (!room.isEOF() && !room.isBOF()) {
      if (!first_pass) return true;
      room.movePrevious();
      if (!room.isBOF()) return true;
    }
    if (--w >= 0) {
      SelectLevel(2, w);
    } else if (--s >= 0) {
      SelectLevel(1, s);
      SelectLevel(2, w = Count(2) - 1);
    } else if (--g >= 0) {
      SelectLevel(0, g);
      SelectLevel(1, s = Count(1) - 1);
      SelectLevel(2, w = Count(2) - 1);
    } else {
      return false;
    }
    room.moveLast();
  }
}

bool CRoomIterator_t_::Step(bool forward, bool reread) {
  RequireInit();
  try {
    CallScope scope(*this);
    if (reread && (!ExistRoom() || !GotoRoomQvRs(key_))) return false;
    changed_from_ = 3;
    if (!(forward ? WalkForward() : WalkBackward())) {
      StandOnCurrentRoom(forward);
      return false;
    }
    ReadCurRoomKeys(changed_from_);
    return true;
  } catch (const Error& e) {
    Raise(
        forward ? "CRoomIterator->NextRoom: " : "CRoomIterator->PreviousRoom: ",
        e, key_);
  }
}

void CRoomIterator_t_::StandOnCurrentRoom(bool forward) {
  // The walk ran off the end: the room record set stepped past the current
  // room, and empty apartments after it may have been selected. Put the
  // record sets back on the room whose key the iterator keeps, so that the
  // next move starts from there.
  if (changed_from_ == 3) {
    forward ? rs_[3]->moveLast() : rs_[3]->moveFirst();
  } else if (ExistRoom()) {
    PositionOn(key_);
  }
}

bool CRoomIterator_t_::NextRoom(bool bReReadBlock) {
  return Step(true, bReReadBlock);
}

bool CRoomIterator_t_::PreviousRoom(bool bReReadBlock) {
  return Step(false, bReReadBlock);
}

// ---------------------------------------------------------------------------
// Going to a room
// ---------------------------------------------------------------------------

void CRoomIterator_t_::PositionOn(const RoomKey& key) {
  for (const std::string& k : key) {
    if (text::Trim(k).empty())
      throw Error::Object1000("Es wurde eine leerer Raumschlüssel übergeben.");
  }
  auto not_found = [&key](int level) {
    return Error(err::kObjectBase, "",
                 kNotFound[level] + key[level] + " nicht mehr gefunden.");
  };
  BeginRead();
  // Deleting a record deletes the records below it, so an apartment that is
  // still there vouches for its building and storey; otherwise the highest
  // missing level is named.
  if (!Exists(2, key)) {
    for (int level = 0; level < 3; ++level) {
      if (level == 2 || !Exists(level, key)) throw not_found(level);
    }
  }
  bool moved = false;  // a level above moved: this level's block is new
  for (int level = 0; level < 4; ++level) {
    if (level == 3 && !moved) ReReadChild(2);
    if (!moved && StillOn(level, key[level])) continue;
    const char* column = kKeyColumns[level];
    if (!rs_[level]->findKey(column, Variant(key[level]))) {
      // The block is older than the record: read it again.
      if (level == 3) throw not_found(level);
      if (level == 0) {
        rs_[0]->readBlock(0, true);
        LoadView(0);
      } else {
        ReReadChild(level - 1);
      }
      if (!rs_[level]->findKey(column, Variant(key[level])))
        throw not_found(level);
    }
    moved = true;
    if (level < 3) ReReadChild(level);
  }
}

bool CRoomIterator_t_::StillOn(int level, const std::string& key) const {
  const ds::QvRecordset& rs = *rs_[level];
  return !rs.isEOF() && !rs.isBOF() &&
         text::EqualsText(KeyText(rs.getFieldValue(key_field_[level])), key);
}

bool CRoomIterator_t_::Exists(int level, const RoomKey& key) {
  ds::QvRecordset& probe = *probes_[level];
  for (int k = 0; k <= level; ++k)
    probe.setFieldValue(probe_fields_[level][k], Variant(key[k]));
  return probe.readBlock(static_cast<int16_t>(level + 1), true);
}

bool CRoomIterator_t_::GotoRoomQvRs(const RoomKey& key) {
  try {
    PositionOn(key);
    return true;
  } catch (const Error& e) {
    throw e.WithDescriptionPrefix("CRoomIterator->GotoRoomQvRs: ");
  }
}

bool CRoomIterator_t_::Goto(const char* prefix, const RoomKey& key) {
  RequireInit();
  try {
    CallScope scope(*this);
    PositionOn(key);
    ReadCurRoomKeys(0);
    return true;
  } catch (const Error& e) {
    Raise(prefix, e, key);
  }
}

bool CRoomIterator_t_::GotoRoom(const std::string& sGebaeude,
                                const std::string& sStock,
                                const std::string& sWohnung,
                                const std::string& sRaum) {
  return Goto("CRoomInterator->GotoRoom: ",
              {sGebaeude, sStock, sWohnung, sRaum});
}

bool CRoomIterator_t_::GotoRoomLast(const std::string& sGebaeude,
                                    const std::string& sStock,
                                    const std::string& sWohnung,
                                    const std::string& sRaum) {
  return Goto("CRoomInterator->GotoRoomLast: ",
              {sGebaeude, sStock, sWohnung, sRaum});
}

bool CRoomIterator_t_::ExistRoom() const {
  for (const std::string& k : key_) {
    if (text::Trim(k).empty()) return false;
  }
  return true;
}

bool CRoomIterator_t_::TestExistCurRoom() {
  RequireInit();
  if (!ExistRoom()) return false;
  try {
    CallScope scope(*this);
    return GotoRoomQvRs(key_);
  } catch (const Error& e) {
    if (e.number() == err::kObjectBase) return false;  // the room is gone
    Raise("CRoomIterator->TestExistCurRoom: ", e, key_);
  }
}

bool CRoomIterator_t_::EqualRoom(const Variant& arrRoomKeys) const {
  const SafeArray& keys = arrRoomKeys.ToArray();
  for (int level = 0; level < 4; ++level) {
    const Variant& k = keys[keys.LBound() + level];
    if (!text::EqualsText(KeyText(k), key_[level])) return false;
  }
  return true;
}

void CRoomIterator_t_::Raise(const char* prefix, const Error& e,
                             const RoomKey& key) {
  std::string lines;
  for (int level = 0; level < 4; ++level)
    lines +=
        (level > 0 ? "\r\n" : "") + std::string(kKeyLabels[level]) + key[level];
  throw Error(e.number(), e.source(),
              prefix + e.description() + "\r\n" + lines);
}

ClassInfo CRoomIterator_t_::BuildClassInfo() {
  using T = CRoomIterator_t_;
  return ClassBuilder<T>("CRoomIterator_t_")
      .Method("init", &T::init)
      .Get("Gebaeude", [](T& self) { return self.Gebaeude(); })
      .Get("Stock", [](T& self) { return self.Stock(); })
      .Get("Wohnung", [](T& self) { return self.Wohnung(); })
      .Get("Raum", [](T& self) { return self.Raum(); })
      .Method("GetCurRoomKeys", &T::GetCurRoomKeys)
      .Method("FirstRoom", &T::FirstRoom)
      .Method("NextRoom", &T::NextRoom, {Variant(false)})
      .Method("PreviousRoom", &T::PreviousRoom, {Variant(false)})
      .Method("LastRoom", &T::LastRoom)
      .Method("GotoRoom", &T::GotoRoom)
      .Method("ExistRoom", &T::ExistRoom)
      .Method("TestExistCurRoom", &T::TestExistCurRoom)
      .Method("EqualRoom", &T::EqualRoom)
      .Method("GotoRoomLast", &T::GotoRoomLast)
      .Build();
}

}  // namespace qv
