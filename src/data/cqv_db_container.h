// CQvDbContainer is the single owner of the open databases of one running
// client: it keeps exactly one CQvConnection per database file (keyed by the
// file's device and inode, so that two spellings of one file share a
// connection and two files whose names differ in letter case do not; a path
// that does not exist as written is looked up without regard to case),
// counts its users through the connection's
// reference count, closes it when the last user gives it back, and compacts
// and empties database files. The global application object creates the
// one container; modules get connections from it and give them back with
// closeQvConnection.
// Threads: a container and the connections it hands out are used by one thread
// at a time (the global object owns one per thread). Only the process-wide
// count of open files (datasource/open_files.h) is shared, under its own lock,
// so a container refuses to compact a file that another container of the
// process holds open.
#ifndef QVGLOBAL_DATA_CQV_DB_CONTAINER_H_
#define QVGLOBAL_DATA_CQV_DB_CONTAINER_H_

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "com/dictionary.h"
#include "com/object.h"

namespace qv::ds {
class DbConnection;
}
namespace qv::central {
class QvPath;
}

namespace qv {

class CQvConnection;
class CPRFunc_t_;

enum QvDbCatalogType : int32_t {
  QvDbCatalogTypeGlobal = 0,  // in the suite-wide catalogue folder
  QvDbCatalogTypeLocal = 1,   // in the folder "Katalog" beside the project
};

enum QvDbError : int32_t {
  QvDbErrorEnviromentAscNotValid = 0,
  QvDbErrorPathInEnviromentAscNotValid = 1,
  QvDbErrorUnknownErrorInQvPath = 2,
  QvDbErrorUnknownConnection = 3,
  QvDbErrorConnectionAlreadyOpened = 4,
  QvDbErrorConnectionWithoutDataSource = 5,
  QvDbErrorUnknownQvDbCatalogType = 6,
  // Beyond the original enumeration:
  QvDbErrorUnknownFile = 7,      // openConnection could not open the file
  QvDbErrorConnectionInUse = 8,  // compaction of a database still open here
};

class CQvDbContainer : public Dispatchable<CQvDbContainer> {
 public:
  using Progress = std::function<void(uint64_t written, uint64_t total)>;

  CQvDbContainer();
  ~CQvDbContainer() override;

  // Opens `conConnection` (created when Nothing) on a database file of the
  // suite. Raises QvDbErrorUnknownFile "CQvDBContainer: unknown File (Path:
  // p)\r\n<reason>" when the file cannot be opened or holds no version table
  // ("not a project database (no table 'qvversions'): '<file>'"), and passes
  // on kBusy "database is locked: '<file>'" when another process holds the
  // file past the busy timeout.
  bool openConnection(std::shared_ptr<ds::DbConnection>& conConnection,
                      const std::string& sProjectPath);
  void closeConnection(std::shared_ptr<ds::DbConnection>& conConnection);
  std::shared_ptr<CQvConnection> getQvProjectConnection(
      const std::string& sModulPath);
  std::shared_ptr<CQvConnection> getQvCatalogConnection(
      const std::string& sModulPath, const std::string& sExtension,
      const std::string& sSubPath = "");
  void closeQvConnection(const std::shared_ptr<CQvConnection>& QvConnection);
  void compactQvProjectConnection(const std::string& sModulPath,
                                  const Progress& progress = nullptr);
  void compactQvCatalogConnection(const std::string& sModulPath,
                                  const std::string& sExtension,
                                  const std::string& sSubPath = "",
                                  const Progress& progress = nullptr);
  void clearClipboards();
  QvDbCatalogType getQvProjectCatalogType(const std::string& sModulPath);
  void ClearAllTables(const std::string& sDBPath);

  // The file of a module's catalogue (global or local).
  std::string getCatalogPath(const std::string& sModulPath,
                             const std::string& sExtension,
                             const std::string& sSubPath);
  // Number of distinct open databases.
  int32_t OpenCount() const { return connections_.Count(); }

  static std::string normalisePath(const std::string& path);
  // The connection list's key of the file at `path` ("device:inode"); ""
  // when there is no such file.
  static std::string fileKey(const std::string& path);
  static ClassInfo BuildClassInfo();

 private:
  std::string catalogFolder();
  void compact(const std::string& path, const std::string& method,
               const Progress& progress);
  CPRFunc_t_& prFunc();
  // The list key under which `con` is held, if it is.
  std::optional<Variant> keyOf(const CQvConnection& con) const;

  Dictionary connections_;  // file key (see fileKey) -> CQvConnection
  std::shared_ptr<CPRFunc_t_> pr_func_;
  std::unique_ptr<central::QvPath> qv_path_;
};

}  // namespace qv

#endif  // QVGLOBAL_DATA_CQV_DB_CONTAINER_H_
