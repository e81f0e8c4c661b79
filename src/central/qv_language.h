// QvLanguage_t_ names the user-interface language of the running
// application. The global object keeps the current one per thread; the
// message conversion and the properties formatter choose their decimal sign
// and unit texts by it. Plain values, no state.
#ifndef QVGLOBAL_CENTRAL_QV_LANGUAGE_H_
#define QVGLOBAL_CENTRAL_QV_LANGUAGE_H_

#include <cstdint>

namespace qv {

enum QvLanguage_t_ : int32_t {
  qvlNoLanguage = 0,
  qvlGerman = 1,
  qvlEnglish = 2,
};

}  // namespace qv

#endif  // QVGLOBAL_CENTRAL_QV_LANGUAGE_H_
