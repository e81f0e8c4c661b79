// PyBridgeProbe is a test probe of the Python bridge, not a class of the
// library: it lets the bridge's tests have a Python object called by C++
// code through qv::Object::Invoke, the way the library calls host objects
// (grids, toolbars, forms). The test module `qvglobal_probe` registers it
// under the ProgID "PyBridge.Probe" when imported.
//
//   probe.CallHost(host, name, kind, args)  invokes `name` on the host
//   object with the invocation kind (1 method, 2 get, 4 let, 8 set) and the
//   elements of the array `args`, all passed by reference: the array comes
//   back with what the host wrote into them. Returns the member's result.
#ifndef QVGLOBAL_PYTHON_TESTS_PROBE_PY_BRIDGE_PROBE_H_
#define QVGLOBAL_PYTHON_TESTS_PROBE_PY_BRIDGE_PROBE_H_

#include <cstdint>
#include <memory>
#include <string>

#include "com/object.h"
#include "com/safe_array.h"

namespace qvpy {

class PyBridgeProbe : public qv::Dispatchable<PyBridgeProbe> {
 public:
  qv::Variant CallHost(std::shared_ptr<qv::Object> host,
                       const std::string& name, int32_t kind,
                       qv::SafeArray& args);

  static qv::ClassInfo BuildClassInfo();
};

// Registers "PyBridge.Probe" with the class factory.
// Threads: the probe holds no state; calls run on the caller's thread.
void RegisterBridgeProbe();

}  // namespace qvpy

#endif  // QVGLOBAL_PYTHON_TESTS_PROBE_PY_BRIDGE_PROBE_H_
