#include "modules/modul_table.h"

#include <string>
#include <utility>

#include "com/error.h"
#include "com/safe_array.h"
#include "com/text.h"
#include "messages/error_collector.h"

namespace qv {
namespace {

// One row of the fixed table, as written down below.
struct Row {
  QvModul_t_ modul;
  const char* code;
  const char* description;
  const char* spec_desc;  // nullptr: the same as the description
  bool multi;
  std::vector<const char*> moduls;
  std::vector<const char*> catalogs;
  bool flags;  // Bearbeitungsstand, copy from user, in tree, changes
  std::vector<const char*> quick_clicks;
  const char* rlt_calc_class;
  bool nd;
  QvModulStartSize_t_ start_size;
  float width;
  float height;
  bool pic_in_dx;
};

constexpr const char* kNoKern = "QVNOKERN10.QvKern";

const std::vector<Row>& Rows() {
  // clang-format off
  static const std::vector<Row> rows = {
      {QvModulDX, "DX", "Projektverwaltung", "Projektverwaltung", false,
       {"DX"}, {"DX"}, false, {"DX"}, "", false, mmssAbsolute, 800, 600,
       false},
      {QvModulJS, "JS", "Energieeinsparverordnung", "EnEV", true,
       {"JS", "GL"}, {"JS", "GL"}, true, {"DX", "GL"}, "", false,
       mmssAbsolute, 870, 600, false},
      {QvModulGL, "GL", "Bauteile", "Bauteil", false, {"GL"}, {"GL"}, true,
       {"DX", "CE", "NO", "JS"}, "", false, mmssAbsolute, 900, 600, false},
      {QvModulZU, "ZU", "Schnellauslegung/Sprintel", "Sprintel", true,
       {"ZU"}, {"LP"}, true, {"DX"}, "", false, mmssAbsolute, 800, 600,
       false},
      {QvModulVM, "VM", "Heizlast", "EN 12831", false, {"VM", "EZ", "GL"},
       {"VM", "GL"}, true, {"DX", "GL", "CE", "SY"}, kNoKern, false,
       mmssStartAlgo1, 0, 0, false},
      {QvModulNO, "NO", "Wärmebedarf", "DIN4701", false, {"NO", "EZ", "GL"},
       {"NO", "GL"}, true, {"DX", "GL", "CE", "SY"}, kNoKern, true,
       mmssStartAlgo1, 0, 0, false},
      {QvModulSY, "SY", "Heizkörper", "Calvora", false, {"SY", "EZ"},
       {"SY"}, true, {"DX", "NO", "LP"}, "QVSYKERN10.QvKern", true,
       mmssStartAlgo1, 0, 0, false},
      {QvModulLP, "LP", "Rohrnetz", "Pelnix", true, {"LP", "EZ"}, {"LP"},
       true, {"DX", "SY"}, "", true, mmssFull, 0, 0, true},
      {QvModulCE, "CE", "Kühllast/Gebäudesimulation", "VDI2078/VDI2067",
       false, {"CE", "EZ", "GL"}, {"CE", "GL", "TRY"}, true,
       {"DX", "GL", "NO"}, "QVCEKERN10.QvKern", true, mmssStartAlgo1, 0, 0,
       false},
      {QvModulMU, "MU", "Aufmaß", "Dorvane", false, {"MU"}, {"MU"}, true,
       {"DX"}, "", true, mmssStartAlgo1, 0, 0, false},
      {QvModulOD, "OD", "Kanalnetz", "Miraltu", true, {"OD", "EZ"}, {"OD"},
       true, {"DX"}, "", true, mmssFull, 0, 0, true},
      {QvModulIG, "IG", "Trink-/Abwasser", "Questra", true, {"IG", "EZ"},
       {"IG"}, true, {"DX"}, "", true, mmssFull, 0, 0, true},
      {QvModulEZ, "EZ", "Raumbuch", nullptr, false, {"EZ"}, {"EZ"}, false,
       {"EZ"}, "", true, mmssStartAlgo1, 0, 0, false},
      {QvModulUF, "UF", "Wirtschaftlichkeit", "VDI2067/B1", false, {"UF"},
       {"UF"}, true, {"DX"}, "", true, mmssAbsolute, 800, 600, false},
      {QvModulTQ, "TQ", "h,x-Diagramm", "TQ", false, {"TQ"}, {"TQ"}, true,
       {"DX"}, "", true, mmssFull, 0, 0, false},
      {QvModulPn, "PN", "RLT-Anlagen-Betriebs-Simulation", "RLT/ABS", false,
       {"PN"}, {"PN", "TRY", "4710"}, true, {"DX"}, "", true, mmssFull, 0, 0,
       false},
  };
  // clang-format on
  return rows;
}

Variant StringArray(const std::vector<const char*>& items) {
  std::vector<Variant> elements;
  elements.reserve(items.size());
  for (const char* item : items) elements.emplace_back(item);
  return Variant(SafeArray(std::move(elements)));
}

std::shared_ptr<CQvModulDef> MakeRecord(const Row& row) {
  auto def = std::make_shared<CQvModulDef>();
  def->m_eModul = row.modul;
  def->m_sDescription = row.description;
  def->m_sQvSpecDesc = row.spec_desc ? row.spec_desc : def->m_sDescription;
  def->m_sExtension = row.code;
  def->m_bMulti = row.multi;
  def->m_aModuls = StringArray(row.moduls);
  def->m_aCatalogs = StringArray(row.catalogs);
  def->m_bIsModulWithBearbeitungsstand = row.flags;
  def->m_bIsModulToCopyFromUser = row.flags;
  def->m_bIsVisibleInTree = row.flags;
  def->m_bIsModulWithBearbeitungsaenderungen = row.flags;
  def->m_aQuickClicks = StringArray(row.quick_clicks);
  def->m_sRLTCalcModulClass = row.rlt_calc_class;
  def->m_bND = row.nd;
  def->m_eStartSize = row.start_size;
  def->m_sStartSizeWidth = row.width;
  def->m_sStartSizeHeight = row.height;
  def->m_bShowPicInDX = row.pic_in_dx;
  return def;
}

constexpr const char* kCrLf = "\r\n";

[[noreturn]] void Raise(const std::string& description) {
  throw Error::Object1000(description);
}

std::string FirstElement(const SafeArray& array) {
  return array[array.LBound()].ToString();
}

[[noreturn]] void RaiseFirstElement(const std::string& code,
                                    const char* array_name) {
  Raise(code + ":  " + "Das ersten Element " + kCrLf + "im Array " +
        array_name + " entspricht nicht " + code);
}

// Raises when a record other than `self` has the code `code` and may occur
// several times in a project: a module included in another module's
// projects must be single-instance.
void CheckIncludedModul(const ModulTable& table, size_t self,
                        const std::string& code) {
  for (size_t s = 0; s < table.size(); ++s) {
    const CQvModulDef& other = *table[s];
    if (s == self || !text::EqualsText(other.m_sExtension, code)) continue;
    if (other.m_bMulti) {
      Raise(other.m_sExtension + " kommt in " + table[self]->m_sExtension +
            " vor und darf " + kCrLf +
            "deshalb nicht Projekt mehrfach vorkommen.");
    }
  }
}

void CheckRecord(const ModulTable& table, size_t index) {
  const CQvModulDef& def = *table[index];
  const std::string& code = def.m_sExtension;
  const SafeArray& moduls = def.m_aModuls.ToArray();
  const bool has_calc_class = !def.m_sRLTCalcModulClass.empty();
  bool lists_ez = false;
  // A module list with a single entry is not checked at all.
  for (int32_t k = moduls.LBound() + 1; k <= moduls.UBound(); ++k) {
    if (!text::EqualsText(FirstElement(moduls), code)) {
      RaiseFirstElement(code, "m_aModuls");
    }
    const std::string element = moduls[k].ToString();
    if (text::EqualsText(element, "EZ")) lists_ez = true;
    CheckIncludedModul(table, index, element);
    if (!def.m_aCatalogs.IsEmpty()) {
      const SafeArray& catalogs = def.m_aCatalogs.ToArray();
      if (!catalogs.empty() &&
          !text::EqualsText(FirstElement(catalogs), code)) {
        RaiseFirstElement(code, "m_aCatalogs");
      }
    }
    // A calculation class works on the room-list tree for copy and delete,
    // which exists once per project.
    if (has_calc_class && def.m_bMulti) {
      Raise(code + ": " + "Darf nicht mehrfach in einem " + kCrLf +
            "Projekt vorkommen, weil es den Raumlistenbaum zum "
            "kopieren/löschen" +
            kCrLf + "verwendet.");
    }
  }
  if (has_calc_class && !lists_ez) {
    Raise("In " + code + " wurde der Parameter .m_sRLTCalcModulClass " +
          "gesetzt, obwohl EZ nicht zum Modul gehöhrt.");
  }
}

struct ThreadTable {
  bool built = false;
  ModulTable table;
  ModulRowFactory factory;
};

ThreadTable& ThisThread() {
  thread_local ThreadTable state;
  return state;
}

}  // namespace

ModulTable BuildModulTable() {
  ModulTable table;
  table.reserve(Rows().size());
  for (const Row& row : Rows()) table.push_back(MakeRecord(row));
  return table;
}

void CheckModulTable(const ModulTable& table) {
  for (size_t i = 0; i < table.size(); ++i) CheckRecord(table, i);
}

const ModulTable& ThreadModulTable() {
  ThreadTable& state = ThisThread();
  if (state.built) return state.table;
  // Set first: a table that fails its check is kept as it is, not rebuilt.
  state.built = true;
  try {
    state.table = state.factory ? state.factory() : BuildModulTable();
    CheckModulTable(state.table);
  } catch (const Error& error) {
    ErrorCollector::Report(error.WithSourcePrefix("modQvModulDefs->Init: "));
  }
  return state.table;
}

void ResetThreadModulTableForTesting(ModulRowFactory factory) {
  ThreadTable& state = ThisThread();
  state.built = false;
  state.table.clear();
  state.factory = std::move(factory);
}

}  // namespace qv
