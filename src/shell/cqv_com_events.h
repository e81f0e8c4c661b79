// CQvComEvents_t_ is the global object's event companion: the library calls
// FireOnActiveBarClickToCM when a toolbar click is to reach the host as a
// context-menu command, and every sink the host has advised receives the
// event OnActiveBarClickToCM(sToolname, sSendKeyStr), in the order of
// advising. With no sink the call does nothing; an error of a sink reaches
// the caller.
//
// Ownership: the per-thread state of the global objects owns the one
// companion of a thread (CQvGlobals::QvComEvents); the companion holds its
// sinks until they are unadvised.
// Threads: an object is used on the thread that created it.
#ifndef QVGLOBAL_SHELL_CQV_COM_EVENTS_H_
#define QVGLOBAL_SHELL_CQV_COM_EVENTS_H_

#include <string>

#include "com/event_source.h"
#include "com/object.h"

namespace qv {

class CQvComEvents_t_ : public Dispatchable<CQvComEvents_t_> {
 public:
  void FireOnActiveBarClickToCM(const std::string& sToolname,
                                const std::string& sSendKeyStr);

  EventSource* events() override { return &events_; }

  static ClassInfo BuildClassInfo();

 private:
  EventSource events_;
};

}  // namespace qv

#endif  // QVGLOBAL_SHELL_CQV_COM_EVENTS_H_
