#include "shell/cqv_active_bar.h"

#include <fmt/format.h>

#include <array>
#include <cstdint>
#include <string>
#include <utility>

#include "com/class_factory.h"
#include "com/dispatch.h"
#include "com/error.h"
#include "com/safe_array.h"
#include "com/text.h"

namespace qv {
namespace {

using NameGetter = std::string (CQVActiveBar::*)() const;

// The name properties in interface order.
constexpr std::array<std::pair<const char*, NameGetter>, 17> kNameProperties{{
    {"MNU_CUT_TOOLNAME", &CQVActiveBar::MNU_CUT_TOOLNAME},
    {"MNU_COPY_TOOLNAME", &CQVActiveBar::MNU_COPY_TOOLNAME},
    {"MNU_PASTE_TOOLNAME", &CQVActiveBar::MNU_PASTE_TOOLNAME},
    {"MNU_DELETE_TOOLNAME", &CQVActiveBar::MNU_DELETE_TOOLNAME},
    {"MNU_EXITMODUL_TOOLNAME", &CQVActiveBar::MNU_EXITMODUL_TOOLNAME},
    {"MNU_STARTWINDOWS_TOOLID", &CQVActiveBar::MNU_STARTWINDOWS_TOOLID},
    {"MNU_ENDWINDOWS_TOOLID", &CQVActiveBar::MNU_ENDWINDOWS_TOOLID},
    {"MNU_QVPOPUP_BANDNAME", &CQVActiveBar::MNU_QVPOPUP_BANDNAME},
    {"MNU_SELECTIONLIST_TOOLNAME", &CQVActiveBar::MNU_SELECTIONLIST_TOOLNAME},
    {"MNU_SELECTIONLISTSORT_TOOLNAME",
     &CQVActiveBar::MNU_SELECTIONLISTSORT_TOOLNAME},
    {"MNU_PROJVERW_TOOLNAME", &CQVActiveBar::MNU_PROJVERW_TOOLNAME},
    {"MNU_GRPDATKOP_TOOLNAME", &CQVActiveBar::MNU_GRPDATKOP_TOOLNAME},
    {"MNU_QVINTELLISENSE_TOOLNAME", &CQVActiveBar::MNU_QVINTELLISENSE_TOOLNAME},
    {"MNU_IMPORT_TOOLNAME", &CQVActiveBar::MNU_IMPORT_TOOLNAME},
    {"MNU_EXPORT_TOOLNAME", &CQVActiveBar::MNU_EXPORT_TOOLNAME},
    {"MNU_ROWINSERT_TOOLNAME", &CQVActiveBar::MNU_ROWINSERT_TOOLNAME},
    {"MNU_QVABVERSION_TOOLNAME", &CQVActiveBar::MNU_QVABVERSION_TOOLNAME},
}};

// The tools of ARRAY_TOOLNAMES, in the array's order.
constexpr std::array<NameGetter, 12> kArrayTools{
    &CQVActiveBar::MNU_COPY_TOOLNAME,
    &CQVActiveBar::MNU_CUT_TOOLNAME,
    &CQVActiveBar::MNU_DELETE_TOOLNAME,
    &CQVActiveBar::MNU_PASTE_TOOLNAME,
    &CQVActiveBar::MNU_ROWINSERT_TOOLNAME,
    &CQVActiveBar::MNU_EXITMODUL_TOOLNAME,
    &CQVActiveBar::MNU_SELECTIONLIST_TOOLNAME,
    &CQVActiveBar::MNU_SELECTIONLISTSORT_TOOLNAME,
    &CQVActiveBar::MNU_PROJVERW_TOOLNAME,
    &CQVActiveBar::MNU_GRPDATKOP_TOOLNAME,
    &CQVActiveBar::MNU_QVINTELLISENSE_TOOLNAME,
    &CQVActiveBar::MNU_QVABVERSION_TOOLNAME,
};

// The tools of the common context menu.
constexpr std::array<NameGetter, 9> kContextMenuTools{
    &CQVActiveBar::MNU_CUT_TOOLNAME,
    &CQVActiveBar::MNU_COPY_TOOLNAME,
    &CQVActiveBar::MNU_PASTE_TOOLNAME,
    &CQVActiveBar::MNU_DELETE_TOOLNAME,
    &CQVActiveBar::MNU_ROWINSERT_TOOLNAME,
    &CQVActiveBar::MNU_SELECTIONLIST_TOOLNAME,
    &CQVActiveBar::MNU_SELECTIONLISTSORT_TOOLNAME,
    &CQVActiveBar::MNU_IMPORT_TOOLNAME,
    &CQVActiveBar::MNU_EXPORT_TOOLNAME,
};

// Key codes 27 to 70 are four blocks of eleven function keys (F1 to F11):
// plain, Ctrl, Shift, Shift+Ctrl.
constexpr int kFirstFunctionKeyCode = 27;
constexpr int kFunctionKeysPerBlock = 11;
constexpr std::array<const char*, 4> kFunctionKeyPrefixes{"", "^", "+", "+^"};
constexpr int kFunctionKeyCodes =
    kFunctionKeysPerBlock * static_cast<int>(kFunctionKeyPrefixes.size());
// Key codes 71 to 75.
constexpr int kFirstEditKeyCode = 71;
constexpr std::array<const char*, 5> kEditKeys{
    "^{INSERT}", "+{INSERT}", "{DELETE}", "+{DELETE}", "%{BACKSPACE}"};

// Shift mask bits of a keyboard event and the virtual keys the encoder knows.
constexpr int kShiftBit = 1;
constexpr int kCtrlBit = 2;
constexpr int kAltBit = 4;
constexpr int kVkBack = 8;
constexpr int kVkInsert = 45;
constexpr int kVkF1 = 112;
constexpr int kVkF12 = 123;

// Sums in 16 bits, as the encoder's integer arithmetic does; raises the
// overflow error when the result does not fit.
int16_t Add16(int32_t a, int32_t b) {
  const int32_t sum = a + b;
  if (sum < INT16_MIN || sum > INT16_MAX) {
    throw Error::Runtime(err::kOverflow);
  }
  return static_cast<int16_t>(sum);
}

bool IsFunctionKey(int key) { return key >= kVkF1 && key <= kVkF12; }

// Neither Shift nor Alt held.
int16_t PlainOrCtrlKeyCode(int16_t key, bool ctrl) {
  if (!ctrl) return IsFunctionKey(key) ? Add16(key - kVkF1, 27) : 0;
  if (key >= 'A' && key <= 'Z') return Add16(key, -('A' - 1));
  if (IsFunctionKey(key)) return Add16(key - kVkF1, 39);
  if (key == kVkInsert) return 75;
  return 0;
}

// Shift held, Alt not.
int16_t ShiftKeyCode(int16_t key, bool ctrl) {
  // With Ctrl every key is taken for a function key, without a range test.
  if (ctrl) return Add16(Add16(key, -kVkF1), 63);
  return IsFunctionKey(key) ? Add16(key - kVkF1, 51) : 0;
}

}  // namespace

Variant CQVActiveBar::ARRAY_TOOLNAMES() const {
  SafeArray names;
  for (NameGetter getter : kArrayTools) names.Append((this->*getter)());
  return Variant(std::move(names));
}

bool CQVActiveBar::IsToolInArrayToolnames(const std::string& sToolname) const {
  for (NameGetter getter : kArrayTools) {
    if ((this->*getter)() == sToolname) return true;
  }
  return false;
}

bool CQVActiveBar::IsCMToolName(const std::string& sToolname) const {
  for (NameGetter getter : kContextMenuTools) {
    if (text::EqualsText((this->*getter)(), sToolname)) return true;
  }
  return false;
}

std::string CQVActiveBar::ABKeyCodeToSendKeyStr(int16_t& ABKeyCode) const {
  const int code = ABKeyCode;
  if (code == 0) return "";
  if (code >= 1 && code <= 26) {
    return std::string("^") + static_cast<char>('a' + code - 1);
  }
  const int function_key = code - kFirstFunctionKeyCode;
  if (function_key >= 0 && function_key < kFunctionKeyCodes) {
    return fmt::format(
        "{}{{F{}}}", kFunctionKeyPrefixes[function_key / kFunctionKeysPerBlock],
        function_key % kFunctionKeysPerBlock + 1);
  }
  const int edit_key = code - kFirstEditKeyCode;
  if (edit_key >= 0 && edit_key < static_cast<int>(kEditKeys.size())) {
    return kEditKeys[edit_key];
  }
  throw Error::Object1000(
      "CQVActiveBar->ABKeyCodeToSendKeyStr: Nicht zuweisbarer KeyCode " +
      std::to_string(code));
}

int16_t CQVActiveBar::ABKeyCodeFromKey(int16_t KeyCode, int16_t Shift) const {
  const bool shift = (Shift & kShiftBit) != 0;
  const bool ctrl = (Shift & kCtrlBit) != 0;
  const bool alt = (Shift & kAltBit) != 0;
  if (!shift && !alt) return PlainOrCtrlKeyCode(KeyCode, ctrl);
  if (shift && !alt) return ShiftKeyCode(KeyCode, ctrl);
  // Alt: only Alt alone with Backspace has a code.
  return (!shift && !ctrl && KeyCode == kVkBack) ? 79 : 0;
}

ClassInfo CQVActiveBar::BuildClassInfo() {
  ClassBuilder<CQVActiveBar> builder("CQVActiveBar");
  for (const auto& [name, getter] : kNameProperties) builder.Get(name, getter);
  return builder.Get("ARRAY_TOOLNAMES", &CQVActiveBar::ARRAY_TOOLNAMES)
      .Method("IsToolInArrayToolnames", &CQVActiveBar::IsToolInArrayToolnames)
      .Method("IsCMToolName", &CQVActiveBar::IsCMToolName)
      .Method("ABKeyCodeToSendKeyStr", &CQVActiveBar::ABKeyCodeToSendKeyStr)
      .Build();
}

QV_REGISTER_CLASS(CQVActiveBar);

}  // namespace qv
