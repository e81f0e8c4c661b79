// CQvRSwithBookMark is one entry of a connection's table cache: the cached
// record set together with the position that CQvConnection::saveIterPos
// stored for it. Both fields are public and reachable by name. The entry
// holds a reference to the record set; the connection owns the entry.
// Threads: as the connection that owns the entry.
#ifndef QVGLOBAL_DATA_CQV_RS_WITH_BOOKMARK_H_
#define QVGLOBAL_DATA_CQV_RS_WITH_BOOKMARK_H_

#include <memory>

#include "com/object.h"
#include "com/variant.h"

namespace qv::ds {
class QvRecordset;
}

namespace qv {

class CQvRSwithBookMark : public Dispatchable<CQvRSwithBookMark> {
 public:
  std::shared_ptr<ds::QvRecordset> m_QvRecordset;
  Variant m_BookMark;  // Empty until the first saveIterPos

  static ClassInfo BuildClassInfo();
};

}  // namespace qv

#endif  // QVGLOBAL_DATA_CQV_RS_WITH_BOOKMARK_H_
