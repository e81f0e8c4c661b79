#include "testing/run_tool.h"

#include <stdio.h>
#include <sys/wait.h>

#include <fstream>
#include <iterator>
#include <sstream>

#include "testing/temp_dir.h"

namespace qv::testing {

const char* SourceDir() { return QVGLOBAL_SOURCE_DIR_PATH; }
const char* QvToolPath() { return QVGLOBAL_QV_TOOL_PATH; }

ToolRun RunTool(const std::string& program, const std::string& args,
                const std::string& env) {
  TempDir scratch;
  const std::string err_file = scratch.File("stderr");
  const std::string command =
      env + " '" + program + "' " + args + " 2>'" + err_file + "'";
  ToolRun run;
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return run;
  char buffer[4096];
  size_t n;
  while ((n = fread(buffer, 1, sizeof buffer, pipe)) > 0) {
    run.out.append(buffer, n);
  }
  const int wait_status = pclose(pipe);
  run.status = WIFEXITED(wait_status) ? WEXITSTATUS(wait_status) : -1;
  std::ifstream err(err_file);
  run.err.assign(std::istreambuf_iterator<char>(err), {});
  return run;
}

void PrintTo(const ToolRun& run, std::ostream* os) {
  *os << "status " << run.status << ", out \"" << run.out << "\", err \""
      << run.err << "\"";
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

}  // namespace qv::testing
