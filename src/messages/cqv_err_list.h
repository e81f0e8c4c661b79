// CQvErrList collects the messages (CQvErrMsg) a module produces during a
// check or a calculation, drops repeated ones and shows them in a tree grid
// of the host: row r shows message r + 1, column 0 the icon of its kind
// (warning 206, error 203, default 205, fatal 204), column 1 its text.
// Double-clicking a row raises QvErrSelect(errMsg), moving to a row raises
// QvErrHighlight(errMsg), and the help key opens the help page of the
// current row's message (context number m_lNum + 60000).
//
// A message is dropped when one with the same module, number and field
// values was added since the last clear (kind and text do not count). The
// list keeps copies made with CQvErrMsg::init, so the copies' fields carry
// no names. Rows are written when a grid is bound, not when messages are
// added: bind (again) after adding.
//
// The grid is a host object reached by member name. The list calls
// "SetNumberRows"(count), "QuickSetQvResSrcBitmap"(col, row, bitmap),
// "QuickSetText"(col, row, text), "QvFitRowsHeightNormalMultiLine"() and
// "GetCurrentRow"(). How the grid reports its events: when a grid is bound,
// the list calls the grid's "advise"(sink); the grid then calls the sink's
// members OnDClicked(row, col), OnRowChange(oldRow, newRow) and
// OnHelp(row, col, handled), rows 0-based, `handled` by reference: the list
// writes True into it once it has dealt with the help request. Binding
// another grid (or Nothing) or destroying the list calls the old grid's
// "unadvise"(sink) with the same sink. A grid event after that reaches no
// list and does nothing.
//
// Ownership: the list owns its message collection (replaceable through
// m_colErrMsg) and holds the bound grid; the grid holds the sink, which
// does not keep the list alive.
// Errors: an unknown kind raises 0x800403E8 "ErrKind <n> nicht definert"
// while a grid is filled; collection and grid errors pass to the caller;
// the help path reports a missing help file or message in message boxes.
// An error of "unadvise" while the list is destroyed goes to the
// ErrorCollector. Threads: one user-interface thread.
#ifndef QVGLOBAL_MESSAGES_CQV_ERR_LIST_H_
#define QVGLOBAL_MESSAGES_CQV_ERR_LIST_H_

#include <cstdint>
#include <memory>

#include "com/collection.h"
#include "com/event_source.h"
#include "com/object.h"
#include "messages/cqv_err_msg.h"

namespace qv {

namespace internal {
class CQvErrTree;
class ErrListGridSink;
}  // namespace internal

class CQvErrList : public Dispatchable<CQvErrList> {
 public:
  CQvErrList();
  ~CQvErrList() override;
  CQvErrList(const CQvErrList&) = delete;
  CQvErrList& operator=(const CQvErrList&) = delete;

  // The messages in the order added, created empty on first use.
  const std::shared_ptr<Collection>& m_colErrMsg();
  void set_m_colErrMsg(std::shared_ptr<Collection> list) {
    m_colErrMsg_ = std::move(list);
  }

  // Binds `grid` (Nothing unbinds) and writes all rows into it.
  void set_QvTGrErr(ObjectPtr grid);
  bool isEmpty();
  void clear();
  void addError(CQvErrMsg& errMsg);

  // The bitmap number of a kind; raises "ErrKind <n> nicht definert".
  static int32_t IconOf(int32_t kind);

  // What the grid's events do (called by the sink).
  void OnDClicked(int32_t row);
  void OnRowChange(int32_t newRow);
  void OnHelp();

  EventSource* events() override { return &events_; }
  static ClassInfo BuildClassInfo();

 private:
  void FillGrid();
  // Message `index` (1-based) as an object, or Nothing outside the list.
  ObjectPtr MessageAt(int32_t index);

  std::shared_ptr<Collection> m_colErrMsg_;
  std::unique_ptr<internal::CQvErrTree> filter_;  // created on first use
  ObjectPtr grid_;
  std::shared_ptr<internal::ErrListGridSink> sink_;
  EventSource events_;
};

}  // namespace qv

#endif  // QVGLOBAL_MESSAGES_CQV_ERR_LIST_H_
