// ProjectDatabase is a test helper: a new project database (holding only the
// version table) in a temporary folder, with a CQvConnection open on it, as
// the database container would hand it out. The helper owns the folder, the
// file and its connection.
#ifndef QVGLOBAL_TESTING_PROJECT_DATABASE_H_
#define QVGLOBAL_TESTING_PROJECT_DATABASE_H_

#include <memory>
#include <string>

#include "data/cqv_connection.h"
#include "datasource/db_connection.h"
#include "testing/temp_dir.h"

namespace qv::testing {

class ProjectDatabase {
 public:
  ProjectDatabase();

  const std::string& path() const { return path_; }
  CQvConnection& connection() { return *connection_; }
  const std::shared_ptr<CQvConnection>& shared_connection() const {
    return connection_;
  }
  ds::DbConnection& db() { return *connection_->m_conConnection; }

  // Adds the logical tables "gebaeude" (key Gebaeude; data Bezeichnung) and
  // "raum" (keys Gebaeude, Raum; data Flaeche, Bezeichnung), version 1, not
  // related.
  void AddBuildingAndRoom();

  // A record set of its own on `table`, outside the connection's cache, so
  // that what it shows comes from the file. Raises when the table does not
  // open.
  std::shared_ptr<ds::QvRecordset> OpenRecordset(const std::string& table);

  // A further CQvConnection open on the same file.
  std::shared_ptr<CQvConnection> OpenAnother() const;
  // Ends the connection and opens a new one on the file.
  void Reopen();

 private:
  TempDir dir_;
  std::string path_;
  std::shared_ptr<CQvConnection> connection_;
};

}  // namespace qv::testing

#endif  // QVGLOBAL_TESTING_PROJECT_DATABASE_H_
