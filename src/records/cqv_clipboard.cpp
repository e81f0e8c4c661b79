#include "records/cqv_clipboard.h"

#include <utility>

#include "com/class_factory.h"
#include "com/dispatch.h"
#include "datasource/qv_recordset.h"

namespace qv {

std::shared_ptr<ds::QvRecordset> CQvClipboard::qvrs() const { return qvrs_; }

void CQvClipboard::set_qvrs(std::shared_ptr<ds::QvRecordset> rs) {
  qvrs_ = std::move(rs);
}

ClassInfo CQvClipboard::BuildClassInfo() {
  return ClassBuilder<CQvClipboard>("CQvClipboard")
      .Get("qvrs", &CQvClipboard::qvrs)
      .Set("qvrs", &CQvClipboard::set_qvrs)
      .Get("Cut", &CQvClipboard::Cut)
      .Let("Cut", &CQvClipboard::set_Cut)
      .Build();
}

QV_REGISTER_CLASS(CQvClipboard);

// The data-source slot is the one place the clipboard is kept, so the
// clipboard that record sets empty is always the one callers see here.
std::shared_ptr<CQvClipboard> CurrentClipboard() {
  return std::dynamic_pointer_cast<CQvClipboard>(ds::CurrentRecordClipboard());
}

void SetCurrentClipboard(std::shared_ptr<CQvClipboard> clipboard) {
  ds::SetCurrentRecordClipboard(std::move(clipboard));
}

}  // namespace qv
