#include "modules/qv_modul_def.h"

#include "com/class_factory.h"
#include "com/dispatch.h"

namespace qv {

ClassInfo CQvModulDef::BuildClassInfo() {
  using D = CQvModulDef;
  return ClassBuilder<D>("CQvModulDef")
      .Field("m_eModul", &D::m_eModul)
      .Field("m_sDescription", &D::m_sDescription)
      .Field("m_sQvSpecDesc", &D::m_sQvSpecDesc)
      .Field("m_sExtension", &D::m_sExtension)
      .Field("m_aModuls", &D::m_aModuls)
      .Field("m_aCatalogs", &D::m_aCatalogs)
      .Field("m_bMulti", &D::m_bMulti)
      .Field("m_bIsModulWithBearbeitungsstand",
             &D::m_bIsModulWithBearbeitungsstand)
      .Field("m_bIsModulToCopyFromUser", &D::m_bIsModulToCopyFromUser)
      .Field("m_bIsVisibleInTree", &D::m_bIsVisibleInTree)
      .Field("m_bIsModulWithBearbeitungsaenderungen",
             &D::m_bIsModulWithBearbeitungsaenderungen)
      .Field("m_bStartShowFullSize", &D::m_bStartShowFullSize)
      .Field("m_aQuickClicks", &D::m_aQuickClicks)
      .Field("m_sRLTCalcModulClass", &D::m_sRLTCalcModulClass)
      .Field("m_bND", &D::m_bND)
      .Field("m_eStartSize", &D::m_eStartSize)
      .Field("m_sStartSizeWidth", &D::m_sStartSizeWidth)
      .Field("m_sStartSizeHeight", &D::m_sStartSizeHeight)
      .Field("m_bShowPicInDX", &D::m_bShowPicInDX)
      .Build();
}

QV_REGISTER_CLASS(CQvModulDef);

}  // namespace qv
