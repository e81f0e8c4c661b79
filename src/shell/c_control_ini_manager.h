// CControlIniManager saves the position and size of a form and the expanded
// nodes and selection of a tree view into an INI file, and restores them
// when the form opens again. Forms and tree views are host objects reached
// only by member name:
//
//   form:      Name, left, top, Width, Height (get and let), Move(left, top,
//              width, height)
//   tree view: Name, Nodes (Count, Item(index)), SelectedItem (get and set)
//   node:      Index, Expanded (get and let), Child, Next, Parent, Root,
//              FirstSibling, FullPath; Nothing where there is none
//
// Each call names its section in sSection; an empty sSection is replaced by
// the object's Name, which is handed back. A form is stored under "Left",
// "Top", "Width", "Height". A tree view is stored under "RootNodes" (the
// root nodes as "index,flag" entries joined by ";", flag 1 for expanded),
// one key "<index>Node" per expanded node listing its children the same
// way, and "SelectedItem" (the selected node's full path); a tree without
// nodes is stored as "NoNodes" = -1.
//
// The file is written through a CqvIniManager owned by this object and
// created on first use; its errors (no file, no section) pass through. A
// stored list that does not fit the tree raises object error 1000 with
// "Falsche Angaben in der Ini-Datei <file> Section <section> Key <key>".
// Centring uses the screen size of platform::Display, pairing the screen's
// width with the form's Width and its height with the form's Height, all in
// the same unit (pixels).
//
// Threads: an object belongs to one thread at a time.
#ifndef QVGLOBAL_SHELL_C_CONTROL_INI_MANAGER_H_
#define QVGLOBAL_SHELL_C_CONTROL_INI_MANAGER_H_

#include <cstdint>
#include <memory>
#include <set>
#include <string>

#include "com/object.h"
#include "com/variant.h"
#include "shell/cqv_ini_manager.h"

namespace qv {

class CControlIniManager : public Dispatchable<CControlIniManager> {
 public:
  std::string IniFile() const;
  void SetIniFile(const std::string& sIniFile);

  // Writes the form's position and size; true.
  bool SaveForm(const Variant& frmForm, std::string& sSection);
  // Moves the form to the stored position and size; a form stored nowhere
  // (all four values equal to the form's own) is centred on the screen
  // instead. True.
  bool LoadForm(const Variant& frmForm, std::string& sSection);
  // Writes the tree's expanded nodes and selection; false when a write
  // failed (the walk stops there).
  bool SaveTreeView(const Variant& tvwTreeView, std::string& sSection);
  // Expands the stored nodes and selects the stored node; True when a state
  // was restored, False when none was stored (or the tree had no nodes).
  Variant LoadTreeView(const Variant& tvwTreeView, std::string& sSection);

  static ClassInfo BuildClassInfo();

 private:
  CqvIniManager& Ini();
  // The section to use: sSection, or the object's Name written into it.
  static void DetermineSection(Object& control, std::string& sSection);
  bool SaveExpanded(const ObjectPtr& first, const std::string& sSection);
  void ExpandList(const std::string& list, const std::string& key,
                  Object& nodes, const Variant& parent_index,
                  const std::string& sSection, std::set<int32_t>& visited);

  std::shared_ptr<CqvIniManager> ini_;
};

}  // namespace qv

#endif  // QVGLOBAL_SHELL_C_CONTROL_INI_MANAGER_H_
