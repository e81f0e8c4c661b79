// Test helper: runs a command-line program through the shell and captures
// its exit status, standard output and standard error, for tests that use a
// built tool as a user would.
//
//   const qv::testing::ToolRun run = qv::testing::RunTool(QVGLOBAL_QV_TOOL,
//                                                         "modules VM");
//   EXPECT_EQ(run.status, 0);
#ifndef QVGLOBAL_TESTING_RUN_TOOL_H_
#define QVGLOBAL_TESTING_RUN_TOOL_H_

#include <string>

namespace qv::testing {

struct ToolRun {
  int status = -1;  // exit status; -1 when the program did not exit normally
  std::string out;
  std::string err;
};

// Runs `'<program>' <args>`; `args` is shell text (quote paths yourself).
// `env` is put in front of the command (e.g. "TMPDIR=/x").
ToolRun RunTool(const std::string& program, const std::string& args,
                const std::string& env = "");

}  // namespace qv::testing

#endif  // QVGLOBAL_TESTING_RUN_TOOL_H_
