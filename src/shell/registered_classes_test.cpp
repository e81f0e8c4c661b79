// Every class the library registers, created by its ProgID and described as
// the dispatch interface reports it: the class name, each member in
// interface order with the kinds of invocation it supports, and the events
// with their parameter types (a trailing "&" marks a by-reference one). A
// class registered without a row here fails the test, so new classes state
// their interface in this one table.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "com/class_factory.h"
#include "com/class_info.h"
#include "com/object.h"

namespace qv {
namespace {

struct ClassRow {
  const char* progid;
  const char* class_name;
  const char* members;  // "name kinds; ...; event Name(Type param, ...)"
};

const ClassRow kClasses[] = {
    {"QvCentral10.QvProperties", "QvProperties",
     "Property get/let; Value get/let; Language get/let; Text get; "
     "UnitText get"},
    {"qvglobal10.CARBefDetSecParam_t_", "CARBefDetSecParam_t_",
     "RowQvDs get/let; RowTotal get/let; Bold get/let; EmptyRow get/let;"
     " WasLastRowEmpty get; IgnoreQvDsRow get/let; AddRow get/let; init "
     "method"},
    {"qvglobal10.CControlIniManager", "CControlIniManager",
     "IniFile get/let; SaveForm method; LoadForm method; SaveTreeView "
     "method; LoadTreeView method"},
    {"qvglobal10.CPRFunc_t_", "CPRFunc_t_",
     "FileNameToModul method; FileNameToModulName method; "
     "ModulToFileName method; PathToProjName method; IsPathProjectFolder"
     " method; ProjNameToPath method; IsQvFile method"},
    {"qvglobal10.CQVActiveBar", "CQVActiveBar",
     "MNU_CUT_TOOLNAME get; MNU_COPY_TOOLNAME get; MNU_PASTE_TOOLNAME "
     "get; MNU_DELETE_TOOLNAME get; MNU_EXITMODUL_TOOLNAME get; "
     "MNU_STARTWINDOWS_TOOLID get; MNU_ENDWINDOWS_TOOLID get; "
     "MNU_QVPOPUP_BANDNAME get; MNU_SELECTIONLIST_TOOLNAME get; "
     "MNU_SELECTIONLISTSORT_TOOLNAME get; MNU_PROJVERW_TOOLNAME get; "
     "MNU_GRPDATKOP_TOOLNAME get; MNU_QVINTELLISENSE_TOOLNAME get; "
     "MNU_IMPORT_TOOLNAME get; MNU_EXPORT_TOOLNAME get; "
     "MNU_ROWINSERT_TOOLNAME get; MNU_QVABVERSION_TOOLNAME get; "
     "ARRAY_TOOLNAMES get; IsToolInArrayToolnames method; IsCMToolName "
     "method; ABKeyCodeToSendKeyStr method"},
    {"qvglobal10.CQvAREvents", "CQvAREvents",
     "REBefPrRowDetSec method; event BefPrRowDetSec(Object "
     "ARBefDetSecParam, Array& vChangeRowValues)"},
    {"qvglobal10.CQvClipboard", "CQvClipboard", "qvrs get/set; Cut get/let"},
    {"qvglobal10.CQvComEvents_t_", "CQvComEvents_t_",
     "FireOnActiveBarClickToCM method; event "
     "OnActiveBarClickToCM(sToolname, sSendKeyStr)"},
    {"qvglobal10.CQvConnection", "CQvConnection",
     "m_conConnection get/set; addRef method; release method; getTable "
     "method; getCTable method; Datasource get; getConnectionAge method;"
     " setConnectionVersion method; getTableAge method; convertTable "
     "method; clearClipboards method; getTableVersion method; "
     "saveIterPos method; loadIterPos method; getConnectionVersion "
     "method; addTable method; setChild method; delChild method; "
     "getDatabaseSize method; setDatabaseSize method"},
    {"qvglobal10.CQvDbContainer", "CQvDbContainer",
     "openConnection method; closeConnection method; "
     "getQvProjectConnection method; getQvCatalogConnection method; "
     "closeQvConnection method; compactQvProjectConnection method; "
     "compactQvCatalogConnection method; clearClipboards method; "
     "getQvProjectCatalogType method; ClearAllTables method"},
    {"qvglobal10.CQvErrList", "CQvErrList",
     "m_colErrMsg get/set; QvTGrErr set; isEmpty get; clear method; "
     "addError method; event QvErrHighlight(errMsg); event "
     "QvErrSelect(errMsg)"},
    {"qvglobal10.CQvErrMsg", "CQvErrMsg",
     "m_eModul get/let; m_lNum get/let; m_eKind get/let; m_sMsg get/let;"
     " m_colDbFieldList get/set; addField method; init method; clear "
     "method; isEqual method"},
    {"qvglobal10.CQVGlobalFunctions", "CQVGlobalFunctions",
     "ConvertMsg method; CallHelpFile method; GetPrintUnitText method; "
     "ReadQvRsMembers method; SetQvRsKeys method; MakeQvRsEmpty method; "
     "ClearVarsQvRs method; CopyQvRsValues method; IsQvRsValuesEqual "
     "method; QvRoomlistSelectedItemBackColor get; "
     "QvRoomlistSelectedItemForeColor get; "
     "QvRoomlistUnselectedItemBackColor get; "
     "QvRoomlistUnselectedItemForeColor get; ActiveControlBackColor get;"
     " InActiveControlBackColor get; ActiveTextColor get; "
     "InActiveTextColor get; SmallScreenWidth get; SmallScreenHeight "
     "get; IsSmallScreen method; GetQVIniFile method; SortOrderNumRooms "
     "method"},
    {"qvglobal10.CQvGlobals", "CQvGlobals",
     "frmMDIParentRef get/set; QvDbContainer get; QvClipboard get; "
     "ToolTipLevel get/let; KurzBezBearbeiter get/let; LangBezBearbeiter"
     " get/let; SetABToolEnabled method; GetABToolEnabled method; "
     "IsFormForCurrentActiveBar method; ActivebarTrackPopup method; "
     "GetMDIParentAB method; ModulSelected method; SetEnabledForms "
     "method; QvIntelliSense get/let; GetQVIniFile method; GetDXIniFile "
     "method; CurHelpFile get; GetMDIParentComAB method; GetStartApp "
     "method; GetBearbeiterPfad method; GetQvDXImageList method; "
     "GetQvDXPicture method; GetActiveMDIChildForm method; QvComEvents "
     "get; QvLanguage get/let; StrToQvLanguage method; QvLanguageToStr "
     "method; IsLanguageStrOk method; IsQvLanguageOk method; ABOnKeyDown"
     " method; ABOnKeyUp method"},
    {"qvglobal10.CqvIniManager", "CqvIniManager",
     "IniFile get/let; WriteString method; GetString method; WriteLong "
     "method; GetLong method; DeleteSection method; DeleteKey method; "
     "WriteBoolean method; GetBoolean method"},
    {"qvglobal10.CQvModulDef", "CQvModulDef",
     "m_eModul get/let; m_sDescription get/let; m_sQvSpecDesc get/let; "
     "m_sExtension get/let; m_aModuls get/let/set; m_aCatalogs "
     "get/let/set; m_bMulti get/let; m_bIsModulWithBearbeitungsstand "
     "get/let; m_bIsModulToCopyFromUser get/let; m_bIsVisibleInTree "
     "get/let; m_bIsModulWithBearbeitungsaenderungen get/let; "
     "m_bStartShowFullSize get/let; m_aQuickClicks get/let/set; "
     "m_sRLTCalcModulClass get/let; m_bND get/let; m_eStartSize get/let;"
     " m_sStartSizeWidth get/let; m_sStartSizeHeight get/let; "
     "m_bShowPicInDX get/let"},
    {"qvglobal10.CQvModulDefs", "CQvModulDefs",
     "GetArrayQvModulDefs method; GetQvModulDef method; StrToModul "
     "method; IsMultiProjectModul method; IsModulWithBearbeitungsstand "
     "method; IsModulWithBearbeitungsaenderungen method; "
     "IsModulToCopyFromUser method; IsProjectDBModul method; "
     "IsProjectModul method; GetModulDescription method; GetQvSpecDesc "
     "method; GetAllModulExtensions method; GetExtension method; "
     "GetCatalogs method; GetRLTCalcModulClass method; GetND method; "
     "ShowPicInDX method; BuildDBName method"},
    {"qvglobal10.CQvModulProp", "CQvModulProp",
     "frmMDIChild get/set; QvGlobals get; Modul get/let; ProjektPfad "
     "get/let; Projektname get; Modulname get/let; FullModulPath get; "
     "MDIChildCaption get/let; Flags get/let; QvLanguage get/let; "
     "HelpFile get; GetActiveBar method; SetABToolEnabled method; "
     "GetABToolEnabled method; ActivebarTrackPopup method; "
     "ActivebarShowToolBar method; ABCopyPicture method; HtmlHelpHwnd "
     "get; SendQvModulMsg method; SendABToolClick method; Bearbeiterpfad"
     " get/let"},
    {"qvglobal10.CQvUsedKeys_t_", "CQvUsedKeys_t_", "add method; isIn method"},
    {"qvglobal10.CRoomIntervall_t_", "CRoomIntervall_t_",
     "init method; startIntervall method; endIntervall method; "
     "testStartEndIntervall method; firstRec method; nextRec method"},
    {"qvglobal10.CRoomIterator_t_", "CRoomIterator_t_",
     "init method; Gebaeude get; Stock get; Wohnung get; Raum get; "
     "GetCurRoomKeys method; FirstRoom method; NextRoom method; "
     "PreviousRoom method; LastRoom method; GotoRoom method; ExistRoom "
     "method; TestExistCurRoom method; EqualRoom method; GotoRoomLast "
     "method"},
    {"qvglobal10.QvDs", "QvDs",
     "loadFromRecordset method; setLevel method; getLevel method; sortBy"
     " method; getRowCount method; getValue method; recordForOrdinal "
     "method; ordinalForRecord method; findRow method; setRowValue "
     "method; beginRenumber method; endRenumber method; getColumnCount "
     "method; getColumnName method; getColumnIndex method"},
    {"qvglobal10.QvRecordset", "QvRecordset",
     "openTable method; getTableName method; setParent method; addChild "
     "method; getParent method; saveIterPos method; loadIterPos method; "
     "clearClipboard method; tableNameFromCPointer method; "
     "attachCPointer method; getKeyCount method; getFieldCount method; "
     "getFieldName method; getFieldIndex method; getFieldValue method; "
     "setFieldValue method; getValue method; setValue method; "
     "getKeyValues method; clearVars method; readBlock method; "
     "isBlockEmpty method; getRecordCount method; isEOF method; isBOF "
     "method; moveFirst method; moveNext method; movePrevious method; "
     "moveLast method; moveTo method; getPosition method; findKey "
     "method; insertRecord method; updateRecord method; deleteRecord "
     "method; getRecordset method; getConnection method; getBlockValue "
     "method; getFieldType method"},
    {"Scripting.Dictionary", "Dictionary",
     "Add method; Count get; Exists method; Items method; Item "
     "get/let/set; Keys method; Remove method; RemoveAll method; "
     "CompareMode get/let"},
    {"VBA.Collection", "Collection",
     "Add method; Count get; Item method; Remove method"},
};

std::string EventText(const EventInfo& event) {
  std::string text = "event " + event.name + "(";
  for (size_t i = 0; i < event.params.size(); ++i) {
    if (i > 0) text += ", ";
    if (i < event.param_types.size()) text += event.param_types[i] + " ";
    text += event.params[i];
  }
  return text + ")";
}

std::string InterfaceText(const ClassInfo& info) {
  std::string text;
  auto add = [&text](const std::string& part) {
    text += (text.empty() ? "" : "; ") + part;
  };
  for (const MemberInfo& m : info.members()) add(m.name + " " + m.KindsText());
  for (const EventInfo& e : info.events()) add(EventText(e));
  return text;
}

TEST(RegisteredClassesTest, EachProgIdCreatesItsClassWithItsInterface) {
  for (const ClassRow& row : kClasses) {
    SCOPED_TRACE(row.progid);
    const ObjectPtr object = CreateObject(row.progid);
    ASSERT_NE(object, nullptr);
    const ClassInfo& info = object->GetClassInfo();
    EXPECT_EQ(info.name(), row.class_name);
    EXPECT_EQ(InterfaceText(info), row.members);
  }
}

TEST(RegisteredClassesTest, EveryRegisteredLibraryClassHasARow) {
  std::set<std::string> listed;
  for (const ClassRow& row : kClasses) listed.insert(row.progid);
  for (const ClassRegistration& reg : RegisteredClasses()) {
    // Classes that tests register for themselves are no part of the library.
    if (reg.progid.find("Probe") != std::string::npos) continue;
    EXPECT_EQ(listed.count(reg.progid), 1u) << reg.progid;
  }
}

}  // namespace
}  // namespace qv
