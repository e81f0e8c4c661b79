#include "messages/internal/err_list_grid_sink.h"

#include "com/error.h"
#include "com/text.h"
#include "messages/cqv_err_list.h"

namespace qv::internal {
namespace {

void RequireArgs(Args args, size_t count) {
  if (args.size() != count) throw Error::Runtime(err::kWrongNumberOfArguments);
}

}  // namespace

Variant ErrListGridSink::Invoke(std::string_view name, InvokeKind, Args args) {
  if (text::EqualsText(name, "OnDClicked")) {
    RequireArgs(args, 2);
    if (list_) list_->OnDClicked(args[0].ToLong());
  } else if (text::EqualsText(name, "OnRowChange")) {
    RequireArgs(args, 2);
    if (list_) list_->OnRowChange(args[1].ToLong());
  } else if (text::EqualsText(name, "OnHelp")) {
    RequireArgs(args, 3);
    if (list_) {
      list_->OnHelp();
      args[2] = Variant(true);
    }
  } else {
    throw Error::Runtime(err::kObjectDoesntSupport);
  }
  return Variant();
}

}  // namespace qv::internal
