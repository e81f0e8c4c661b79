// CQvErrMsg carries one message from the place where a problem is found to
// the place where it is shown (the error list, cqv_err_list.h): the module
// that raised it, its number, its kind, its text and the data fields it
// refers to.
//
//   auto msg = std::make_shared<CQvErrMsg>();
//   msg->m_eModul = QvModulEZ; msg->m_lNum = 12; msg->m_eKind = QvErrKindError;
//   msg->m_sMsg = ConvertMsg(text, values);
//   msg->addField("Raum", "R12");
//
// Rules kept on purpose: `init` appends the source's field values without
// their names and does not empty this record's list first; `clear` empties
// only the field list; `isEqual` ignores the text and the field names and
// counts a comparison with Null as "not unequal".
//
// Ownership: the record owns its field list, created empty when first used;
// the set form of m_colDbFieldList shares the caller's collection.
// Errors: none of its own; the collection's errors (457 duplicate key, 5
// unknown key, 9 position out of range) and conversion errors (13, 94) pass
// through. Threads: a record is used on one thread at a time.
#ifndef QVGLOBAL_MESSAGES_CQV_ERR_MSG_H_
#define QVGLOBAL_MESSAGES_CQV_ERR_MSG_H_

#include <cstdint>
#include <memory>
#include <string>

#include "com/collection.h"
#include "com/object.h"
#include "com/variant.h"

namespace qv {

enum QvErrKind : int32_t {
  QvErrKindWarning = 0,
  QvErrKindError = 1,
  QvErrKindDefault = 2,
  QvErrKindFatal = 3,
};

class CQvErrMsg : public Dispatchable<CQvErrMsg> {
 public:
  int32_t m_eModul = 0;  // a QvModul_t_ value
  int32_t m_lNum = 0;
  QvErrKind m_eKind = QvErrKindWarning;
  std::string m_sMsg;

  // The field list, created empty on first use.
  const std::shared_ptr<Collection>& m_colDbFieldList();
  // Replaces the field list; Nothing makes the next use create an empty one.
  void set_m_colDbFieldList(std::shared_ptr<Collection> list) {
    m_colDbFieldList_ = std::move(list);
  }

  // Appends `vVar` under the key text of `vName`.
  void addField(const Variant& vName, const Variant& vVar);
  // Copies module, number, kind and text of `value` and appends its field
  // values, without names, behind the fields already held.
  void init(CQvErrMsg& value);
  // Empties the field list; module, number, kind and text stay.
  void clear();
  // Same module, number, kind and field values in the same order.
  bool isEqual(CQvErrMsg& value);

  static ClassInfo BuildClassInfo();

 private:
  std::shared_ptr<Collection> m_colDbFieldList_;
};

}  // namespace qv

#endif  // QVGLOBAL_MESSAGES_CQV_ERR_MSG_H_
