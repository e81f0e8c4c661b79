// The message members of CQVGlobalFunctions: the message code of the
// messages layer, offered by name.
#include "messages/convert_msg.h"
#include "shell/cqv_global_functions.h"

namespace qv {

std::string CQVGlobalFunctions::ConvertMsg(const std::string& sMsg,
                                           SafeArray& ValuePlatzHalter) {
  return ::qv::ConvertMsg(sMsg, ValuePlatzHalter);
}

void CQVGlobalFunctions::CallHelpFile(int32_t lContextID, int32_t lHwnd,
                                      const std::string& sHelpFile) {
  ::qv::CallHelpFile(lContextID, lHwnd, sHelpFile);
}

Variant CQVGlobalFunctions::GetPrintUnitText(
    int16_t nIndex,
    const std::shared_ptr<central::QvProperties>& QvCMProperties) {
  return ::qv::GetPrintUnitText(nIndex, QvCMProperties);
}

void CQVGlobalFunctions::AddMessageMembers(Builder& builder) {
  using F = CQVGlobalFunctions;
  builder.Method("ConvertMsg", &F::ConvertMsg)
      .Method("CallHelpFile", &F::CallHelpFile,
              {Variant(int32_t{0}), Variant("")})
      .Method("GetPrintUnitText", &F::GetPrintUnitText);
}

}  // namespace qv
