// One file of the case as the solver writes it: rewritten from its start
// when a run begins, then appended to. An append may hold back the end of
// its last line, as a solver's buffered output reaches the disk in pieces;
// what was held back is written before anything else.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace solver_simulator {

enum class LineEnd {
  whole,        // every line reaches the disk with its line feed
  cutLastLine,  // the second half of the last line is held back
};

class SolverOutputFile {
 public:
  explicit SolverOutputFile(std::filesystem::path path) : path_(std::move(path)) {}

  // Empties the file and writes `text`; forgets what was held back.
  void rewrite(std::string_view text);
  // Writes what was held back, then `text` (which ends with a line feed),
  // or all of it but the second half of its last line.
  void append(std::string_view text, LineEnd end);
  // Writes what was held back.
  void completeLine();

 private:
  void write(std::string_view text, bool fromStart) const;

  std::filesystem::path path_;
  std::string heldBack_;
};

}  // namespace solver_simulator
