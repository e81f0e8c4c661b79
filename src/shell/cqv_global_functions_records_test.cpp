#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "com/class_factory.h"
#include "com/error.h"
#include "com/safe_array.h"
#include "datasource/qv_recordset.h"
#include "shell/cqv_global_functions.h"
#include "testing/expect_error.h"
#include "testing/project_database.h"
#include "testing/room_schema.h"

namespace qv {
namespace {

using RsPtr = std::shared_ptr<ds::QvRecordset>;
using testing::RaisesError;

constexpr int32_t kError1000 = -2147220504;

Variant Array(std::vector<Variant> items, int32_t lbound = 0) {
  return Variant(SafeArray(std::move(items), lbound));
}

std::vector<Variant> Fields(const ds::QvRecordset& rs) {
  std::vector<Variant> values;
  for (int16_t k = 0; k < rs.getFieldCount(); ++k) {
    values.push_back(rs.getFieldValue(k));
  }
  return values;
}

// A project with buildings G1 (rooms R1, R2) and G2 (room R1), and an empty
// table "Kopie" of the same layout as "Raum".
class RecordHelpersTest : public ::testing::Test {
 protected:
  RecordHelpersTest() {
    db_.AddBuildingAndRoom();
    db_.connection().addTable(
        "Kopie", 1, Variant(SafeArray{"Gebaeude", 202, 20, "Raum", 202, 20}),
        Variant(SafeArray{"Flaeche", 5, "Bezeichnung", 202, 50}), false);
    auto rooms = db_.OpenRecordset("Raum");
    for (const auto& [building, room, area] :
         std::vector<std::tuple<const char*, const char*, double>>{
             {"G1", "R1", 12.5}, {"G1", "R2", 20.0}, {"G2", "R1", 8.0}}) {
      rooms->clearVars();
      rooms->setValue("Gebaeude", building);
      rooms->setValue("Raum", room);
      rooms->setValue("Flaeche", area);
      rooms->setValue("Bezeichnung", std::string("Raum ") + room);
      rooms->insertRecord();
    }
    rooms_ = db_.OpenRecordset("Raum");
    SetKeys(rooms_, {"G1"}, true);
  }

  void SetKeys(const RsPtr& rs, std::vector<Variant> keys, bool read,
               bool test_equal = false, int16_t max = -1) {
    Variant array = Array(std::move(keys));
    fn_->SetQvRsKeys(rs, array, read, test_equal, max);
  }

