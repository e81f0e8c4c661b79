#include "modules/cqv_ar_events.h"

#include <utility>

#include "com/class_factory.h"
#include "com/dispatch.h"
#include "com/variant.h"

namespace qv {

void CQvAREvents::REBefPrRowDetSec(
    std::shared_ptr<CARBefDetSecParam_t_> ARBefDetSecParam,
    SafeArray& vChangeRowValues) {
  if (events_.SinkCount() == 0) return;
  Variant args[] = {Variant(std::move(ARBefDetSecParam)),
                    Variant(vChangeRowValues)};
  static const EventInfo& event =
      *StaticClassInfo().FindEvent("BefPrRowDetSec");
  try {
    events_.Raise(event, args);
  } catch (...) {
    // The array is passed by reference: what the listeners up to the
    // failing one changed stays changed.
    if (args[1].IsArray()) vChangeRowValues = std::move(args[1].ToArray());
    throw;
  }
  // A listener may have put a whole new array (or another value) into the
  // slot; anything but an array is a type mismatch.
  vChangeRowValues = std::move(args[1].ToArray());
}

ClassInfo CQvAREvents::BuildClassInfo() {
  return ClassBuilder<CQvAREvents>("CQvAREvents")
      .Method("REBefPrRowDetSec", &CQvAREvents::REBefPrRowDetSec)
      .Event<void(std::shared_ptr<CARBefDetSecParam_t_>, SafeArray&)>(
          "BefPrRowDetSec", {"ARBefDetSecParam", "vChangeRowValues"})
      .Build();
}

QV_REGISTER_CLASS(CQvAREvents);

}  // namespace qv
