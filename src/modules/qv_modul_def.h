// CQvModulDef is the record that describes one module of the suite: its
// enumeration value, two-letter code (the lookup key), descriptions, the
// modules whose data belong to its projects, its catalogues, behaviour flags
// and start size. It has public fields only, each readable and writable by
// name; the array fields are variants holding zero-based string arrays.
// The records of the module table (modul_table.h) are shared by reference
// with every client that asks for them.
// Threads: an object is used by one thread at a time; different objects may be
// used on different threads at once.
#ifndef QVGLOBAL_MODULES_QV_MODUL_DEF_H_
#define QVGLOBAL_MODULES_QV_MODUL_DEF_H_

#include <cstdint>
#include <string>

#include "com/object.h"
#include "com/variant.h"

namespace qv {

// The modules of the suite. BA, Xo and Ry have no row in the module table.
enum QvModul_t_ : int32_t {
  QvModulGL = 0,
  QvModulEZ = 1,
  QvModulNO = 2,
  QvModulBA = 3,
  QvModulCE = 4,
  QvModulSY = 5,
  QvModulLP = 6,
  QvModulIG = 7,
  QvModulXo = 8,
  QvModulMU = 9,
  QvModulOD = 10,
  QvModulDX = 11,
  QvModulUF = 12,
  QvModulTQ = 13,
  QvModulPn = 14,
  QvModulRy = 15,
  QvModulJS = 16,
  QvModulZU = 17,
  QvModulVM = 18,
};

// How a module's window is sized when it starts.
enum QvModulStartSize_t_ : int32_t {
  mmssFull = 0,
  mmssRelative = 1,
  mmssAbsolute = 2,
  mmssStartAlgo1 = 3,
};

class CQvModulDef : public Dispatchable<CQvModulDef> {
 public:
  QvModul_t_ m_eModul = QvModulGL;
  std::string m_sDescription;
  std::string m_sQvSpecDesc;
  std::string m_sExtension;
  Variant m_aModuls;
  Variant m_aCatalogs;
  bool m_bMulti = false;
  bool m_bIsModulWithBearbeitungsstand = false;
  bool m_bIsModulToCopyFromUser = false;
  bool m_bIsVisibleInTree = false;
  bool m_bIsModulWithBearbeitungsaenderungen = false;
  bool m_bStartShowFullSize = false;
  Variant m_aQuickClicks;
  std::string m_sRLTCalcModulClass;
  bool m_bND = false;
  QvModulStartSize_t_ m_eStartSize = mmssFull;
  float m_sStartSizeWidth = 0;
  float m_sStartSizeHeight = 0;
  bool m_bShowPicInDX = false;

  static ClassInfo BuildClassInfo();
};

}  // namespace qv

#endif  // QVGLOBAL_MODULES_QV_MODUL_DEF_H_
