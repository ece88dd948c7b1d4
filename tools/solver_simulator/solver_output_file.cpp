#include "solver_simulator/solver_output_file.h"

#include <fstream>
#include <stdexcept>

namespace solver_simulator {

void SolverOutputFile::write(std::string_view text, bool fromStart) const {
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

}  // namespace solver_simulator
