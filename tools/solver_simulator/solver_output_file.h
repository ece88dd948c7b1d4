// One file of the case as the solver writes it: rewritten from its start
// when a run begins, then appended to. An append may hold back the end of
// its last line, as a solver's buffered output reaches the disk in pieces;
// what was held back is written before anything else.
//
// The writes may go to a copy in memory instead, to work out what an earlier
// process wrote to the file (see keepInMemory and catchUp).
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

  // From now on the writes go to a copy in memory; the file is left alone.
  void keepInMemory();
  // Writes to the file again, after giving it what it lacks of the copy in
  // memory (the end of a line that was left half-written). Throws
  // std::runtime_error when the file does not begin with that copy.
  void catchUp();

 private:
  void write(std::string_view text, bool fromStart);

  std::filesystem::path path_;
  std::string heldBack_;
  bool inMemory_ = false;
  std::string memory_;
};

}  // namespace solver_simulator