  testing::ProjectDatabase db_;
  std::shared_ptr<CQVGlobalFunctions> fn_ =
      CreateObjectAs<CQVGlobalFunctions>("qvglobal10.CQVGlobalFunctions");
  RsPtr rooms_;
};

TEST_F(RecordHelpersTest, SetQvRsKeysSetsAsManyKeysAsBothSidesHave) {
  SetKeys(rooms_, {"G2", "R1", "ignored"}, false);
  EXPECT_EQ(rooms_->getFieldValue(0), Variant("G2"));
  EXPECT_EQ(rooms_->getFieldValue(1), Variant("R1"));
  EXPECT_EQ(rooms_->getFieldValue(2), Variant(12.5));  // not a key field
  SetKeys(rooms_, {"G2"}, true);  // one key: the block of building G2
  EXPECT_EQ(rooms_->getRecordCount(), 1);
  // Through the dispatch interface, with an array of lower bound 1.
  std::vector<Variant> args = {rooms_, Array({"G1", "R2"}, 1), true};
  fn_->Invoke("SetQvRsKeys", InvokeKind::kMethod, args);
  EXPECT_EQ(rooms_->getValue("Flaeche"), Variant(20.0));
}

TEST_F(RecordHelpersTest, SetQvRsKeysRefusesTooManyKeysAndNonArrays) {
  EXPECT_TRUE(RaisesError(
      [&] {
        SetKeys(rooms_, {"G1", "R1"}, true, false, 3);
      },
      kError1000,
      "CQVGlobalFunctions->SetQvRsKeys: Der im Parameter iMaxCountKeys "
      "übergebener Wert 3\r\nist größer als die Anzahl der Schlüssel in  QvRs "
      "oder arrKeyValues",
      ""));
  Variant not_array("G1");
  EXPECT_TRUE(RaisesError(
      [&] { fn_->SetQvRsKeys(rooms_, not_array); }, kError1000,
      "CQVGlobalFunctions->SetQvRsKeys: Parameter arrKeyValues is nicht vom "
      "Typ Array",
      ""));
  Variant keys = Array({"G1"});
  EXPECT_TRUE(RaisesError([&] { fn_->SetQvRsKeys(nullptr, keys); }, 91,
                          "CQVGlobalFunctions->SetQvRsKeys: Object variable "
                          "or With block variable not set"));
}

TEST_F(RecordHelpersTest, SetQvRsKeysSparesTheReadOnlyForUnchangedKeys) {
  // The block is read again only when asked to, and then (with the test)
  // only when a key changed or was unset; reading puts the record set on
  // the block's first record.
  struct Row {
    std::vector<Variant> keys;
    bool test_equal;
    int32_t position;
    int32_t count;
  };
  const Row rows[] = {
      {{"g1"}, true, 1, 2}, {{"G1"}, false, 0, 2}, {{"G2"}, true, 0, 1}};
  for (const Row& row : rows) {
    SetKeys(rooms_, {"G1"}, true);
    rooms_->moveNext();
    SetKeys(rooms_, row.keys, true, row.test_equal);
    EXPECT_EQ(rooms_->getPosition(), row.position) << row.keys[0];
    EXPECT_EQ(rooms_->getRecordCount(), row.count) << row.keys[0];
  }
  rooms_->moveNext();
  rooms_->clearVars();
  SetKeys(rooms_, {"G1"}, true, true);  // an Empty key counts as changed
  EXPECT_EQ(rooms_->getPosition(), 0);
}

TEST_F(RecordHelpersTest, MakeQvRsEmptyAndClearVarsQvRs) {
  // Reading the empty block of the first key leaves the fields after it
  // empty.
  struct Row {
    bool clear_vars, save_keys;
    std::vector<Variant> fields;
  };
  const Row rows[] = {
      {false, true, {"G1", "R1", Variant(), Variant()}},
      {true, true, {"G1", "R1", Variant(), Variant()}},
      {true, false, {Variant(), Variant(), Variant(), Variant()}},
      {false, false, {"", Variant(), Variant(), Variant()}},
  };
  for (const Row& row : rows) {
    SetKeys(rooms_, {"G1"}, true);
    std::vector<Variant> args = {rooms_, row.clear_vars, row.save_keys};
    fn_->Invoke("MakeQvRsEmpty", InvokeKind::kMethod, args);
    EXPECT_TRUE(rooms_->isBlockEmpty());
    EXPECT_EQ(Fields(*rooms_), row.fields)
        << row.clear_vars << " " << row.save_keys;
  }
  // ClearVarsQvRs keeps the keys when asked to.
  SetKeys(rooms_, {"G1"}, true);
  fn_->ClearVarsQvRs(rooms_, true);
  EXPECT_EQ(Fields(*rooms_),
            (std::vector<Variant>{"G1", "R1", Variant(), Variant()}));
  fn_->ClearVarsQvRs(rooms_, false);
  EXPECT_EQ(Fields(*rooms_), std::vector<Variant>(4));
  EXPECT_TRUE(RaisesError([&] { fn_->ClearVarsQvRs(nullptr, true); }, 91,
                          "Object variable or With block variable not set"));
}

TEST_F(RecordHelpersTest, CopyQvRsValuesCopiesTheRecordOrAllOfEqualLayout) {
  auto copy = db_.OpenRecordset("Kopie");
  rooms_->moveNext();
  fn_->CopyQvRsValues(copy, rooms_, false);
  EXPECT_EQ(Fields(*copy), (std::vector<Variant>{"G1", "R2", 20.0, "Raum R2"}));
  EXPECT_EQ(db_.OpenRecordset("Kopie")->getRecordCount(), 0);

  std::vector<Variant> args = {copy, rooms_, true};
  fn_->Invoke("CopyQvRsValues", InvokeKind::kMethod, args);
  auto stored = db_.OpenRecordset("Kopie");
  ASSERT_EQ(stored->getRecordCount(), 2);
  EXPECT_EQ(Fields(*stored),
            (std::vector<Variant>{"G1", "R1", 12.5, "Raum R1"}));
  stored->moveNext();
  EXPECT_EQ(Fields(*stored),
            (std::vector<Variant>{"G1", "R2", 20.0, "Raum R2"}));

  // An empty source block copies nothing, not even into the buffer.
  SetKeys(rooms_, {"G9"}, true);
  copy->clearVars();
  fn_->CopyQvRsValues(copy, rooms_, false);
  fn_->CopyQvRsValues(copy, rooms_, true);
  EXPECT_EQ(Fields(*copy), std::vector<Variant>(4));
  EXPECT_EQ(db_.OpenRecordset("Kopie")->getRecordCount(), 2);

  EXPECT_TRUE(RaisesError(
      [&] { fn_->CopyQvRsValues(db_.OpenRecordset("Gebaeude"), rooms_, true); },
      kError1000,
      "CQVGlobalFunctions->CopyQvRsValues: Die beiden QvRecordsets QvRsDest "
      "und QvRsSrc haben nicht\r\ndieselbe Anzahl an Feldern",
      ""));
}

TEST_F(RecordHelpersTest, IsQvRsValuesEqualComparesAsTextWithoutCase) {
  // The record set stands on G1 / R1 / 12.5 / "Raum R1".
  struct Row {
    Variant values;
    int32_t count;
    bool equal;
  };
  const Row rows[] = {
      {Array({"g1 ", "R1", 12.5, "RAUM R1   "}), -1, true},
      {Array({"G1", "R1", "12.5"}), -1, true},
      {Array({"G1", " R1"}), -1, false},  // only trailing blanks go
      {Array({"G1", "R2"}), -1, false},
      {Array({"G1", "R2"}), 1, true},
      {Array({"X"}), 0, true},
      {Array({}), -1, true},
      {Array({"G1", "R1", 12.0}), -1, false},
      {Array({"G1", "R1", 12.5, "Raum R1", "beyond the fields"}), -1, true},
      {Array({"G1", "R1", kNull}), -1, false},
      {Array({"x", "G1", "R1"}, -1), 5, false},
      {Array({"G1", "R1"}, 7), 5, true},
  };
  for (const Row& row : rows) {
    std::vector<Variant> args = {rooms_, row.values, row.count};
    EXPECT_EQ(fn_->Invoke("IsQvRsValuesEqual", InvokeKind::kMethod, args),
              Variant(row.equal))
        << row.values.Describe() << " " << row.count;
  }
  EXPECT_TRUE(RaisesError(
      [&] { fn_->IsQvRsValuesEqual(rooms_, Variant("G1")); }, kError1000,
      "CQVGlobalFunctions->IsQvRsValuesEqual: Parameter arrValues muss ein "
      "Array sein.",
      ""));
}

// The four room levels, each opened on its own (not linked).
class ReadMembersTest : public ::testing::Test {
 protected:
  ReadMembersTest() {
    for (const char* table : {"Gebaeude", "Stock", "Wohnung", "Raum"}) {
      levels_.push_back(db_.Open(table));
    }
  }
  SafeArray Chain(int32_t lbound = 0) {
    return SafeArray(std::vector<Variant>(levels_.begin(), levels_.end()),
                     lbound);
  }

