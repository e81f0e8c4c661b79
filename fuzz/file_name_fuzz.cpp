// The naming rules of project folders and module files.
#include <string>

#include "fuzz_input.h"
#include "modules/cpr_func.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string path(qv::fuzz::AsText(data, size));
  const qv::CPRFunc_t_ rules;
  rules.IsQvFile(path);
  rules.IsPathProjectFolder(path);
  rules.PathToProjName(path);
  rules.ProjNameToPath(path, path);
  qv::fuzz::ExpectOnlyErrors([&] {
    const std::string modul = rules.FileNameToModul(path);
    const std::string name = rules.FileNameToModulName(path);
    // A module file name made from the parts names the same module again.
    const std::string file = rules.ModulToFileName(name, modul);
    qv::fuzz::Require(rules.FileNameToModul(file) == modul,
                      "module code lost in a round trip");
  });
  return 0;
}
