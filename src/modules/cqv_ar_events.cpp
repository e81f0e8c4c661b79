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
  try {
    events_.Raise("BefPrRowDetSec", args);
  } catch (...) {
    // The array is shared with the listeners: what the listeners before the
    // failing one changed stays changed.
    if (args[1].IsArray()) vChangeRowValues = std::move(args[1].ToArray());
    throw;
  }
  vChangeRowValues = std::move(args[1].ToArray());
}

ClassInfo CQvAREvents::BuildClassInfo() {
  return ClassBuilder<CQvAREvents>("CQvAREvents")
      .Method("REBefPrRowDetSec", &CQvAREvents::REBefPrRowDetSec)
      .Event("BefPrRowDetSec", {"ARBefDetSecParam", "vChangeRowValues"})
      .Build();
}

QV_REGISTER_CLASS(CQvAREvents);

}  // namespace qv
