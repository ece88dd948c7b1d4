#include "watch/computation_start.h"

#include "fileformat/input_file.h"
#include "watch/messages.h"

namespace watch {
namespace {

struct FileLook {
  std::string path;
  std::optional<Mode> mode;
  bool readable = false;
};

FileLook look(const std::string& path, std::optional<Mode> forced) {
  FileLook found{path, forced, static_cast<bool>(fileformat::InputFile::open(path))};
  if (!found.mode && found.readable) found.mode = recogniseMode(path);
  return found;
}

std::string problemOf(const FileLook& file) {
  if (!file.readable) return file.path + " cannot be read";
  return file.path + " is neither a marine nor a turbomachinery residual file";
}

}  // namespace

StartedComputations startComputations(const WatchOptions& options) {
  std::vector<FileLook> files;
  bool anyReadable = false;
  for (const std::string& path : options.residualPaths) {
    files.push_back(look(path, options.mode));
    anyReadable = anyReadable || (files.back().readable && files.back().mode);
  }
  StartedComputations started;
  if (!anyReadable) {
    started.error = "no readable computation:";
    for (const FileLook& file : files) {
      started.error += (&file == &files.front() ? " " : "; ") + problemOf(file);
    }
    return started;
  }
  for (const FileLook& file : files) {
    if (!file.mode) {
      tell(problemOf(file) + " (give --marine or --turbo); it is not followed");
      continue;
    }
    if (!file.readable) {
      tell(file.path + " cannot be read yet; it is followed as a " +
           std::string(modeName(*file.mode)) + " computation");
    }
    started.computations.push_back(followComputation(file.path, *file.mode, options.formulas));
  }
  return started;
}

}  // namespace watch
