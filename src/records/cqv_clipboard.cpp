#include "records/cqv_clipboard.h"

#include <utility>

#include "com/class_factory.h"
#include "com/dispatch.h"
#include "datasource/qv_recordset.h"

namespace qv {
namespace {

thread_local std::shared_ptr<CQvClipboard> current_clipboard;

}  // namespace

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

std::shared_ptr<CQvClipboard> CurrentClipboard() { return current_clipboard; }

void SetCurrentClipboard(std::shared_ptr<CQvClipboard> clipboard) {
  current_clipboard = std::move(clipboard);
}

}  // namespace qv
