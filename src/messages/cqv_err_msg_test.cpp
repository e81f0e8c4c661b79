// CQvErrMsg: equality, copying and emptying rules, by C++ and by name.
#include "messages/cqv_err_msg.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "com/class_factory.h"
#include "testing/expect_error.h"

namespace qv {
namespace {

using ::qv::testing::RaisesError;

struct Field {
  const char* name;
  Variant value;
};

std::shared_ptr<CQvErrMsg> Msg(int32_t modul, int32_t num, QvErrKind kind,
                               const char* text, std::vector<Field> fields) {
  auto msg = std::make_shared<CQvErrMsg>();
  msg->m_eModul = modul;
  msg->m_lNum = num;
  msg->m_eKind = kind;
  msg->m_sMsg = text;
  for (const Field& f : fields) msg->addField(f.name, f.value);
  return msg;
}

TEST(CQvErrMsgTest, IsEqualComparesModulNumberKindAndFieldValuesOnly) {
  const auto base =
      Msg(1, 12, QvErrKindError, "Raum R12", {{"Raum", "R12"}, {"U", 3.4}});
  const struct {
    const char* what;
    std::shared_ptr<CQvErrMsg> other;
    bool equal;
  } cases[] = {
      {"other text and field names",
       Msg(1, 12, QvErrKindError, "anders", {{"x", "R12"}, {"y", 3.4}}), true},
      {"Null is not unequal",
       Msg(1, 12, QvErrKindError, "", {{"Raum", kNull}, {"U", 3.4}}), true},
      {"fields in another order",
       Msg(1, 12, QvErrKindError, "", {{"U", 3.4}, {"Raum", "R12"}}), false},
      {"letter case of a value",
       Msg(1, 12, QvErrKindError, "", {{"Raum", "r12"}, {"U", 3.4}}), false},
      {"one field less", Msg(1, 12, QvErrKindError, "", {{"Raum", "R12"}}),
       false},
      {"other module",
       Msg(2, 12, QvErrKindError, "", {{"Raum", "R12"}, {"U", 3.4}}), false},
      {"other number",
       Msg(1, 13, QvErrKindError, "", {{"Raum", "R12"}, {"U", 3.4}}), false},
      {"other kind",
       Msg(1, 12, QvErrKindFatal, "", {{"Raum", "R12"}, {"U", 3.4}}), false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(base->isEqual(*c.other), c.equal) << c.what;
    EXPECT_EQ(c.other->isEqual(*base), c.equal) << c.what;
  }
  EXPECT_TRUE(Msg(3, 4, QvErrKindWarning, "a", {})
                  ->isEqual(*Msg(3, 4, QvErrKindWarning, "b", {})));
}

TEST(CQvErrMsgTest, InitAppendsUnnamedCopiesClearEmptiesFieldsNullNameRaises) {
  const auto source = Msg(9, 77, QvErrKindFatal, "Quelle",
                          {{"a", 1}, {"b", "zwei"}, {"c", 3.5}});
  const auto target =
      Msg(0, 0, QvErrKindWarning, "", {{"x", "alt1"}, {"y", "alt2"}});
  target->init(*source);
  EXPECT_EQ(target->m_eModul, 9);
  EXPECT_EQ(target->m_lNum, 77);
  EXPECT_EQ(target->m_eKind, QvErrKindFatal);
  EXPECT_EQ(target->m_sMsg, "Quelle");
  const auto& fields = target->m_colDbFieldList();
  ASSERT_EQ(fields->Count(), 5);
  const Variant expected[] = {"alt1", "alt2", 1, "zwei", 3.5};
  for (int32_t i = 1; i <= 5; ++i) {
    EXPECT_EQ(fields->Item(Variant(i)), expected[i - 1]) << i;
  }
  EXPECT_EQ(fields->Item(Variant("x")), Variant("alt1"));
  EXPECT_TRUE(RaisesError([&] { fields->Item(Variant("a")); }, 5,
                          "Invalid procedure call or argument"));
  // A record copied into itself doubles its fields once.
  source->init(*source);
  EXPECT_EQ(source->m_colDbFieldList()->Count(), 6);
  // clear empties the fields only.
  target->clear();
  EXPECT_EQ(fields->Count(), 0);
  EXPECT_EQ(target->m_lNum, 77);
  EXPECT_EQ(target->m_sMsg, "Quelle");
  EXPECT_TRUE(RaisesError([&] { target->addField(kNull, "R2"); }, 94,
                          "Invalid use of Null"));
}

TEST(CQvErrMsgTest, ObjectArgumentsByName) {
  const ObjectPtr a = CreateObject("qvglobal10.CQvErrMsg");
  auto list = std::make_shared<Collection>();
  a->Set("m_colDbFieldList", list);  // shares the caller's collection
  a->Call("addField", {"Raum", "R12"});
  EXPECT_EQ(list->Count(), 1);
  EXPECT_TRUE(RaisesError([&] { a->Call("isEqual", {nullptr}); }, 91,
                          "Object variable or With block variable not set"));
}

}  // namespace
}  // namespace qv
