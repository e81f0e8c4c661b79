// CARBefDetSecParam_t_ describes one row of a report's detail section while
// it is being printed: its row in the data set, its running number in the
// section, whether the previous printed row was empty, and the requests a
// listener of the before-print event may make (bold, empty row, skip the
// data-set row, add a further row). The printing code owns the object and
// re-initialises it with init for every row, so requests never carry over.
// Threads: an object is used by one thread at a time; different objects may be
// used on different threads at once.
#ifndef QVGLOBAL_MODULES_CAR_BEF_DET_SEC_PARAM_H_
#define QVGLOBAL_MODULES_CAR_BEF_DET_SEC_PARAM_H_

#include <cstdint>

#include "com/object.h"

namespace qv {

class CARBefDetSecParam_t_ : public Dispatchable<CARBefDetSecParam_t_> {
 public:
  int32_t RowQvDs() const { return row_qv_ds_; }
  void SetRowQvDs(int32_t value) { row_qv_ds_ = value; }
  int32_t RowTotal() const { return row_total_; }
  void SetRowTotal(int32_t value) { row_total_ = value; }
  bool Bold() const { return bold_; }
  void SetBold(bool value) { bold_ = value; }
  bool EmptyRow() const { return empty_row_; }
  void SetEmptyRow(bool value) { empty_row_ = value; }
  bool WasLastRowEmpty() const { return was_last_row_empty_; }
  bool IgnoreQvDsRow() const { return ignore_qv_ds_row_; }
  void SetIgnoreQvDsRow(bool value) { ignore_qv_ds_row_ = value; }
  bool AddRow() const { return add_row_; }
  void SetAddRow(bool value) { add_row_ = value; }

  // Starts a new row: takes the row numbers and the state of the previous
  // row, and clears the four requests.
  void init(int32_t lRowQvDs, int32_t lRowTotal, bool bWasLastRowEmpty);

  static ClassInfo BuildClassInfo();

 private:
  int32_t row_qv_ds_ = 0;
  int32_t row_total_ = 0;
  bool bold_ = false;
  bool empty_row_ = false;
  bool was_last_row_empty_ = false;
  bool ignore_qv_ds_row_ = false;
  bool add_row_ = false;
};

}  // namespace qv

#endif  // QVGLOBAL_MODULES_CAR_BEF_DET_SEC_PARAM_H_
