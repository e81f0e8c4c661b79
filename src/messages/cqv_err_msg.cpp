#include "messages/cqv_err_msg.h"

#include "com/class_factory.h"
#include "com/dispatch.h"
#include "com/error.h"

namespace qv {
namespace {

Variant Position(int32_t i) { return Variant(i); }

// The record behind an object argument; Nothing raises 91.
CQvErrMsg& Deref(const std::shared_ptr<CQvErrMsg>& msg) {
  if (!msg) throw Error::Runtime(err::kObjectVariableNotSet);
  return *msg;
}

}  // namespace

const std::shared_ptr<Collection>& CQvErrMsg::m_colDbFieldList() {
  if (!m_colDbFieldList_) m_colDbFieldList_ = std::make_shared<Collection>();
  return m_colDbFieldList_;
}

void CQvErrMsg::addField(const Variant& vName, const Variant& vVar) {
  m_colDbFieldList()->Add(vVar, vName.ToString());
}

void CQvErrMsg::init(CQvErrMsg& value) {
  m_eModul = value.m_eModul;
  m_lNum = value.m_lNum;
  m_eKind = value.m_eKind;
  m_sMsg = value.m_sMsg;
  const auto source = value.m_colDbFieldList();
  const auto target = m_colDbFieldList();
  // Counted first, so that a record copied into itself doubles once.
  const int32_t count = source->Count();
  for (int32_t i = 1; i <= count; ++i) target->Add(source->Item(Position(i)));
}

void CQvErrMsg::clear() {
  const auto list = m_colDbFieldList();
  while (list->Count() >= 1) list->Remove(Position(1));
}

bool CQvErrMsg::isEqual(CQvErrMsg& value) {
  if (m_eModul != value.m_eModul || m_lNum != value.m_lNum ||
      m_eKind != value.m_eKind) {
    return false;
  }
  const auto mine = m_colDbFieldList();
  const auto theirs = value.m_colDbFieldList();
  if (mine->Count() != theirs->Count()) return false;
  for (int32_t i = 1; i <= mine->Count(); ++i) {
    // Null on either side gives no answer, which is not "unequal".
    if (Equal(mine->Item(Position(i)), theirs->Item(Position(i))) == false) {
      return false;
    }
  }
  return true;
}

ClassInfo CQvErrMsg::BuildClassInfo() {
  using M = CQvErrMsg;
  return ClassBuilder<M>("CQvErrMsg")
      .Field("m_eModul", &M::m_eModul)
      .Field("m_lNum", &M::m_lNum)
      .Field("m_eKind", &M::m_eKind)
      .Field("m_sMsg", &M::m_sMsg)
      .Get("m_colDbFieldList", [](M& self) { return self.m_colDbFieldList(); })
      .Set("m_colDbFieldList", &M::set_m_colDbFieldList)
      .Method("addField", &M::addField)
      .Method("init", [](M& self,
                         std::shared_ptr<M> value) { self.init(Deref(value)); })
      .Method("clear", &M::clear)
      .Method("isEqual",
              [](M& self, std::shared_ptr<M> value) {
                return self.isEqual(Deref(value));
              })
      .Build();
}

QV_REGISTER_CLASS(CQvErrMsg);

}  // namespace qv
