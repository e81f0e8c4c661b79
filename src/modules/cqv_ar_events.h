// CQvAREvents lets a module adjust the rows of a report's detail section:
// before each row is printed, the printing code calls REBefPrRowDetSec,
// which raises the event BefPrRowDetSec to every listener, in the order
// they were advised, and returns when all have run. The event passes the
// row's value array by reference: a listener may change the requests of
// the parameter object and the elements of the array, or put a whole new
// array in its place; the caller reads both back. The object keeps no
// state beyond its list of listeners; with no listener the raise does
// nothing.
// Threads: an object is used by one thread at a time; different objects may be
// used on different threads at once. Events are raised on the caller's thread.
#ifndef QVGLOBAL_MODULES_CQV_AR_EVENTS_H_
#define QVGLOBAL_MODULES_CQV_AR_EVENTS_H_

#include <memory>

#include "com/event_source.h"
#include "com/object.h"
#include "com/safe_array.h"
#include "modules/car_bef_det_sec_param.h"

namespace qv {

class CQvAREvents : public Dispatchable<CQvAREvents> {
 public:
  // Raises BefPrRowDetSec(ARBefDetSecParam, vChangeRowValues); the array
  // comes back as the listeners left it. Errors of a listener reach the
  // caller, with the array as the listeners up to the failing one left it.
  // When the listeners leave something other than an array, the raise
  // ends with 13 (Type mismatch) and the caller's array stays as it was.
  void REBefPrRowDetSec(std::shared_ptr<CARBefDetSecParam_t_> ARBefDetSecParam,
                        SafeArray& vChangeRowValues);

  EventSource* events() override { return &events_; }

  static ClassInfo BuildClassInfo();

 private:
  EventSource events_;
};

}  // namespace qv

#endif  // QVGLOBAL_MODULES_CQV_AR_EVENTS_H_
