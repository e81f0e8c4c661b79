// CqvIniManager by name, as the suite's modules call it: argument checks in
// their order, the stored encodings of integers and Booleans, defaults.
#include "shell/cqv_ini_manager.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "com/class_factory.h"
#include "testing/expect_error.h"
#include "testing/file_bytes.h"
#include "testing/temp_dir.h"

namespace qv {
namespace {

constexpr int32_t kError = -2147220504;

class CqvIniManagerTest : public ::testing::Test {
 protected:
  void SetUp() override {
    file_ = dir_.File("app.ini");
    ini_ = CreateObject("qvglobal10.CqvIniManager");
    ini_->Let("IniFile", file_);
  }
  std::string Bytes() const { return testing::ReadFileBytes(file_); }

  testing::TempDir dir_;
  std::string file_;
  ObjectPtr ini_;
};

struct CheckRow {
  bool file_set;
  std::string member;
  std::vector<Variant> args;
  std::string message;
};

TEST_F(CqvIniManagerTest, ChecksFileSectionAndKeyInThatOrder) {
  const std::string no_file = "Ini-File noch nicht angegeben";
  const std::string no_section = "Sektionsnamen nicht angegeben";
  const std::string no_key = "Schlüsselnamen nicht angegeben";
  const std::vector<CheckRow> rows = {
      {false, "WriteString", {"", "", ""}, no_file},
      {false, "GetLong", {"S", "k"}, no_file},
      {false, "DeleteSection", {""}, no_file},
      {true, "WriteString", {"", "", "v"}, no_section},
      {true, "GetString", {"", "k"}, no_section},
      {true, "DeleteSection", {""}, no_section},
      {true, "WriteBoolean", {"", "k", true}, no_section},
      {true, "WriteString", {"S", "", "v"}, no_key},
      {true, "GetString", {"S", ""}, no_key},
      {true, "WriteLong", {"S", "", int32_t{1}}, no_key},
      {true, "GetLong", {"S", ""}, no_key},
      {true, "DeleteKey", {"S", ""}, no_key},
      {true, "WriteBoolean", {"S", "", false}, no_key},
      {true, "GetBoolean", {"S", ""}, no_key},
  };
  for (const CheckRow& row : rows) {
    ini_->Let("IniFile", row.file_set ? file_ : "");
    EXPECT_TRUE(testing::RaisesError([&] { ini_->Call(row.member, row.args); },
                                     kError, "qvIniManager.dll: " + row.message,
                                     ""))
        << row.member;
    EXPECT_FALSE(std::filesystem::exists(file_)) << row.member;
  }
}

TEST_F(CqvIniManagerTest, StoresIntegersAndBooleansAsTheSuiteReadsThem) {
  EXPECT_EQ(ini_->Call("WriteLong", {"Werte", "Minus", int32_t{-17}}),
            Variant(true));
  EXPECT_EQ(ini_->Call("WriteBoolean", {"Werte", "Ja", true}), Variant(true));
  EXPECT_EQ(ini_->Call("WriteBoolean", {"Werte", "Nein", false}),
            Variant(true));
  EXPECT_EQ(ini_->Call("WriteString", {"Werte", "Fünf", "5"}), Variant(true));
  EXPECT_EQ(Bytes(), "[Werte]\r\nMinus=-17\r\nJa=-1\r\nNein=0\r\nFünf=5\r\n");

  EXPECT_EQ(ini_->Call("GetLong", {"werte", "minus"}), Variant(int32_t{-17}));
  EXPECT_EQ(ini_->Call("GetBoolean", {"Werte", "FÜNF"}), Variant(true));
  EXPECT_EQ(ini_->Call("GetBoolean", {"Werte", "Nein", true}), Variant(false));
  EXPECT_EQ(ini_->Call("GetBoolean", {"Werte", "Fehlt", true}), Variant(true));
  EXPECT_EQ(ini_->Call("GetBoolean", {"Werte", "Fehlt"}), Variant(false));
  EXPECT_EQ(ini_->Call("GetLong", {"Werte", "Fehlt"}), Variant(int32_t{0}));
  EXPECT_EQ(ini_->Call("GetLong", {"Werte", "Fehlt", int32_t{8}}),
            Variant(int32_t{8}));
  EXPECT_EQ(ini_->Call("GetString", {"Werte", "Fehlt"}), Variant(""));
  EXPECT_EQ(ini_->Call("GetString", {"Werte", "Fehlt", "x "}), Variant("x"));

  // Values are read up to 1023 characters.
  const std::string value(1500, 'x');
  ASSERT_EQ(ini_->Call("WriteString", {"Lang", "k", value}), Variant(true));
  EXPECT_EQ(ini_->Call("GetString", {"Lang", "k"}),
            Variant(value.substr(0, 1023)));
}

TEST_F(CqvIniManagerTest, DeletesKeysAndSections) {
  ini_->Call("WriteString", {"A", "a", "1"});
  ini_->Call("WriteString", {"A", "b", "2"});
  ini_->Call("WriteString", {"B", "c", "3"});
  EXPECT_EQ(ini_->Call("DeleteKey", {"a", "A"}), Variant(true));
  EXPECT_EQ(ini_->Call("DeleteSection", {"b"}), Variant(true));
  EXPECT_EQ(Bytes(), "[A]\r\nb=2\r\n");
}

}  // namespace
}  // namespace qv
