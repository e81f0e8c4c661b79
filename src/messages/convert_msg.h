// The message code of the suite: ConvertMsg turns a stored message text
// into the text shown to the user, CallHelpFile opens the help at a context
// number, GetPrintUnitText gives the unit text of a properties object.
// CQVGlobalFunctions offers the three by name; the error list uses them.
//
// Markup of a stored text (letter case ignored throughout):
//   "@@n@@"              a line break (CR LF)
//   "@@3, comment@@"     placeholder 3: the value for number 3 (the
//                        comment only documents it; 0 or less gives "")
//   "@@1,001/Temperatur,2,026/Druck@@"
//                        as the last placeholder: a property list; the
//                        values of placeholders 1 and 2 are formatted as
//                        those physical quantities, with their unit text
//                        (any text after the list is dropped)
// `values` must be 0-based. Its element 0 decides how values are read: a
// collection gives item n, a (0-based) array its element n - 1, anything
// else element n - 1 of `values` itself, which is also the fallback when
// the first two find nothing.
//
// ConvertMsg raises nothing: every error is shown in a message box (title
// "qv-software", critical icon) with the text "mQVMessages->ConvertMsg: "
// + the error's description + CR LF + "Nachricht: ''" + the stored text +
// "''", and the conversion goes on with the step after the failed one; the
// errors of the markup carry 0x800403E8 with the suite's German texts.
// Quantities are formatted in the language of the application context
// (app_context.h). The message box and help viewer are the platform's
// services (platform/message_box.h, platform/help_viewer.h).
//
// Threads: called on the user-interface thread; the boxes are modal.
#ifndef QVGLOBAL_MESSAGES_CONVERT_MSG_H_
#define QVGLOBAL_MESSAGES_CONVERT_MSG_H_

#include <cstdint>
#include <memory>
#include <string>

#include "central/qv_properties.h"
#include "com/safe_array.h"
#include "com/variant.h"

namespace qv {

std::string ConvertMsg(const std::string& sMsg,
                       const SafeArray& ValuePlatzHalter);

// Shows the topic `lContextID` of `sHelpFile` (the application's current
// help file when empty) for the window `lHwnd` (the main window when 0).
// A missing file is reported in a critical box "Finde die Hilfedatei" +
// CR LF + the path + CR LF + "nicht."; errors of the application context
// asked for the help file pass to the caller.
void CallHelpFile(int32_t lContextID, int32_t lHwnd = 0,
                  const std::string& sHelpFile = "");

// The unit text of the quantity selected in `QvCMProperties`, in its
// language, for `nIndex` 0 (the display unit; the only unit there is).
// Raises 5 for another index, 91 for Nothing or no selected quantity.
Variant GetPrintUnitText(
    int16_t nIndex,
    const std::shared_ptr<central::QvProperties>& QvCMProperties);

}  // namespace qv

#endif  // QVGLOBAL_MESSAGES_CONVERT_MSG_H_
