// C record structures bound to record sets: registration, the pointer
// variant, copying each current record into the structure and taking the
// structure's values back on insert and update.
#include "datasource/c_record_binding.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <tuple>

#include "com/class_factory.h"
#include "com/error.h"
#include "com/variant_date.h"
#include "datasource/db_catalog.h"
#include "datasource/db_connection.h"
#include "datasource/qv_recordset.h"
#include "testing/expect_error.h"
#include "testing/temp_dir.h"

// The record structure as a caller written in C declares it.
extern "C" {
typedef struct Messung {
  char name[8];
  int32_t nr;
  double wert;
  int32_t aktiv;
  double datum;
  int16_t anzahl;
} Messung;
}

namespace qv::ds {
namespace {

const QvCFieldLayout kMessungFields[] = {
    {"Name", kAdVarWChar, offsetof(Messung, name), sizeof(Messung::name)},
    {"nr", kAdInteger, offsetof(Messung, nr), sizeof(int32_t)},
    {"Wert", kAdDouble, offsetof(Messung, wert), sizeof(double)},
    {"Aktiv", kAdBoolean, offsetof(Messung, aktiv), sizeof(int32_t)},
    {"Datum", kAdDate, offsetof(Messung, datum), sizeof(double)},
    {"Anzahl", kAdSmallInt, offsetof(Messung, anzahl), sizeof(int16_t)},
};
constexpr size_t kMessungCount =
    sizeof kMessungFields / sizeof kMessungFields[0];

// The structure's members, to compare all of them at once.
using Members =
    std::tuple<std::string, int32_t, double, int32_t, double, int16_t>;
Members MembersOf(const Messung& m) {
  return {m.name, m.nr, m.wert, m.aktiv, m.datum, m.anzahl};
}

class CRecordBindingTest : public ::testing::Test {
 protected:
  void SetUp() override {
    const std::string path = dir_.File("c.qv3");
    DbConnection::CreateDatabase(path);
    con_->Open(DbConnection::MakeConnectionString(path));
    DbCatalog(*con_).CreateTable("messung",
                                 {{"Name", kAdVarWChar, 20},
                                  {"Nr", kAdInteger},
                                  {"Wert", kAdDouble},
                                  {"Aktiv", kAdBoolean},
                                  {"Datum", kAdDate},
                                  {"Anzahl", kAdSmallInt}},
                                 {"Name", "Nr"});
    con_->Execute(
        "INSERT INTO messung VALUES ('A', 1, 1.25, -1, '2024-05-06 07:08:09', "
        "12), "
        "('Überlänge', 2, -3.5, 0, NULL, NULL)");
    std::memset(&rec_, 0x5A, sizeof rec_);
    ASSERT_EQ(
        qv_register_c_record(&rec_, "Messung", kMessungFields, kMessungCount),
        0);
    ptr_ = CRecordPointer(&rec_);
  }
  void TearDown() override { qv_unregister_c_record(&rec_); }

  std::shared_ptr<QvRecordset> Attached() {
    auto rs = std::make_shared<QvRecordset>();
    EXPECT_TRUE(rs->openTable(con_, "messung"));
    EXPECT_TRUE(rs->attachCPointer(ptr_));
    return rs;
  }

