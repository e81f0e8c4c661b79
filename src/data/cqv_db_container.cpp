#include "data/cqv_db_container.h"

#include <filesystem>
#include <system_error>

#include "central/qv_path.h"
#include "com/class_factory.h"
#include "com/dispatch.h"
#include "com/error.h"
#include "com/text.h"
#include "data/cqv_connection.h"
#include "data/internal/db_password.h"
#include "datasource/db_catalog.h"
#include "datasource/db_connection.h"
#include "datasource/db_error.h"
#include "datasource/db_maintenance.h"
#include "datasource/open_files.h"
#include "datasource/qv_recordset.h"
#include "modules/cpr_func.h"
#include "platform/file_system.h"

namespace qv {
namespace {

using platform::FileSystem;

constexpr char kClass[] = "CQvDBContainer";

[[noreturn]] void Raise(QvDbError number, const std::string& method,
                        const std::string& text) {
  throw Error(number, std::string(kClass) + "." + method,
              std::string(kClass) + ": " + text);
}

std::string ConnectionString(const std::string& path) {
  return ds::DbConnection::MakeConnectionString(path) + QvPasswordSetting();
}

void RequireProjectDatabase(ds::DbConnection& con, const std::string& path) {
  // Every database of the suite carries the version table; any other SQLite
  // file (an empty file opens as an empty database) is not ours to change.
  bool ours = false;
  try {
    ours = ds::DbCatalog(con).HasTable("qvversions");
  } catch (const Error& e) {
    con.Close();
    if (e.number() == ds::dberr::kBusy) throw;
    Raise(QvDbErrorUnknownFile, "openConnection",
          "unknown File (Path: " + path + ")\r\n" + e.description());
  }
  if (!ours) {
    con.Close();
    Raise(QvDbErrorUnknownFile, "openConnection",
          "unknown File (Path: " + path +
              ")\r\nnot a project database (no table 'qvversions'): '" +
              con.Path() + "'");
  }
}

}  // namespace

CQvDbContainer::CQvDbContainer() = default;
CQvDbContainer::~CQvDbContainer() = default;

std::string CQvDbContainer::normalisePath(const std::string& path) {
  return text::LCase(text::Trim(path));
}

bool CQvDbContainer::openConnection(
    std::shared_ptr<ds::DbConnection>& conConnection,
    const std::string& sProjectPath) {
  if (!conConnection) conConnection = std::make_shared<ds::DbConnection>();
  if (conConnection->State() == ds::DbConnection::kStateOpen) {
    Raise(QvDbErrorConnectionAlreadyOpened, "openConnection",
          "connection already opened (Path: " + sProjectPath + ")");
  }
  try {
    conConnection->Open(ConnectionString(sProjectPath));
  } catch (const Error& e) {
    // A file held by another process past the busy timeout exists and is
    // fine: that error (it names the path) is passed on as it is.
    if (e.number() == ds::dberr::kBusy) throw;
    Raise(QvDbErrorUnknownFile, "openConnection",
          "unknown File (Path: " + sProjectPath + ")\r\n" + e.description());
  }
  RequireProjectDatabase(*conConnection, sProjectPath);
  return conConnection->State() == ds::DbConnection::kStateOpen;
}

void CQvDbContainer::closeConnection(
    std::shared_ptr<ds::DbConnection>& conConnection) {
  if (conConnection && conConnection->State() == ds::DbConnection::kStateOpen) {
    conConnection->Close();
  }
}

std::string CQvDbContainer::fileKey(const std::string& path) {
  const std::optional<ds::FileId> file = ds::FileId::Resolve(text::Trim(path));
  return file ? file->Key() : std::string();
}

std::shared_ptr<CQvConnection> CQvDbContainer::getQvProjectConnection(
    const std::string& sModulPath) {
  if (const Variant* open = connections_.Find(Variant(fileKey(sModulPath)))) {
    auto con = open->ToObjectAs<CQvConnection>();
    con->addRef();
    return con;
  }
  auto con = std::make_shared<CQvConnection>();
  if (!openConnection(con->m_conConnection, text::Trim(sModulPath))) {
    return nullptr;
  }
  connections_.Add(Variant(con->m_conConnection->File().Key()), Variant(con));
  con->addRef();
  return con;
}

std::shared_ptr<CQvConnection> CQvDbContainer::getQvCatalogConnection(
    const std::string& sModulPath, const std::string& sExtension,
    const std::string& sSubPath) {
  return getQvProjectConnection(
      getCatalogPath(sModulPath, sExtension, sSubPath));
}

void CQvDbContainer::closeQvConnection(
    const std::shared_ptr<CQvConnection>& QvConnection) {
  if (!QvConnection) throw Error::Runtime(err::kObjectVariableNotSet);
  const std::string path = QvConnection->Datasource();
  if (path.empty()) {
    Raise(QvDbErrorConnectionWithoutDataSource, "closeQvConnection",
          "no data source in CQvConnection found");
  }
  const std::optional<Variant> key = keyOf(*QvConnection);
  if (!key) {
    Raise(QvDbErrorUnknownConnection, "closeQvConnection",
          "unknown CQvConnection. Path :" + path);
  }
  if (QvConnection->release()) {
    connections_.Remove(*key);
    closeConnection(QvConnection->m_conConnection);
  }
}

std::optional<Variant> CQvDbContainer::keyOf(const CQvConnection& con) const {
  for (const auto& [key, item] : connections_.entries()) {
    if (item.ToObjectAs<CQvConnection>().get() == &con) return key;
  }
  return std::nullopt;
}

void CQvDbContainer::compact(const std::string& path, const std::string& method,
                             const Progress& progress) {
  // Resolve the file as it is written on disk (paths compare in any case).
  std::shared_ptr<ds::DbConnection> probe;
  openConnection(probe, text::Trim(path));
  const std::string file = probe->Path();
  const ds::FileId id = probe->File();
  closeConnection(probe);
  // Compaction rewrites the whole file: no connection of this process,
  // through this container or any other, may still have it open. Other
  // processes are kept safe by the engine's own locking.
  if (ds::OpenFiles::Count(id) > 0) {
    Raise(QvDbErrorConnectionInUse, method,
          "database in use, close its connections before compacting "
          "(Path: " +
              normalisePath(path) + ")");
  }
  // A temporary file left behind by an earlier way of compacting.
  std::error_code ec;
  std::filesystem::remove(file + ".qvTmp", ec);
  ds::DbCatalog::Compact(file, progress);
}

void CQvDbContainer::compactQvProjectConnection(const std::string& sModulPath,
                                                const Progress& progress) {
  compact(sModulPath, "compactQvProjectConnection", progress);
}

void CQvDbContainer::compactQvCatalogConnection(const std::string& sModulPath,
                                                const std::string& sExtension,
                                                const std::string& sSubPath,
                                                const Progress& progress) {
  compact(getCatalogPath(sModulPath, sExtension, sSubPath),
          "compactQvCatalogConnection", progress);
}

void CQvDbContainer::clearClipboards() {
  for (const auto& [key, item] : connections_.entries()) {
    item.ToObjectAs<CQvConnection>()->clearClipboards();
  }
}

QvDbCatalogType CQvDbContainer::getQvProjectCatalogType(
    const std::string& sModulPath) {
  auto con = getQvProjectConnection(sModulPath);
  Variant type;
  try {
    auto rs = con->getTable("Beschreibung");
    if (rs && !rs->isBlockEmpty()) type = rs->getValue("Katalogtyp");
  } catch (...) {
    closeQvConnection(con);
    throw;
  }
  closeQvConnection(con);
  // No record or an empty field: the global catalogue.
  if (type.IsEmpty() || type.IsNull() ||
      (type.IsString() && text::Trim(type.ToString()).empty())) {
    return QvDbCatalogTypeGlobal;
  }
  return static_cast<QvDbCatalogType>(type.ToLong());
}

std::string CQvDbContainer::catalogFolder() {
  if (!qv_path_) qv_path_ = std::make_unique<central::QvPath>();
  switch (qv_path_->GetState()) {
    case central::QvPath::kValid:
      return qv_path_->GetCatalogPath();
    case central::QvPath::kEnviromentAscNotValid:
      Raise(QvDbErrorEnviromentAscNotValid, "getQvCatalogConnection",
            "'enviroment.asc' not valid");
    case central::QvPath::kPathNotValid:
      Raise(QvDbErrorPathInEnviromentAscNotValid, "getQvCatalogConnection",
            "path in 'enviroment.asc' not valid");
    default:
      Raise(QvDbErrorUnknownErrorInQvPath, "getQvCatalogConnection",
            "unknown error in QvPath");
  }
}

std::string CQvDbContainer::getCatalogPath(const std::string& sModulPath,
                                           const std::string& sExtension,
                                           const std::string& sSubPath) {
  std::string folder;
  switch (getQvProjectCatalogType(sModulPath)) {
    case QvDbCatalogTypeGlobal:
      folder = catalogFolder();
      if (!sSubPath.empty()) folder = FileSystem::BuildPath(folder, sSubPath);
      break;
    case QvDbCatalogTypeLocal:
      folder = FileSystem::BuildPath(
          FileSystem::GetParentFolderName(sModulPath), "Katalog");
      break;
    default:
      Raise(QvDbErrorUnknownQvDbCatalogType, "getQvCatalogConnection",
            "unknown catalog type");
  }
  return FileSystem::BuildPath(folder,
                               prFunc().ModulToFileName("Katalog", sExtension));
}

void CQvDbContainer::ClearAllTables(const std::string& sDBPath) {
  std::shared_ptr<ds::DbConnection> con;
  openConnection(con, text::Trim(sDBPath));
  ds::DeleteAllRowsExcept(*con, "qvversions");
  closeConnection(con);
}

CPRFunc_t_& CQvDbContainer::prFunc() {
  if (!pr_func_) pr_func_ = std::make_shared<CPRFunc_t_>();
  return *pr_func_;
}

ClassInfo CQvDbContainer::BuildClassInfo() {
  using T = CQvDbContainer;
  return ClassBuilder<T>("CQvDbContainer")
      .Method("openConnection", &T::openConnection)
      .Method("closeConnection", &T::closeConnection)
      .Method("getQvProjectConnection", &T::getQvProjectConnection)
      .Method("getQvCatalogConnection", &T::getQvCatalogConnection,
              {Variant("")})
      .Method("closeQvConnection", &T::closeQvConnection)
      .Method("compactQvProjectConnection",
              [](T& c, const std::string& path) {
                c.compactQvProjectConnection(path);
              })
      .Method("compactQvCatalogConnection",
              [](T& c, const std::string& path, const std::string& ext,
                 const std::string& sub) {
                c.compactQvCatalogConnection(path, ext, sub);
              },
              {Variant("")})
      .Method("clearClipboards", &T::clearClipboards)
      .Method("getQvProjectCatalogType", &T::getQvProjectCatalogType)
      .Method("ClearAllTables", &T::ClearAllTables)
      .Build();
}

QV_REGISTER_CLASS(CQvDbContainer);

}  // namespace qv
