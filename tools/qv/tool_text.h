// Text from a database or settings file on its way to the terminal: names
// and values are printed with control characters escaped, so that a crafted
// file cannot send escape sequences (colours, cursor moves, a changed window
// title) through `qv`'s output.
#ifndef QVGLOBAL_TOOLS_QV_TOOL_TEXT_H_
#define QVGLOBAL_TOOLS_QV_TOOL_TEXT_H_

#include <string>
#include <string_view>

namespace qv::tool {

// C0 controls and DEL as \n, \r, \t or \xHH; the C1 controls U+0080 to
// U+009F (which some terminals obey as well) as \u0080 ...; bytes that are
// not UTF-8 as \xHH. Everything else, backslashes included, as it is.
std::string EscapeControls(std::string_view text);

// The same, but line breaks ("\n", "\r\n") stay line breaks: for messages
// that span lines on purpose.
std::string EscapeControlsKeepLines(std::string_view text);

}  // namespace qv::tool

#endif  // QVGLOBAL_TOOLS_QV_TOOL_TEXT_H_
