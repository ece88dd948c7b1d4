// One loaded turbomachinery computation: its residual history and the
// script's bookmarks into it.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

#include "fileformat/class_ids.h"
#include "turbo/res_file.h"

namespace turbo {

// The script's bookmarks: a grid of 1000 x 10000 counters, one per pair of
// the script's own indices, all 0 until written. Only written cells are
// stored; a rewrite of the residual file clears them all.
class BookmarkGrid {
 public:
  static constexpr std::int64_t kRows = 1000;
  static constexpr std::int64_t kColumns = 10000;

  std::int32_t get(std::int64_t i, std::int64_t j) const;
  void set(std::int64_t i, std::int64_t j, std::int32_t value);
  void clear() { cells_.clear(); }

 private:
  std::unordered_map<std::int64_t, std::int32_t> cells_;  // key i * kColumns + j
};

class ProjectMonitor {
 public:
  static constexpr std::uint16_t kClassId = classid::kProjectMonitor;

  ProjectMonitor(std::string path, bool fromCommandLine)
      : resFile_(std::move(path)), fromCommandLine_(fromCommandLine) {}

  // The path of the residual file, exactly as loaded.
  const std::string& name() const { return resFile_.path(); }
  bool fromCommandLine() const { return fromCommandLine_; }
  ResFile& resFile() { return resFile_; }
  const ResFile& resFile() const { return resFile_; }
  BookmarkGrid& currentIter() { return currentIter_; }

  // Reads what the solver appended: 0 when the file cannot be read, else 1.
  // A file found rewritten is read again from its top and the bookmarks are
  // cleared.
  int update();

 private:
  ResFile resFile_;
  BookmarkGrid currentIter_;
  bool fromCommandLine_;
};

}  // namespace turbo
