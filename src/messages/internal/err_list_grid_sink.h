// The object an error list hands to its grid's "advise": the grid calls its
// members OnDClicked(row, col), OnRowChange(oldRow, newRow) and
// OnHelp(row, col, handled) (names without regard to letter case), which
// the sink passes to its list. The list detaches the sink when it unbinds
// the grid or goes away; a detached sink ignores events.
// Threads: the list's thread.
#ifndef QVGLOBAL_MESSAGES_INTERNAL_ERR_LIST_GRID_SINK_H_
#define QVGLOBAL_MESSAGES_INTERNAL_ERR_LIST_GRID_SINK_H_

#include <string_view>

#include "com/object.h"

namespace qv {
class CQvErrList;
}  // namespace qv

namespace qv::internal {

class ErrListGridSink : public Object {
 public:
  explicit ErrListGridSink(CQvErrList* list) : list_(list) {}
  void Detach() { list_ = nullptr; }

  Variant Invoke(std::string_view name, InvokeKind kind, Args args) override;

 private:
  CQvErrList* list_;
};

}  // namespace qv::internal

#endif  // QVGLOBAL_MESSAGES_INTERNAL_ERR_LIST_GRID_SINK_H_
