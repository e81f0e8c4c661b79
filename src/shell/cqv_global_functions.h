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
#include <optional>
#include <string>

#include "central/qv_properties.h"
#include "com/dispatch.h"
#include "com/object.h"
#include "com/safe_array.h"
#include "com/variant.h"

namespace qv::ds {
class QvDs;
class QvRecordset;
}  // namespace qv::ds

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

  // Record helpers. Each works only on the record sets handed to it and
  // puts "CQVGlobalFunctions-><member>: " in front of the description of
  // any error passing through it (number and source unchanged), except
  // ClearVarsQvRs, whose errors pass unchanged. Missing record sets raise 91.

  // Reads a chain of record sets (outermost parent first), each child by
  // the leading keys of its parent; once a parent's read finds nothing (or
  // the first record set is empty) the rest are keyed by that parent. An
  // error adds a line "Parent-QvRecordset: <parent's table name>".
  void ReadQvRsMembers(SafeArray& qvrs);
  // Sets the first n key fields (the fewer of the record set's keys and the
  // array's elements, or iMaxCountKeys when not -1) from arrKeyValues;
  // with bReadBlock reads the block of those n keys, unless bTestEqualKeys
  // and the keys were already set (text, letter case ignored).
  void SetQvRsKeys(const std::shared_ptr<ds::QvRecordset>& qvrs,
                   Variant& arrKeyValues, bool bReadBlock = false,
                   bool bTestEqualKeys = false, int16_t iMaxCountKeys = -1);
  // Moves the record set onto an empty block (unless it stands on one);
  // bClearVars empties the buffer, bSaveKeys puts the old keys back into
  // it without reading.
  void MakeQvRsEmpty(const std::shared_ptr<ds::QvRecordset>& qvrs,
                     bool bClearVars = false, bool bSaveKeys = false);
  // Empties the buffer; bKeepKeys keeps its key values.
  void ClearVarsQvRs(const std::shared_ptr<ds::QvRecordset>& qvrs,
                     bool bKeepKeys);
  // Copies the source's current record into the destination's buffer, or
  // with bAll appends every record of the source's block to the
  // destination as new records. Nothing is copied from an empty block.
  // Both must have the same number of fields.
  void CopyQvRsValues(const std::shared_ptr<ds::QvRecordset>& QvRsDest,
                      const std::shared_ptr<ds::QvRecordset>& QvRsSrc,
                      bool bAll);
  // True when the first n fields (the fewer of fields and elements, or
  // lCountTest when not -1 and smaller) equal the array's elements, text
  // compared without regard to letter case, strings without trailing
  // blanks.
  bool IsQvRsValuesEqual(const std::shared_ptr<ds::QvRecordset>& qvrs,
                         const Variant& arrValues, int32_t lCountTest = -1);

  // End of record helpers.

  // Display helpers: colours of input controls and room lists (values
  // with the high bit set are system colour references, 0x80000000 + the
  // system colour index) and the small-screen limits. The four control
  // colours are worked out on the first read of any of them, from the
  // colour depth of the display service, and kept by the object.

  int32_t QvRoomlistSelectedItemBackColor() const;
  int32_t QvRoomlistSelectedItemForeColor() const;
  int32_t QvRoomlistUnselectedItemBackColor() const;
  int32_t QvRoomlistUnselectedItemForeColor() const;
  int32_t ActiveControlBackColor();
  // Light grey 0xC0C0C0 on displays of 1, 4 or 8 bits, else 0xDCDCDC.
  int32_t InActiveControlBackColor();
  int32_t ActiveTextColor();
  int32_t InActiveTextColor();
  int32_t SmallScreenWidth() const;
  int32_t SmallScreenHeight() const;
  // True when the screen is narrower than SmallScreenWidth or lower than
  // SmallScreenHeight.
  bool IsSmallScreen() const;
  // Retired: raises object error 1000.
  std::string GetQVIniFile() const;

  // End of display helpers.

  // Room ordering.

  // Numbers the rows of QvDsRooms (room key in columns 0 to 3, and
  // "OrderNum") 0, 1, 2 ... in the walking order of the four record sets'
  // rooms and writes the changed numbers to the data set's table in one
  // transaction; rooms that the data set does not hold get no number, rows
  // that the walk never meets keep theirs (rooms/room_ordering.h). Errors of
  // the record sets, the data set and the walk pass through.
  void SortOrderNumRooms(const std::shared_ptr<ds::QvDs>& QvDsRooms,
                         std::shared_ptr<ds::QvRecordset> QvRsGebaeude,
                         std::shared_ptr<ds::QvRecordset> QvRsStock,
                         std::shared_ptr<ds::QvRecordset> QvRsWohnung,
                         std::shared_ptr<ds::QvRecordset> QvRsRaum);

  // End of room ordering.

  static ClassInfo BuildClassInfo();

 private:
  using Builder = ClassBuilder<CQVGlobalFunctions>;

  static void AddMessageMembers(Builder& builder);
  static void AddRecordHelpers(Builder& builder);
  static void AddDisplayHelpers(Builder& builder);
  static void AddRoomOrdering(Builder& builder);

  // Display helpers: works out the control colours on the first call.
  void SetUpColours();
  // The inactive control background, once worked out.
  std::optional<int32_t> inactive_back_colour_;
};

}  // namespace qv

#endif  // QVGLOBAL_SHELL_CQV_GLOBAL_FUNCTIONS_H_
