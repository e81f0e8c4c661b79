// Closing step of the demonstration: a Python example to paste, showing the
// automation bridge (every class by ProgID, every member by name).
#include "qv/command_registry.h"

namespace qv::tool {
namespace {

void ShowPythonExample(DemoContext& ctx) {
  ctx.out << "  The same classes from Python (paste in the repository root):\n"
          << "PYTHONPATH=build/python /usr/bin/python3 -c \"import qvglobal\n"
          << "defs = qvglobal.CreateObject('qvglobal10.CQvModulDefs')\n"
          << "print(defs.GetModulDescription('VM'), '-', "
             "defs.GetQvSpecDesc('VM'))\"\n";
}

[[maybe_unused]] const bool kRegistered =
    RegisterDemoStep(1000, "Python", ShowPythonExample);

}  // namespace
}  // namespace qv::tool
