#include "central/qv_path.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <utility>

namespace qv::central {
namespace {

namespace fs = std::filesystem;

class QvPathTest : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = fs::temp_directory_path() /
           ("qvpath_" + std::to_string(::getpid()) + "_" +
            ::testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::create_directories(dir_ / "Katalog");
  }
  void TearDown() override { fs::remove_all(dir_); }

  std::string Write(const std::string& content) {
    const fs::path file = dir_ / "enviroment.asc";
    std::ofstream(file, std::ios::binary) << content;
    return file.string();
  }

  fs::path dir_;
};

TEST_F(QvPathTest, StateAndCatalogFolderFromTheFile) {
  const std::string folder = (dir_ / "Katalog").string();
  QvPath path(Write("; suite settings\r\n\r\n  catalogpath =  " + folder +
                    "  \r\nOther = x\r\n"));
  EXPECT_EQ(path.GetState(), QvPath::kValid);
  EXPECT_EQ(path.GetCatalogPath(), folder);
  EXPECT_EQ(QvPath((dir_ / "none.asc").string()).GetState(), 1);
  EXPECT_EQ(QvPath(Write("# nothing here\nCatalog = /x\n")).GetState(), 1);
  EXPECT_EQ(QvPath(Write("CatalogPath =   \n")).GetState(), 1);
  QvPath gone(Write("CatalogPath = " + (dir_ / "gone").string() + "\n"));
  EXPECT_EQ(gone.GetState(), QvPath::kPathNotValid);
  EXPECT_EQ(gone.GetCatalogPath(), (dir_ / "gone").string());
  fs::create_directories(dir_ / "Kataloge M\xC3\xBCller");
  QvPath decoded(Write("CatalogPath = " + dir_.string() +
                       "/Kataloge M\xFCller\n"));  // ü in Windows-1252
  EXPECT_EQ(decoded.GetState(), QvPath::kValid);
  EXPECT_EQ(decoded.GetCatalogPath(),
            dir_.string() + "/Kataloge M\xC3\xBCller");
}

TEST_F(QvPathTest, FileIsFoundThroughEnvironmentThenCommonAppData) {
  ::setenv("QV_ENVIROMENT_ASC", "/etc/qv/enviroment.asc", 1);
  EXPECT_EQ(QvPath::DefaultFile(), "/etc/qv/enviroment.asc");
  ::unsetenv("QV_ENVIROMENT_ASC");
  ::setenv("QV_COMMON_APPDATA", dir_.c_str(), 1);
  EXPECT_EQ(QvPath::DefaultFile(),
            (dir_ / "qv-software" / "enviroment.asc").string());
  fs::create_directories(dir_ / "qv-software");
  std::ofstream(dir_ / "qv-software" / "enviroment.asc")
      << "CatalogPath=" << (dir_ / "Katalog").string() << "\n";
  EXPECT_EQ(QvPath().GetState(), QvPath::kValid);
  ::unsetenv("QV_COMMON_APPDATA");
}

TEST_F(QvPathTest, BasePathFromTheFileElseTheSuiteFolder) {
  ::setenv("QV_COMMON_APPDATA", dir_.c_str(), 1);
  const std::string suite = (dir_ / "qv-software").string();
  // {file content, base folder}; the base folder need not exist and does
  // not make the file valid or invalid.
  const std::pair<std::string, std::string> rows[] = {
      {"BasePath = /srv/qv base \n", "/srv/qv base"},
      {"basepath=/a\nBasePath = /b\n", "/b"},
      {"CatalogPath = /x\n", suite},
      {"BasePath =   \n", suite},
  };
  for (const auto& [content, base] : rows) {
    EXPECT_EQ(QvPath(Write(content)).GetBasePath(), base) << content;
  }
  EXPECT_EQ(QvPath((dir_ / "none.asc").string()).GetBasePath(), suite);
  EXPECT_EQ(QvPath(Write("BasePath = /b\n")).GetState(),
            QvPath::kEnviromentAscNotValid);
  ::unsetenv("QV_COMMON_APPDATA");
}

}  // namespace
}  // namespace qv::central
