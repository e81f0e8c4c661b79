#include "data/cqv_rs_with_bookmark.h"

#include "com/dispatch.h"
#include "datasource/qv_recordset.h"

namespace qv {

ClassInfo CQvRSwithBookMark::BuildClassInfo() {
  return ClassBuilder<CQvRSwithBookMark>("CQvRSwithBookMark")
      .Field("m_QvRecordset", &CQvRSwithBookMark::m_QvRecordset)
      .Field("m_BookMark", &CQvRSwithBookMark::m_BookMark)
      .Build();
}

}  // namespace qv
