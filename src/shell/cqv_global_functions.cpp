#include "shell/cqv_global_functions.h"

#include "com/class_factory.h"

namespace qv {

ClassInfo CQVGlobalFunctions::BuildClassInfo() {
  Builder builder("CQVGlobalFunctions");
  // Message members.
  AddMessageMembers(builder);

  // Record helpers.
  AddRecordHelpers(builder);

  // Display helpers.
  AddDisplayHelpers(builder);

  // Room ordering.
  AddRoomOrdering(builder);

  return builder.Build();
}

QV_REGISTER_CLASS(CQVGlobalFunctions);

}  // namespace qv
