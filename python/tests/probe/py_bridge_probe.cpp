#include "py_bridge_probe.h"

#include "com/class_factory.h"
#include "com/dispatch.h"
#include "com/error.h"

namespace qvpy {

qv::Variant PyBridgeProbe::CallHost(std::shared_ptr<qv::Object> host,
                                    const std::string& name, int32_t kind,
                                    qv::SafeArray& args) {
  if (!host) throw qv::Error::Runtime(qv::err::kObjectVariableNotSet);
  return host->Invoke(name, static_cast<qv::InvokeKind>(kind), args.items());
}

qv::ClassInfo PyBridgeProbe::BuildClassInfo() {
  return qv::ClassBuilder<PyBridgeProbe>("PyBridgeProbe")
      .Method("CallHost", &PyBridgeProbe::CallHost)
      .Build();
}

void RegisterBridgeProbe() {
  qv::RegisterClass(
      "PyBridge.Probe",
      [] { return qv::ObjectPtr(std::make_shared<PyBridgeProbe>()); },
      PyBridgeProbe::StaticClassInfo());
}

}  // namespace qvpy
