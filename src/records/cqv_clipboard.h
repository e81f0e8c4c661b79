// CQvClipboard is the application's record clipboard: it remembers which
// record set the user last copied or cut records from (qvrs) and whether it
// was a cut (Cut). It holds no record data, only a shared reference to the
// source record set, which it keeps alive until it is replaced or emptied.
// The application's one clipboard is owned by the global application
// object (CQvGlobals), which installs it for its thread with
// SetCurrentClipboard while global objects live; CurrentClipboard() reaches
// it, and record sets empty it when their table changes
// (ds::RecordClipboard).
// Threads: one clipboard per thread; an instance is used by one thread.
#ifndef QVGLOBAL_RECORDS_CQV_CLIPBOARD_H_
#define QVGLOBAL_RECORDS_CQV_CLIPBOARD_H_

#include <memory>

#include "com/class_info.h"
#include "com/object.h"
#include "datasource/record_clipboard.h"

namespace qv {

class CQvClipboard : public Dispatchable<CQvClipboard>,
                     public ds::RecordClipboard {
 public:
  // The record set whose current records were copied or cut, or null.
  std::shared_ptr<ds::QvRecordset> qvrs() const;
  void set_qvrs(std::shared_ptr<ds::QvRecordset> rs);
  // True when the last operation was a cut, false for a copy.
  bool Cut() const { return cut_; }
  void set_Cut(bool cut) { cut_ = cut; }

  std::shared_ptr<ds::QvRecordset> HeldRecordset() const override {
    return qvrs_;
  }
  void ReleaseRecordset() override { qvrs_.reset(); }

  // Members in interface order: qvrs (get, set), Cut (get, let).
  static ClassInfo BuildClassInfo();

 private:
  std::shared_ptr<ds::QvRecordset> qvrs_;
  bool cut_ = false;
};

// The application's clipboard on this thread (may be null). Setting it
// installs it as this thread's ds::CurrentRecordClipboard as well.
std::shared_ptr<CQvClipboard> CurrentClipboard();
void SetCurrentClipboard(std::shared_ptr<CQvClipboard> clipboard);

}  // namespace qv

#endif  // QVGLOBAL_RECORDS_CQV_CLIPBOARD_H_
