// The qv tool: a command line onto the library. Subcommands register
// themselves (see command_registry.h); this file only assembles them, parses
// the command line and turns a qv::Error into exit status 1. Anything else
// that escapes a command (a file-system failure, a bad allocation) ends the
// tool with a message and exit status 2 rather than an abort.
#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>

#include "com/error.h"
#include "qv/command_registry.h"
#include "qv/tool_text.h"

// The build may pass the project's version; this is the one place that
// states it otherwise.
#ifndef QVGLOBAL_VERSION
#define QVGLOBAL_VERSION "1.0.0"
#endif

namespace {

// Exit status of a command line the tool does not understand, and of an
// error the tool did not expect.
constexpr int kUsageError = 2;
constexpr int kUnexpectedError = 2;

int Run(int argc, char** argv) {
  CLI::App app("qv: tools and a guided tour of the qvglobal library", "qv");
  app.set_version_flag("--version", "qv " QVGLOBAL_VERSION);
  app.require_subcommand(1);
  for (const qv::tool::QvCommand& command : qv::tool::RegisteredCommands()) {
    command.add(app);
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    const int status = app.exit(e);
    return status == 0 ? 0 : kUsageError;
  } catch (const qv::Error& e) {
    std::cout.flush();
    // Descriptions quote names from files; line breaks are the message's own.
    std::cerr << qv::tool::EscapeControlsKeepLines(e.description()) << '\n';
    return 1;
  }
  return 0;
}

int ReportUnexpected(const char* what) {
  std::cout.flush();
  std::cerr << "qv: unexpected error: " << what << '\n';
  return kUnexpectedError;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const std::exception& e) {
    return ReportUnexpected(e.what());
  } catch (...) {
    return ReportUnexpected("unknown exception");
  }
}
