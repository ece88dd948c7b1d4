#include "watch/terminal_table.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#ifdef _WIN32
#include <io.h>
#include <stdio.h>
#else
#include <unistd.h>
#endif

#include "watch/number_text.h"

namespace watch {
namespace {

constexpr std::string_view kClearScreen = "\x1b[H\x1b[2J";
constexpr std::string_view kNone = "-";

using Row = std::array<std::string, 5>;

Row rowOf(const CurveReport& curve) {
  const convergence::Verdict& verdict = curve.verdict;
  const std::optional<double> last = curve.last();
  const bool judged = verdict.state != convergence::State::shortSeries;
  return {curve.name, std::to_string(curve.points.size()),
          last ? shortNumber(*last) : std::string(kNone),
          judged ? shortNumber(verdict.mean) + " ± " + shortNumber(verdict.halfWidth)
                 : std::string(kNone),
          std::string(convergence::stateName(verdict.state))};
}

// Display width: the characters, not the bytes, of UTF-8 text ("±").
std::size_t widthOf(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  }));
}

void writeRows(std::ostream& out, const std::vector<Row>& rows) {
  std::array<std::size_t, 5> widths{};
  for (const Row& row : rows) {
    for (std::size_t c = 0; c < row.size(); ++c) widths[c] = std::max(widths[c], widthOf(row[c]));
  }
  for (const Row& row : rows) {
    std::string line = " ";
    for (std::size_t c = 0; c < row.size(); ++c) {
      line += " " + row[c];
      if (c + 1 < row.size()) line.append(widths[c] - widthOf(row[c]) + 1, ' ');
    }
    out << line << "\n";
  }
}

std::string headingOf(const ComputationReport& computation) {
  std::string heading = computation.path + " (" + std::string(modeName(computation.mode));
  if (computation.stamp) heading += ", run of " + *computation.stamp;
  return heading + ", " + std::to_string(computation.rows) + " rows)";
}

}  // namespace

void TerminalTable::write(std::string_view time,
                          std::span<const ComputationReport* const> computations) {
  if (rewriteScreen_) {
    out_ << kClearScreen;
  } else if (written_) {
    out_ << "\n";
  }
  written_ = true;
  out_ << "monitor-watch " << time << "\n";
  for (const ComputationReport* computation : computations) {
    out_ << "\n" << headingOf(*computation) << "\n";
    std::vector<Row> rows = {{"curve", "points", "last", "mean ± half-width", "verdict"}};
    for (const CurveReport& curve : computation->curves) {
      if (curve.shown) rows.push_back(rowOf(curve));
    }
    writeRows(out_, rows);
  }
  out_ << std::flush;
}

bool standardOutputIsTerminal() {
#ifdef _WIN32
  return _isatty(_fileno(stdout)) != 0;
#else
  return ::isatty(STDOUT_FILENO) != 0;
#endif
}

}  // namespace watch
