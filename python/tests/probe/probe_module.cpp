// The `qvglobal_probe` Python module, built for the bridge's tests only:
// importing it registers the test class "PyBridge.Probe" with the library's
// class factory, so that `qvglobal.CreateObject("PyBridge.Probe")` works.
// The product module `qvglobal` knows nothing of it.
#include <pybind11/pybind11.h>

#include "py_bridge_probe.h"

PYBIND11_MODULE(qvglobal_probe, m) {
  m.doc() = "Test probe of the qvglobal bridge (registers PyBridge.Probe).";
  qvpy::RegisterBridgeProbe();
}
