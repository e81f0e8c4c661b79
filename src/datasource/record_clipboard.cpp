#include "datasource/record_clipboard.h"

#include <utility>

#include "datasource/qv_recordset.h"

namespace qv::ds {
namespace {

thread_local std::shared_ptr<RecordClipboard> current_clipboard;

}  // namespace

std::shared_ptr<RecordClipboard> CurrentRecordClipboard() {
  return current_clipboard;
}

void SetCurrentRecordClipboard(std::shared_ptr<RecordClipboard> clipboard) {
  current_clipboard = std::move(clipboard);
}

void EmptyRecordClipboardOf(std::string_view table_name) noexcept {
  // Keep the clipboard alive while it is asked, in case releasing its
  // record set ends the last other reference to it.
  const std::shared_ptr<RecordClipboard> clipboard = current_clipboard;
  if (!clipboard) return;
  const std::shared_ptr<QvRecordset> held = clipboard->HeldRecordset();
  if (held && held->getTableName() == table_name) clipboard->ReleaseRecordset();
}

}  // namespace qv::ds
