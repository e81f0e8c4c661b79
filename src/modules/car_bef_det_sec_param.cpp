#include "modules/car_bef_det_sec_param.h"

#include "com/class_factory.h"
#include "com/dispatch.h"

namespace qv {

void CARBefDetSecParam_t_::init(int32_t lRowQvDs, int32_t lRowTotal,
                                bool bWasLastRowEmpty) {
  row_qv_ds_ = lRowQvDs;
  row_total_ = lRowTotal;
  was_last_row_empty_ = bWasLastRowEmpty;
  bold_ = false;
  empty_row_ = false;
  ignore_qv_ds_row_ = false;
  add_row_ = false;
}

ClassInfo CARBefDetSecParam_t_::BuildClassInfo() {
  using P = CARBefDetSecParam_t_;
  return ClassBuilder<P>("CARBefDetSecParam_t_")
      .Get("RowQvDs", &P::RowQvDs)
      .Let("RowQvDs", &P::SetRowQvDs)
      .Get("RowTotal", &P::RowTotal)
      .Let("RowTotal", &P::SetRowTotal)
      .Get("Bold", &P::Bold)
      .Let("Bold", &P::SetBold)
      .Get("EmptyRow", &P::EmptyRow)
      .Let("EmptyRow", &P::SetEmptyRow)
      .Get("WasLastRowEmpty", &P::WasLastRowEmpty)
      .Get("IgnoreQvDsRow", &P::IgnoreQvDsRow)
      .Let("IgnoreQvDsRow", &P::SetIgnoreQvDsRow)
      .Get("AddRow", &P::AddRow)
      .Let("AddRow", &P::SetAddRow)
      .Method("init", &P::init)
      .Build();
}

QV_REGISTER_CLASS(CARBefDetSecParam_t_);

}  // namespace qv
