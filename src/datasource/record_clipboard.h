// RecordClipboard is what the data-source layer needs to know of the
// application's record clipboard: which record set, if any, the user last
// copied or cut records from. A record set whose table changes under it
// empties the clipboard when it holds a record set of that table, so that a
// later paste cannot reach records that are gone.
//
// The clipboard itself belongs to a higher layer (the record clipboard class,
// later the global application object), which installs it here with
// SetCurrentRecordClipboard. The slot shares ownership of what is installed.
// Threads: the slot is per thread, like the application object that fills
// it; an installed clipboard is used only from the thread that installed it.
#ifndef QVGLOBAL_DATASOURCE_RECORD_CLIPBOARD_H_
#define QVGLOBAL_DATASOURCE_RECORD_CLIPBOARD_H_

#include <memory>
#include <string_view>

namespace qv::ds {

class QvRecordset;

class RecordClipboard {
 public:
  virtual ~RecordClipboard() = default;
  // The record set whose records were copied or cut, or null.
  virtual std::shared_ptr<QvRecordset> HeldRecordset() const = 0;
  // Forgets the held record set (the clipboard becomes empty).
  virtual void ReleaseRecordset() = 0;
};

// The clipboard installed on this thread, or null.
std::shared_ptr<RecordClipboard> CurrentRecordClipboard();
// Installs `clipboard` for this thread; null removes it.
void SetCurrentRecordClipboard(std::shared_ptr<RecordClipboard> clipboard);

// Empties the current clipboard when it holds a record set of the table
// `table_name` (the name as the record set reports it); otherwise, or
// without a clipboard, does nothing. Never raises.
void EmptyRecordClipboardOf(std::string_view table_name) noexcept;

}  // namespace qv::ds

#endif  // QVGLOBAL_DATASOURCE_RECORD_CLIPBOARD_H_