  testing::RoomDatabase db_{{3, 2, 2, 3}};
  std::vector<RsPtr> levels_;
  CQVGlobalFunctions fn_;
};

TEST_F(ReadMembersTest, EachChildIsReadByTheKeysOfItsParent) {
  levels_[0]->setFieldValue(0, "G2");
  levels_[0]->readBlock(1, true);
  SafeArray chain = Chain(1);
  fn_.ReadQvRsMembers(chain);
  // Block order runs from the highest key number down.
  EXPECT_EQ(levels_[3]->getKeyValues(), Array({"G2", "S2", "W2", "R3"}));
  EXPECT_EQ(levels_[3]->getRecordCount(), 3);
}

TEST_F(ReadMembersTest, AnEmptyParentKeysAllRemainingChildren) {
  // A building without storeys: storeys, apartments and rooms are all read
  // by the building's key and come out empty.
  levels_[0]->clearVars();
  levels_[0]->setFieldValue(0, "G4");
  levels_[0]->insertRecord();
  SafeArray chain = Chain();
  std::vector<Variant> args = {Variant(chain)};
  fn_.Invoke("ReadQvRsMembers", InvokeKind::kMethod, args);
  for (size_t i = 1; i < levels_.size(); ++i) {
    EXPECT_TRUE(levels_[i]->isBlockEmpty()) << i;
    EXPECT_EQ(levels_[i]->getFieldValue(0), Variant("G4")) << i;
  }
}

TEST_F(ReadMembersTest, ErrorsNameTheParentInHand) {
  SafeArray chain{levels_[0], levels_[1], "not a record set", levels_[3]};
  EXPECT_TRUE(RaisesError([&] { fn_.ReadQvRsMembers(chain); }, 13,
                          "CQVGlobalFunctions->ReadQvRsMembers: Type "
                          "mismatch\r\nParent-QvRecordset: Stock"));
}

}  // namespace
}  // namespace qv
