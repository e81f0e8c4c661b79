// CQVGlobalFunctions is the suite's public helper class: stateless functions
// every module needs on messages, record sets, the display and rooms. Each
// group of members is implemented in its own source file
// (cqv_global_functions_<group>.cpp) and adds itself to the class's
// dispatch table in the interface order: messages, record helpers, display
// helpers, room ordering.
//
// Ownership: the object holds no state of its own beyond caches noted at
// their members; everything it works on is handed to it.
// Threads: an object is used on the thread that created it.
#ifndef QVGLOBAL_SHELL_CQV_GLOBAL_FUNCTIONS_H_
#define QVGLOBAL_SHELL_CQV_GLOBAL_FUNCTIONS_H_

#include "com/dispatch.h"
#include "com/object.h"

namespace qv {

class CQVGlobalFunctions : public Dispatchable<CQVGlobalFunctions> {
 public:
  // Message members.

  // End of message members.

  // Record helpers.

  // End of record helpers.

  // Display helpers.

  // End of display helpers.

  // Room ordering.

  // End of room ordering.

  static ClassInfo BuildClassInfo();

 private:
  using Builder = ClassBuilder<CQVGlobalFunctions>;
};

}  // namespace qv

#endif  // QVGLOBAL_SHELL_CQV_GLOBAL_FUNCTIONS_H_
