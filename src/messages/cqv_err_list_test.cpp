// CQvErrList with a fake grid: rows written, duplicates dropped, the grid's
// events turned into the list's events, and the help path.
#include "messages/cqv_err_list.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "testing/callback_object.h"
#include "testing/expect_error.h"
#include "testing/message_fakes.h"

namespace qv {
namespace {

using ::qv::testing::CallbackObject;
using ::qv::testing::RaisesError;

std::shared_ptr<CQvErrMsg> Msg(int32_t num, QvErrKind kind, std::string text,
                               std::vector<Variant> fields = {}) {
  auto msg = std::make_shared<CQvErrMsg>();
  msg->m_eModul = 1;
  msg->m_lNum = num;
  msg->m_eKind = kind;
  msg->m_sMsg = std::move(text);
  for (size_t i = 0; i < fields.size(); ++i) {
    msg->addField(Variant("f" + std::to_string(i)), fields[i]);
  }
  return msg;
}

// A grid that records every call, keeps the sink it is advised of and
// reports `current_row` as its current row.
class ErrListTest : public ::testing::Test {
 protected:
  ErrListTest() : list_(std::make_shared<CQvErrList>()) {
    grid_ = MakeGrid(&sink_);
    list_->events()->Advise([this](std::string_view event, Args args) {
      raised_.push_back(std::string(event) + " " +
                        args[0].ToObject()->Get("m_sMsg").ToString());
    });
  }

  std::shared_ptr<CallbackObject> MakeGrid(ObjectPtr* sink) {
    auto grid = std::make_shared<CallbackObject>();
    grid->On("advise", [sink](InvokeKind, Args a) {
      *sink = a[0].ToObject();
      return Variant();
    });
    for (const char* name :
         {"unadvise", "SetNumberRows", "QuickSetText", "QuickSetQvResSrcBitmap",
          "QvFitRowsHeightNormalMultiLine"}) {
      grid->On(name, [](InvokeKind, Args) { return Variant(); });
    }
    grid->On("GetCurrentRow",
             [this](InvokeKind, Args) { return Variant(current_row_); });
    return grid;
  }

  // The grid's calls but (un)advise, as text: "SetNumberRows(2) ...".
  std::string GridCalls() const {
    std::string out;
    for (const auto& call : grid_->calls()) {
      if (call.name == "advise" || call.name == "unadvise") continue;
      out += (out.empty() ? "" : " ") + call.name + "(";
      for (size_t i = 0; i < call.args.size(); ++i) {
        out += (i ? "," : "") + call.args[i].ToString();
      }
      out += ")";
    }
    return out;
  }

  // Calls the sink as the grid would when the user acts on it.
  Variant GridEvent(const char* name, std::vector<Variant> args) {
    sink_->Invoke(name, InvokeKind::kMethod, args);
    return args.back();
  }

