#include "central/qv_path.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <utility>

#include "testing/scoped_env.h"
#include "testing/temp_dir.h"

namespace qv::central {
namespace {

namespace fs = std::filesystem;

class QvPathTest : public ::testing::Test {
 protected:
  void SetUp() override { fs::create_directories(dir_ / "Katalog"); }

  std::string Write(const std::string& content) {
    const fs::path file = dir_ / "enviroment.asc";
    std::ofstream(file, std::ios::binary) << content;
    return file.string();
  }

  ::qv::testing::TempDir temp_;
  const fs::path dir_ = temp_.path();
  ::qv::testing::ScopedEnv env_;
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
  env_.Set("QV_ENVIROMENT_ASC", "/etc/qv/enviroment.asc");
  EXPECT_EQ(QvPath::DefaultFile(), "/etc/qv/enviroment.asc");
  env_.Set("QV_ENVIROMENT_ASC", std::nullopt);
  env_.Set("QV_COMMON_APPDATA", dir_.string());
  EXPECT_EQ(QvPath::DefaultFile(),
            (dir_ / "qv-software" / "enviroment.asc").string());
  fs::create_directories(dir_ / "qv-software");
  std::ofstream(dir_ / "qv-software" / "enviroment.asc")
      << "CatalogPath=" << (dir_ / "Katalog").string() << "\n";
  EXPECT_EQ(QvPath().GetState(), QvPath::kValid);
}

TEST_F(QvPathTest, BasePathFromTheFileElseTheSuiteFolder) {
  env_.Set("QV_COMMON_APPDATA", dir_.string());
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
}

}  // namespace
}  // namespace qv::central
