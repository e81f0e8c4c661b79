#include "shell/cqv_global_functions.h"

#include "com/class_factory.h"

namespace qv {

ClassInfo CQVGlobalFunctions::BuildClassInfo() {
  Builder builder("CQVGlobalFunctions");
  // Message members.

  // Record helpers.

  // Display helpers.

  // Room ordering.
  AddRoomOrdering(builder);

  return builder.Build();
}

QV_REGISTER_CLASS(CQVGlobalFunctions);

}  // namespace qv
