// Turns failures of the SQLite engine into the adapter's qv::Error (numbers
// in db_error.h), with texts that name the table and column concerned where
// the engine tells them. Internal to src/datasource/.
#ifndef QVGLOBAL_DATASOURCE_INTERNAL_ENGINE_ERROR_H_
#define QVGLOBAL_DATASOURCE_INTERNAL_ENGINE_ERROR_H_

#include <string>
#include <string_view>

#include "com/error.h"

namespace qv::ds {

// Call inside a catch block: rethrows a qv::Error unchanged and any other
// exception as a qv::Error with `source`; `path` is the database file.
[[noreturn]] void RethrowAsDbError(std::string_view source,
                                   std::string_view path);

// The error for an engine result code (extended) and message.
Error DbErrorFromEngine(int extended_code, std::string_view message,
                        std::string_view source, std::string_view path);

// Names of CHECK constraints that guard column values; the engine reports
// a broken constraint by its name, which thus is the error text.
std::string TextTooLongText(std::string_view table, std::string_view column,
                            int size);
std::string SmallIntRangeText(std::string_view table, std::string_view column);

}  // namespace qv::ds

#endif  // QVGLOBAL_DATASOURCE_INTERNAL_ENGINE_ERROR_H_
