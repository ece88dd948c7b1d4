#include "app/common_commands.h"

#include <cstdio>
#include <filesystem>
#include <string>

#include "app/qv_environment_variables.h"
#include "script/arg_stream.h"
#include "script/result_stream.h"
#include "script/tk_session.h"

namespace {

constexpr std::size_t kFolderCapacity = 10000;

// Whether a file can be created beside `name`: a scratch file named after it
// is opened for writing, then closed and removed.
bool canWriteBeside(const std::string& name) {
  const std::string scratch = name + "_qv______________tmpname";
  std::FILE* file = std::fopen(scratch.c_str(), "w");
  if (file == nullptr) return false;
  std::fclose(file);
  std::error_code ignored;
  std::filesystem::remove(scratch, ignored);
  return true;
}

}  // namespace

void checkCurrentDirectory(ArgStream& arguments, ResultStream& result) {
  std::string folder;
  arguments.extractText(folder, kFolderCapacity);
  if (arguments.fail() || arguments.eof() || !canWriteBeside(folder + "/tmptest")) {
    result << app::QVEnvironmentVariables::current().TMP_DIR;
    return;
  }
  result << folder;
}

void registerCommonCommands() {
  for (const CommandRow& row : kCommonCommands) registerCommand(row.name, row.handler);
}
