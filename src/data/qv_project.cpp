#include "data/qv_project.h"

#include <set>

#include "com/error.h"
#include "com/safe_array.h"
#include "com/text.h"
#include "data/cqv_connection.h"
#include "datasource/db_connection.h"
#include "datasource/qv_recordset.h"
#include "modules/cpr_func.h"
#include "modules/cqv_modul_defs.h"
#include "platform/file_system.h"

namespace qv {
namespace {

using platform::FileSystem;

constexpr int32_t kTableVersion = 1;
const char* const kLevels[] = {"Gebaeude", "Stock", "Wohnung", "Raum"};

// Runs `f` on a connection of its own to `path`.
template <class F>
void WithConnection(const std::string& path, F&& f) {
  CQvDbContainer container;
  auto con = container.getQvProjectConnection(path);
  try {
    f(*con);
  } catch (...) {
    container.closeQvConnection(con);
    throw;
  }
  container.closeQvConnection(con);
}

SafeArray KeyColumns(int level) {
  SafeArray key;
  for (int i = 0; i <= level; ++i) {
    key.Append(Variant(kLevels[i]));
    key.Append(Variant(int32_t{202}));
    key.Append(Variant(int32_t{20}));
  }
  return key;
}

}  // namespace

void CreateModulDatabase(const std::string& path, QvDbCatalogType catalog) {
  ds::DbConnection::CreateDatabase(path);
  WithConnection(path, [catalog](CQvConnection& con) {
    con.addTable("Beschreibung", kTableVersion,
                 Variant(SafeArray{Variant("Nr"), Variant(int32_t{3})}),
                 Variant(SafeArray{Variant("Katalogtyp"), Variant(int32_t{3})}),
                 false);
    auto rs = con.getTable("Beschreibung");
    rs->setValue("Nr", Variant(int32_t{1}));
    rs->setValue("Katalogtyp", Variant(static_cast<int32_t>(catalog)));
    rs->insertRecord();
  });
}

std::vector<std::string> CreateQvProject(const std::string& dir,
                                         const std::string& name,
                                         const std::vector<std::string>& moduls,
                                         QvDbCatalogType catalog) {
  // An empty name would make a hidden folder ".qv3"; a separator or a dot
  // name would place the project somewhere else than in `dir`.
  if (text::Trim(name).empty()) {
    throw Error::Object1000("Der Projektname ist leer.");
  }
  if (name.find_first_of("/\\") != std::string::npos || name == "." ||
      name == "..") {
    throw Error::Object1000("Ungültiger Projektname: '" + name + "'");
  }
  CQvModulDefs defs;
  CPRFunc_t_ naming;
  std::set<std::string> seen;
  std::vector<std::string> files;
  const std::string folder = naming.ProjNameToPath(dir, name);
  for (const std::string& modul : moduls) {
    // Unknown codes fail with the module table's own text.
    const std::string code = defs.GetExtension(defs.StrToModul(modul));
    if (!seen.insert(code).second) {
      throw Error::Object1000("Modul '" + code + "' ist doppelt angegeben.");
    }
    files.push_back(
        FileSystem::BuildPath(folder, naming.ModulToFileName(name, code)));
  }
  FileSystem::Current()->CreateFolder(folder);
  for (const std::string& file : files) CreateModulDatabase(file, catalog);
  return files;
}

void AddRoomTables(CQvConnection& con) {
  const Variant data(SafeArray{Variant("OrderNum"), Variant(int32_t{3}),
                               Variant("Bezeichnung"), Variant(int32_t{202}),
                               Variant(int32_t{50})});
  for (int level = 0; level < 4; ++level) {
    con.addTable(kLevels[level], kTableVersion, Variant(KeyColumns(level)),
                 data, false);
    if (level > 0) con.setChild(kLevels[level - 1], kLevels[level]);
  }
}

}  // namespace qv
