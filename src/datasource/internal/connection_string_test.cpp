#include "datasource/internal/connection_string.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "datasource/db_error.h"
#include "testing/expect_error.h"
#include "testing/temp_dir.h"

namespace qv::ds {
namespace {

TEST(ConnectionStringTest, ReadsProviderAndDataSource) {
  const struct {
    const char* text;
    const char* provider;
    const char* data_source;
  } kCases[] = {
      {"Provider=SQLite;Data Source=/p/a.qv3", "SQLite", "/p/a.qv3"},
      {"  data SOURCE = /p/b.qv3 ;PROVIDER=sqlite", "sqlite", "/p/b.qv3"},
      {"Provider=Microsoft.Jet.OLEDB.4.0;Data Source=\"C:\\x;y.mdb\";"
       "Jet OLEDB:Database Password=geheim",
       "Microsoft.Jet.OLEDB.4.0", "C:\\x;y.mdb"},
      {"Data Source=' a b ' rest;Mode=Share Deny None", "", " a b "},
      {"Data Source='offen;x", "", "'offen"},
      {"Persist Security Info;Data Source=/c.qv3;", "", "/c.qv3"},
  };
  for (const auto& c : kCases) {
    const ConnectionSettings s = ParseConnectionString(c.text, "Test");
    EXPECT_EQ(s.provider, c.provider) << c.text;
    EXPECT_EQ(s.data_source, c.data_source) << c.text;
  }
}

TEST(ConnectionStringTest, RejectsOtherProvidersAndMissingPaths) {
  const struct {
    const char* text;
    const char* description;
  } kCases[] = {
      {"Provider=SQLOLEDB;Data Source=srv", "unsupported provider: 'SQLOLEDB'"},
      {"Provider=SQLite", "no Data Source in connection string"},
      {"Provider=SQLite;Data Source=  ;",
       "no Data Source in connection string"},
      {"", "no Data Source in connection string"},
  };
  for (const auto& c : kCases) {
    EXPECT_TRUE(testing::RaisesError(
        [&] { ParseConnectionString(c.text, "DbConnection"); },
        dberr::kConnection, c.description, "DbConnection"))
        << c.text;
  }
}

TEST(ConnectionStringTest, FindsAPathWrittenInOtherCase) {
  testing::TempDir dir;
  std::filesystem::create_directories(dir.path() + "/Haus.qv3");
  std::ofstream(dir.path() + "/Haus.qv3/Haus_VM.qv3") << "x";
  const std::string real = dir.path() + "/Haus.qv3/Haus_VM.qv3";
  EXPECT_EQ(FindPathIgnoringCase(real), real);
  EXPECT_EQ(FindPathIgnoringCase(dir.path() + "/HAUS.QV3/haus_vm.QV3"), real);
  EXPECT_EQ(FindPathIgnoringCase(dir.path() + "/haus.qv3/Haus_EZ.qv3"),
            std::nullopt);
  EXPECT_EQ(FindPathIgnoringCase(""), std::nullopt);
}

}  // namespace
}  // namespace qv::ds
