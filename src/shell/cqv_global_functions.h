// CQVGlobalFunctions is the suite's public helper class: stateless functions
// every module needs on messages, record sets, the display and rooms. Each
// group of members is implemented in its own source file
// (cqv_global_functions_<group>.cpp) and adds itself to the class's
// dispatch table in the interface order: messages, record helpers, display
// helpers, room ordering.
//
// Ownership: the object holds no state of its own beyond caches noted at
// their members; everything it works on is handed to it.
// Threads: an object is used on the thread that created it.
#ifndef QVGLOBAL_SHELL_CQV_GLOBAL_FUNCTIONS_H_
#define QVGLOBAL_SHELL_CQV_GLOBAL_FUNCTIONS_H_

#include <cstdint>
#include <memory>
#include <string>

#include "central/qv_properties.h"
#include "com/dispatch.h"
#include "com/object.h"
#include "com/safe_array.h"
#include "com/variant.h"

namespace qv {

class CQVGlobalFunctions : public Dispatchable<CQVGlobalFunctions> {
 public:
  // Message members.

  // Converts a stored message text (see messages/convert_msg.h); shows a
  // box for each fault in the text and never raises.
  std::string ConvertMsg(const std::string& sMsg, SafeArray& ValuePlatzHalter);
  // Opens the help at `lContextID`; a missing help file is shown in a box.
  void CallHelpFile(int32_t lContextID, int32_t lHwnd = 0,
                    const std::string& sHelpFile = "");
  // The display unit's text of the quantity selected in `QvCMProperties`.
  Variant GetPrintUnitText(
      int16_t nIndex,
      const std::shared_ptr<central::QvProperties>& QvCMProperties);

  // End of message members.

  // Record helpers.

  // End of record helpers.

  // Display helpers.

  // End of display helpers.

  // Room ordering.

  // End of room ordering.

  static ClassInfo BuildClassInfo();

 private:
  using Builder = ClassBuilder<CQVGlobalFunctions>;

  static void AddMessageMembers(Builder& builder);
};

}  // namespace qv

#endif  // QVGLOBAL_SHELL_CQV_GLOBAL_FUNCTIONS_H_