  testing::TempDir dir_;
  std::shared_ptr<DbConnection> con_ = std::make_shared<DbConnection>();
  Messung rec_;
  Variant ptr_;
};

TEST_F(CRecordBindingTest,
       RegistrationChecksTheLayoutAndThePointerNamesTheTable) {
  Messung other;
  QvCFieldLayout bad = kMessungFields[1];
  bad.size = sizeof(double);  // an int32_t member cannot be 8 bytes
  EXPECT_EQ(qv_register_c_record(&other, "messung", &bad, 1), -1);
  bad = kMessungFields[0];
  bad.type = kAdLongVarBinary;
  EXPECT_EQ(qv_register_c_record(&other, "messung", &bad, 1), -1);
  EXPECT_EQ(
      qv_register_c_record(nullptr, "messung", kMessungFields, kMessungCount),
      -1);
  EXPECT_EQ(qv_register_c_record(&other, "", kMessungFields, kMessungCount),
            -1);
  EXPECT_EQ(qv_register_c_record(&other, "messung", kMessungFields, 0), -1);
  EXPECT_EQ(qv_unregister_c_record(&other), -1);
  QvRecordset spare;
  EXPECT_EQ(ptr_.type(), VarType::kDouble);
  EXPECT_EQ(spare.tableNameFromCPointer(ptr_), "Messung");
  Variant unknown = CRecordPointer(&other);  // never registered
  EXPECT_EQ(spare.tableNameFromCPointer(unknown), "");
  Variant text("0x1234");
  EXPECT_TRUE(
      qv::testing::RaisesError([&] { spare.tableNameFromCPointer(text); },
                               err::kTypeMismatch, "Type mismatch"));
}

TEST_F(CRecordBindingTest,
       EveryMoveCopiesTheRecordIntoTheStructureUntilUnregistered) {
  auto rs = Attached();
  EXPECT_EQ(MembersOf(rec_), Members("A", 1, 1.25, -1,
                                     MakeDate(2024, 5, 6, 7, 8, 9).serial, 12));
  rs->moveNext();
  // The name takes 7 bytes at most, cut before the next character; Null
  // numbers and dates become 0.
  EXPECT_EQ(MembersOf(rec_), Members("Überl", 2, -3.5, 0, 0.0, 0));
  // Unregistered, the structure is left alone.
  ASSERT_EQ(qv_unregister_c_record(&rec_), 0);
  rs->movePrevious();
  EXPECT_EQ(rec_.nr, 2);
}

TEST_F(CRecordBindingTest, InsertAndUpdateTakeTheStructuresValues) {
  auto rs = Attached();
  rec_.wert = 9.5;
  rec_.aktiv = 1;
  rs->updateRecord();
  EXPECT_EQ(con_->Query("SELECT Wert, Aktiv FROM messung WHERE Name = 'A'"),
            (std::vector<std::vector<Variant>>{{9.5, true}}));
  std::strcpy(rec_.name, "B");
  rec_.nr = 7;
  rec_.anzahl = -5;
  rs->insertRecord();
  EXPECT_EQ(con_->QueryValue(
                "SELECT Anzahl FROM messung WHERE Name = 'B' AND Nr = 7"),
            Variant(int16_t{-5}));
  EXPECT_EQ(rs->getValue("Name"), Variant("B"));
}

TEST_F(CRecordBindingTest, AttachFailsWhenTheStructureDoesNotFit) {
  auto rs = std::make_shared<QvRecordset>();
  EXPECT_FALSE(rs->attachCPointer(ptr_));  // not open
  ASSERT_TRUE(rs->openTable(con_, "messung"));
  struct Other {
    double name;
  } other{};
  const QvCFieldLayout as_double{"Name", kAdDouble, 0, sizeof(double)};
  ASSERT_EQ(qv_register_c_record(&other, "messung", &as_double, 1), 0);
  Variant other_ptr = CRecordPointer(&other);
  EXPECT_FALSE(rs->attachCPointer(other_ptr));  // text field into a double
  const QvCFieldLayout missing{"Nope", kAdDouble, 0, sizeof(double)};
  ASSERT_EQ(qv_register_c_record(&other, "messung", &missing, 1), 0);
  EXPECT_FALSE(rs->attachCPointer(other_ptr));
  ASSERT_EQ(qv_register_c_record(&other, "raum", &as_double, 1), 0);
  EXPECT_FALSE(rs->attachCPointer(other_ptr));  // another table
  EXPECT_EQ(qv_unregister_c_record(&other), 0);
  Variant not_a_pointer("x");
  EXPECT_FALSE(rs->attachCPointer(not_a_pointer));
}

TEST_F(CRecordBindingTest, MembersAreReachedByName) {
  ObjectPtr rs = CreateObject("qvglobal10.QvRecordset");
  std::vector<Variant> args{ptr_};
  EXPECT_EQ(rs->Invoke("tableNameFromCPointer", InvokeKind::kMethod, args),
            Variant("Messung"));
  rs->Call("openTable", {Variant(con_), Variant("messung")});
  EXPECT_EQ(rs->Invoke("attachCPointer", InvokeKind::kMethod, args),
            Variant(true));
}

}  // namespace
}  // namespace qv::ds
