// CQVActiveBar holds the names of the toolbar tools and bands that all
// modules of the suite share, and translates the toolbar's key codes into
// keyboard shortcut strings in send-keys notation ("^" Ctrl, "+" Shift,
// "%" Alt, braces around named keys). It keeps no state; every object is
// interchangeable with every other.
// Threads: an object is used by one thread at a time; different objects may be
// used on different threads at once.
#ifndef QVGLOBAL_SHELL_CQV_ACTIVE_BAR_H_
#define QVGLOBAL_SHELL_CQV_ACTIVE_BAR_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "com/object.h"
#include "com/variant.h"

namespace qv {

class CQVActiveBar : public Dispatchable<CQVActiveBar> {
 public:
  // Tool and band names.
  std::string MNU_CUT_TOOLNAME() const { return "tCut"; }
  std::string MNU_COPY_TOOLNAME() const { return "tCopy"; }
  std::string MNU_PASTE_TOOLNAME() const { return "tPaste"; }
  std::string MNU_DELETE_TOOLNAME() const { return "tDelete"; }
  std::string MNU_EXITMODUL_TOOLNAME() const { return "tExitModul"; }
  // The tool ids, as decimal strings, that bound the tools of the window
  // list.
  std::string MNU_STARTWINDOWS_TOOLID() const { return "100000"; }
  std::string MNU_ENDWINDOWS_TOOLID() const { return "100010"; }
  // The common context-menu band.
  std::string MNU_QVPOPUP_BANDNAME() const { return "bdQVPopup"; }
  std::string MNU_SELECTIONLIST_TOOLNAME() const { return "tSelectionlist"; }
  std::string MNU_SELECTIONLISTSORT_TOOLNAME() const {
    return "tSelectionlistSort";
  }
  std::string MNU_PROJVERW_TOOLNAME() const { return "tProjVerw"; }
  std::string MNU_GRPDATKOP_TOOLNAME() const { return "tGrpDatKop"; }
  std::string MNU_QVINTELLISENSE_TOOLNAME() const { return "tQvIntelliSense"; }
  std::string MNU_IMPORT_TOOLNAME() const { return "tImport"; }
  std::string MNU_EXPORT_TOOLNAME() const { return "tExport"; }
  std::string MNU_ROWINSERT_TOOLNAME() const { return "tRowInsert"; }
  std::string MNU_QVABVERSION_TOOLNAME() const { return "tQvABVersion"; }

  // A new zero-based array of the twelve common tool names (without the
  // window-list ids, the popup band, import and export).
  Variant ARRAY_TOOLNAMES() const;

  // True when sToolname is one of ARRAY_TOOLNAMES, letter case significant.
  bool IsToolInArrayToolnames(const std::string& sToolname) const;
  // True when sToolname names one of the nine context-menu tools, letter
  // case ignored.
  bool IsCMToolName(const std::string& sToolname) const;

  // The send-keys string of a key code; "" for 0. Raises object error 1000
  // for a code without a key string. The argument is taken by reference, as
  // callers of the dispatch interface pass it, and left unchanged.
  std::string ABKeyCodeToSendKeyStr(int16_t& ABKeyCode) const;

  // Encodes a keyboard event (virtual-key code and shift mask: 1 Shift,
  // 2 Ctrl, 4 Alt) into a key code; 0 when the event has none. Used by the
  // library only: it is not part of the dispatch interface. Its blocks of
  // twelve function keys do not line up with the eleven-key blocks of
  // ABKeyCodeToSendKeyStr (Ctrl+F1 gives 39, which reads back as "^{F2}";
  // Ctrl+Insert gives 75, which reads back as "%{BACKSPACE}"), and the
  // toolbars of the suite depend on exactly these numbers.
  int16_t ABKeyCodeFromKey(int16_t KeyCode, int16_t Shift) const;

  static ClassInfo BuildClassInfo();
};

}  // namespace qv

#endif  // QVGLOBAL_SHELL_CQV_ACTIVE_BAR_H_
