#include "solver_simulator/solver_output_file.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace solver_simulator {

void SolverOutputFile::write(std::string_view text, bool fromStart) {
  if (inMemory_) {
    if (fromStart) memory_.clear();
    memory_ += text;
    return;
  }
  // Binary: line feeds only, on every system.
  std::ofstream file(path_, std::ios::binary | (fromStart ? std::ios::trunc : std::ios::app));
  file.write(text.data(), static_cast<std::streamsize>(text.size()));
  if (!file) throw std::runtime_error("cannot write " + path_.string());
}

void SolverOutputFile::rewrite(std::string_view text) {
  heldBack_.clear();
  write(text, true);
}

void SolverOutputFile::completeLine() {
  if (heldBack_.empty()) return;
  write(heldBack_, false);
  heldBack_.clear();
}

void SolverOutputFile::append(std::string_view text, LineEnd end) {
  std::string written = heldBack_ + std::string(text);
  heldBack_.clear();
  if (end == LineEnd::cutLastLine && written.size() > 1) {
    // The last line starts after the line feed before the final one (npos + 1
    // is 0: the text is a single line).
    const std::size_t lastLineStart = written.find_last_of('\n', written.size() - 2) + 1;
    const std::size_t cut = lastLineStart + (written.size() - 1 - lastLineStart) / 2;
    heldBack_ = written.substr(cut);
    written.resize(cut);
  }
  write(written, false);
}

void SolverOutputFile::keepInMemory() {
  inMemory_ = true;
  memory_.clear();
}

void SolverOutputFile::catchUp() {
  std::ifstream file(path_, std::ios::binary);
  const std::string onDisk{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (onDisk.size() > memory_.size() || memory_.compare(0, onDisk.size(), onDisk) != 0) {
    throw std::runtime_error(path_.string() + " does not hold the start of this run");
  }
  inMemory_ = false;
  if (onDisk.size() < memory_.size()) write(std::string_view(memory_).substr(onDisk.size()), false);
  memory_.clear();
}

}  // namespace solver_simulator
