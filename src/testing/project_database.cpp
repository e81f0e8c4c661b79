#include "testing/project_database.h"

#include "com/error.h"
#include "com/safe_array.h"
#include "datasource/qv_recordset.h"

namespace qv::testing {

ProjectDatabase::ProjectDatabase() : path_(dir_.File("Projekt_HL.qv3")) {
  ds::DbConnection::CreateDatabase(path_);
  connection_ = OpenAnother();
}

std::shared_ptr<ds::QvRecordset> ProjectDatabase::OpenRecordset(
    const std::string& table) {
  auto rs = std::make_shared<ds::QvRecordset>();
  if (!rs->openTable(connection_->m_conConnection, table)) {
    throw Error::Object1000("test fixture: cannot open table " + table);
  }
  return rs;
}

void ProjectDatabase::AddBuildingAndRoom() {
  connection_->addTable("Gebaeude", 1, Variant(SafeArray{"Gebaeude", 202, 20}),
                        Variant(SafeArray{"Bezeichnung", 202, 50}), false);
  connection_->addTable(
      "Raum", 1, Variant(SafeArray{"Gebaeude", 202, 20, "Raum", 202, 20}),
      Variant(SafeArray{"Flaeche", 5, "Bezeichnung", 202, 50}), false);
}

std::shared_ptr<CQvConnection> ProjectDatabase::OpenAnother() const {
  auto connection = std::make_shared<CQvConnection>();
  connection->m_conConnection->Open(
      ds::DbConnection::MakeConnectionString(path_));
  return connection;
}

void ProjectDatabase::Reopen() {
  connection_.reset();
  connection_ = OpenAnother();
}

}  // namespace qv::testing