  std::shared_ptr<CQvErrList> list_;
  std::shared_ptr<CallbackObject> grid_;
  ObjectPtr sink_;
  int32_t current_row_ = 0;
  std::vector<std::string> raised_;
};

TEST_F(ErrListTest, BindingWritesIconAndTextOfEveryMessage) {
  list_->set_QvTGrErr(grid_);
  EXPECT_EQ(GridCalls(), "SetNumberRows(0) QvFitRowsHeightNormalMultiLine()");
  grid_->ClearCalls();
  list_->addError(*Msg(1, QvErrKindWarning, "Warnung"));
  list_->addError(*Msg(2, QvErrKindError, "Fehler"));
  list_->addError(*Msg(3, QvErrKindDefault, "Hinweis"));
  list_->addError(*Msg(4, QvErrKindFatal, "Abbruch"));
  EXPECT_EQ(GridCalls(), "");  // rows are written when a grid is bound
  list_->set_QvTGrErr(grid_);
  EXPECT_EQ(GridCalls(),
            "SetNumberRows(4) QuickSetQvResSrcBitmap(0,0,206) "
            "QuickSetText(1,0,Warnung) QuickSetQvResSrcBitmap(0,1,203) "
            "QuickSetText(1,1,Fehler) QuickSetQvResSrcBitmap(0,2,205) "
            "QuickSetText(1,2,Hinweis) QuickSetQvResSrcBitmap(0,3,204) "
            "QuickSetText(1,3,Abbruch) QvFitRowsHeightNormalMultiLine()");
  grid_->ClearCalls();
  list_->clear();
  EXPECT_TRUE(list_->isEmpty());
  EXPECT_EQ(GridCalls(), "SetNumberRows(0)");
  list_->addError(*Msg(1, static_cast<QvErrKind>(7), "seltsam"));
  EXPECT_TRUE(RaisesError([&] { list_->set_QvTGrErr(grid_); }, -2147220504,
                          "ErrKind 7 nicht definert"));
}

TEST_F(ErrListTest, RepeatedMessagesAreDroppedOthersHeldAsCopies) {
  const struct {
    const char* what;
    std::shared_ptr<CQvErrMsg> msg;
    bool kept;
  } cases[] = {
      {"first", Msg(12, QvErrKindError, "a", {"R1", 3.5}), true},
      {"same again", Msg(12, QvErrKindError, "a", {"R1", 3.5}), false},
      {"other text and kind", Msg(12, QvErrKindFatal, "b", {"R1", 3.5}), false},
      {"number of another type",
       Msg(12, QvErrKindError, "c", {"R1", Variant(float{3.5f})}), false},
      {"fields in another order", Msg(12, QvErrKindError, "d", {3.5, "R1"}),
       true},
      {"letter case of a field", Msg(12, QvErrKindError, "e", {"r1", 3.5}),
       true},
      {"one field less", Msg(12, QvErrKindError, "f", {"R1"}), true},
      {"other number", Msg(13, QvErrKindError, "g", {"R1", 3.5}), true},
      {"text against number", Msg(12, QvErrKindError, "h", {"R1", "3.5"}),
       true},
      {"Null field", Msg(12, QvErrKindError, "i", {"R1", kNull}), true},
      {"Null field again", Msg(12, QvErrKindError, "j", {"R1", kNull}), false},
  };
  std::vector<std::string> expected;
  for (const auto& c : cases) {
    list_->addError(*c.msg);
    if (c.kept) expected.push_back(c.msg->m_sMsg);
  }
  std::vector<std::string> held;
  const auto& col = list_->m_colErrMsg();
  for (int32_t i = 1; i <= col->Count(); ++i) {
    held.push_back(col->Item(Variant(i)).ToObject()->Get("m_sMsg").ToString());
  }
  EXPECT_EQ(held, expected);

  list_->clear();
  list_->addError(*cases[0].msg);
  EXPECT_EQ(list_->m_colErrMsg()->Count(), 1);
  // The list holds copies.
  const auto msg = Msg(5, QvErrKindError, "Original", {"R1"});
  list_->addError(*msg);
  msg->m_sMsg = "geändert";
  const auto copy =
      list_->m_colErrMsg()->Item(Variant(2)).ToObjectAs<CQvErrMsg>();
  EXPECT_EQ(copy->m_sMsg, "Original");
}

TEST_F(ErrListTest, GridEventsInsideTheListRaiseEvents) {
  list_->addError(*Msg(1, QvErrKindError, "erste"));
  list_->addError(*Msg(2, QvErrKindError, "zweite"));
  list_->set_QvTGrErr(grid_);
  ASSERT_NE(sink_, nullptr);
  GridEvent("OnDClicked", {int32_t{1}, int32_t{1}});
  GridEvent("ondclicked", {int32_t{2}, int32_t{1}});
  GridEvent("OnDClicked", {int32_t{-1}, int32_t{0}});
  GridEvent("OnRowChange", {int32_t{1}, int32_t{0}});
  GridEvent("OnRowChange", {int32_t{0}, int32_t{5}});
  EXPECT_EQ(raised_, (std::vector<std::string>{"QvErrSelect zweite",
                                               "QvErrHighlight erste"}));
}

TEST_F(ErrListTest, RebindingAndDestroyingUnadviseTheOldGrid) {
  list_->set_QvTGrErr(grid_);
  const ObjectPtr first_sink = sink_;
  ObjectPtr second_sink;
  auto second = MakeGrid(&second_sink);
  list_->set_QvTGrErr(second);
  ASSERT_EQ(grid_->CallCount("unadvise"), 1u);
  EXPECT_EQ(grid_->CallsTo("unadvise")[0].args[0].ToObject(), first_sink);
  list_->addError(*Msg(1, QvErrKindError, "erste"));
  GridEvent("OnDClicked", {int32_t{0}, int32_t{0}});  // the old grid's sink
  EXPECT_TRUE(raised_.empty());

  list_.reset();
  ASSERT_EQ(second->CallCount("unadvise"), 1u);
  EXPECT_EQ(second->CallsTo("unadvise")[0].args[0].ToObject(), second_sink);
  second_sink->Call("OnDClicked", {int32_t{0}, int32_t{0}});  // list is gone
}

TEST_F(ErrListTest, HelpOpensTheMessagesContextOrShowsWhyNot) {
  ::qv::testing::HelpFileScene scene(77);
  list_->addError(*Msg(12, QvErrKindError, "zwölf"));
  list_->set_QvTGrErr(grid_);
  EXPECT_EQ(GridEvent("OnHelp", {int32_t{0}, int32_t{1}, false}),
            Variant(true));
  current_row_ = 1;  // below the last message
  EXPECT_EQ(GridEvent("OnHelp", {int32_t{1}, int32_t{1}, false}),
            Variant(true));
  scene.app.state().help_file = scene.dir.File("fehlt.chm");
  GridEvent("OnHelp", {int32_t{0}, int32_t{1}, false});
  EXPECT_EQ(scene.help.requests,
            (std::vector<::qv::testing::HelpRecorder::Request>{
                {scene.file, 60012, 77}}));
  ASSERT_EQ(scene.boxes.shown.size(), 2u);
  EXPECT_EQ(scene.boxes.shown[0].text,
            "Der Meldung kann leider keine Hilfe zugeordnet werden.");
  EXPECT_EQ(scene.boxes.shown[0].style, 64);
  EXPECT_EQ(
      scene.boxes.shown[1].text,
      "Finde die Hilfedatei \r\n" + scene.dir.File("fehlt.chm") + "\r\nnicht.");
  EXPECT_EQ(scene.boxes.shown[1].style, 16);
  EXPECT_EQ(scene.boxes.shown[1].title, "qv-software");
}

}  // namespace
}  // namespace qv
