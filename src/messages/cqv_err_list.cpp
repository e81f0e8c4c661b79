#include "messages/cqv_err_list.h"

#include <string>

#include "com/class_factory.h"
#include "com/dispatch.h"
#include "com/error.h"
#include "messages/app_context.h"
#include "messages/convert_msg.h"
#include "messages/error_collector.h"
#include "messages/internal/cqv_err_tree.h"
#include "messages/internal/err_list_grid_sink.h"
#include "platform/file_system.h"
#include "platform/message_box.h"

namespace qv {
namespace {

using platform::MessageBox;

constexpr int32_t kHelpContextBase = 60000;
// Unlike CallHelpFile's own text, this one has a blank before the break.
constexpr char kHelpFileMissing[] =
    "Finde die Hilfedatei @@n@@@@1, Pfad auf die Hilfedatei@@@@n@@nicht.";
constexpr char kNoHelp[] =
    "Der Meldung kann leider keine Hilfe zugeordnet werden.";

CQvErrMsg& Deref(const std::shared_ptr<CQvErrMsg>& msg) {
  if (!msg) throw Error::Runtime(err::kObjectVariableNotSet);
  return *msg;
}

}  // namespace

CQvErrList::CQvErrList() = default;

CQvErrList::~CQvErrList() {
  if (!sink_) return;
  sink_->Detach();
  if (!grid_) return;
  try {
    grid_->Call("unadvise", {Variant(ObjectPtr(sink_))});
  } catch (const Error& e) {
    ErrorCollector::Report(e);  // no caller to raise it to
  }
}

const std::shared_ptr<Collection>& CQvErrList::m_colErrMsg() {
  if (!m_colErrMsg_) m_colErrMsg_ = std::make_shared<Collection>();
  return m_colErrMsg_;
}

void CQvErrList::set_QvTGrErr(ObjectPtr grid) {
  if (grid_ && sink_) {
    sink_->Detach();
    grid_->Call("unadvise", {Variant(ObjectPtr(sink_))});
  }
  grid_.reset();
  sink_.reset();
  if (!grid) return;
  auto sink = std::make_shared<internal::ErrListGridSink>(this);
  grid->Call("advise", {Variant(ObjectPtr(sink))});
  grid_ = std::move(grid);
  sink_ = std::move(sink);
  FillGrid();
}

void CQvErrList::FillGrid() {
  const auto& list = m_colErrMsg();
  const int32_t count = list->Count();
  grid_->Call("SetNumberRows", {Variant(count)});
  for (int32_t i = 1; i <= count; ++i) {
    ObjectPtr item = list->Item(Variant(i)).ToObject();
    const Variant kind = item ? item->Get("m_eKind") : Variant();
    const Variant text = item ? item->Get("m_sMsg") : Variant();
    const Variant row(i - 1);
    grid_->Call("QuickSetQvResSrcBitmap",
                {Variant(int32_t{0}), row, Variant(IconOf(kind.ToLong()))});
    grid_->Call("QuickSetText", {Variant(int32_t{1}), row, text});
  }
  grid_->Call("QvFitRowsHeightNormalMultiLine");
}

int32_t CQvErrList::IconOf(int32_t kind) {
  switch (kind) {
    case QvErrKindWarning:
      return 206;
    case QvErrKindError:
      return 203;
    case QvErrKindDefault:
      return 205;
    case QvErrKindFatal:
      return 204;
    default:
      throw Error::Object1000("ErrKind " + std::to_string(kind) +
                              " nicht definert");
  }
}

bool CQvErrList::isEmpty() { return m_colErrMsg()->Count() == 0; }

void CQvErrList::clear() {
  if (filter_) filter_->Clear();
  const auto& list = m_colErrMsg();
  // From the end: the same result as removing the first item each time,
  // without moving the rest of a long list at every step.
  while (list->Count() >= 1) list->Remove(Variant(list->Count()));
  if (grid_) grid_->Call("SetNumberRows", {Variant(int32_t{0})});
}

void CQvErrList::addError(CQvErrMsg& errMsg) {
  if (!filter_) filter_ = std::make_unique<internal::CQvErrTree>();
  if (!filter_->Insert(errMsg)) return;
  auto copy = std::make_shared<CQvErrMsg>();
  copy->init(errMsg);
  m_colErrMsg()->Add(Variant(std::move(copy)));
}

ObjectPtr CQvErrList::MessageAt(int32_t index) {
  const auto& list = m_colErrMsg();
  if (index < 1 || index > list->Count()) return nullptr;
  return list->Item(Variant(index)).ToObject();
}

void CQvErrList::OnDClicked(int32_t row) {
  if (ObjectPtr msg = MessageAt(row + 1)) {
    Variant args[] = {Variant(msg)};
    events_.Raise("QvErrSelect", args);
  }
}

void CQvErrList::OnRowChange(int32_t newRow) {
  if (ObjectPtr msg = MessageAt(newRow + 1)) {
    Variant args[] = {Variant(msg)};
    events_.Raise("QvErrHighlight", args);
  }
}

void CQvErrList::OnHelp() {
  const std::string file = AppContext::Current()->CurHelpFile();
  if (!platform::FileSystem::Current()->FileExists(file)) {
    MessageBox::Show(ConvertMsg(kHelpFileMissing, SafeArray{Variant(file)}),
                     "qv-software", MessageBox::kCritical);
    return;
  }
  const int32_t row = grid_ ? grid_->Call("GetCurrentRow").ToLong() : -1;
  ObjectPtr msg = MessageAt(row + 1);
  if (!msg) {
    MessageBox::Show(kNoHelp, "qv-software", MessageBox::kInformation);
    return;
  }
  CallHelpFile(msg->Get("m_lNum").ToLong() + kHelpContextBase, 0, file);
}

ClassInfo CQvErrList::BuildClassInfo() {
  using L = CQvErrList;
  return ClassBuilder<L>("CQvErrList")
      .Get("m_colErrMsg", [](L& self) { return self.m_colErrMsg(); })
      .Set("m_colErrMsg", &L::set_m_colErrMsg)
      .Set("QvTGrErr", &L::set_QvTGrErr)
      .Get("isEmpty", &L::isEmpty)
      .Method("clear", &L::clear)
      .Method("addError",
              [](L& self, std::shared_ptr<CQvErrMsg> errMsg) {
                self.addError(Deref(errMsg));
              })
      .Event("QvErrHighlight", {"errMsg"})
      .Event("QvErrSelect", {"errMsg"})
      .Build();
}

QV_REGISTER_CLASS(CQvErrList);

}  // namespace qv
