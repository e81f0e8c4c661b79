#include "messages/app_context.h"

#include <utility>

namespace qv {
namespace {

class NoApplication : public AppContext {
 public:
  QvLanguage_t_ Language() const override { return qvlNoLanguage; }
  std::string CurHelpFile() const override { return {}; }
  int32_t MainWindowHandle() const override { return 0; }
};

thread_local std::shared_ptr<AppContext> installed;

}  // namespace

std::shared_ptr<AppContext> AppContext::Current() {
  if (installed) return installed;
  static const std::shared_ptr<AppContext> fallback =
      std::make_shared<NoApplication>();
  return fallback;
}

void AppContext::Install(std::shared_ptr<AppContext> context) {
  installed = std::move(context);
}

}  // namespace qv
