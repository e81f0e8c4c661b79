// Uses the installed library: finds its headers, links against it and calls
// into it, both through typed C++ and by ProgID and member name, as a module
// that loads the library does. A registration that the installed library
// dropped shows here as a class that cannot be created. Returns 0 when the
// results are right.
#include <cstdio>
#include <string>

#include "com/class_factory.h"
#include "com/error.h"
#include "com/object.h"
#include "com/variant.h"

namespace {

bool Expect(bool ok, const char* what, const std::string& got) {
  if (!ok) std::fprintf(stderr, "%s: got \"%s\"\n", what, got.c_str());
  return ok;
}

}  // namespace

int main() {
  bool ok = true;
  const qv::Error overflow = qv::Error::Runtime(6);
  ok &= Expect(overflow.description() == "Overflow", "Runtime(6)",
               overflow.description());
  const qv::Error object_error = qv::Error::Object1000("x");
  ok &= Expect(object_error.number() == -2147220504, "Object1000",
               std::to_string(object_error.number()));

  try {
    const qv::ObjectPtr defs = qv::CreateObject("qvglobal10.CQvModulDefs");
    const qv::Variant name =
        defs->Call("GetModulDescription", {qv::Variant(std::string("NO"))});
    ok &= Expect(name.ToString() == "Wärmebedarf",
                 "CQvModulDefs.GetModulDescription(\"NO\")", name.ToString());
  } catch (const qv::Error& e) {
    ok &= Expect(false, "qvglobal10.CQvModulDefs", e.description());
  }

  if (!ok) return 1;
  std::printf("qvglobal consumer: ok\n");
  return 0;
}
