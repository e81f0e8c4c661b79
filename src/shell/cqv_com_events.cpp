#include "shell/cqv_com_events.h"

#include "com/class_factory.h"
#include "com/dispatch.h"
#include "com/variant.h"

namespace qv {

void CQvComEvents_t_::FireOnActiveBarClickToCM(const std::string& sToolname,
                                               const std::string& sSendKeyStr) {
  Variant args[] = {Variant(sToolname), Variant(sSendKeyStr)};
  events_.Raise("OnActiveBarClickToCM", args);
}

ClassInfo CQvComEvents_t_::BuildClassInfo() {
  return ClassBuilder<CQvComEvents_t_>("CQvComEvents_t_")
      .Method("FireOnActiveBarClickToCM",
              &CQvComEvents_t_::FireOnActiveBarClickToCM)
      .Event("OnActiveBarClickToCM", {"sToolname", "sSendKeyStr"})
      .Build();
}

QV_REGISTER_CLASS(CQvComEvents_t_);

}  // namespace qv
