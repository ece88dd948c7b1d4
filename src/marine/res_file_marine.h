// The residual history of a marine computation (".res"):
//
//   #CREATED 07/03/2018 13:34:44
//   #QV_BEGIN
//   CALCUL
//   MODE STEADY
//   #QV_END
//   #COLUMNS itnl cpums ResU ResV ResW ResP
//   1 0.52 1.0e-1 2.0e-1 3.0e-1 4.0e-1
//
// One row per line: the iteration number, one real ("cpums") in a steady run
// or two ("cpums", "t") in an unsteady one, then the residuals in the order
// of the "#COLUMNS" line. The header is read once; every update reads only
// the rows appended since the last.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "fileformat/class_ids.h"
#include "fileformat/growing_file.h"
#include "fileformat/qv_file.h"
#include "marine/marine_names.h"

namespace marine {

// Position of each residual among a row's residual columns; -1 for a
// residual the file does not hold.
using ResidualColumnMap = std::array<int, kResidualNames.size()>;

// One row of the residual history, seen in place.
class IteResMarine {
 public:
  static constexpr std::uint16_t kClassId = classid::kIteResMarine;

  IteResMarine(std::int32_t iterationNumber, std::span<const double> values,
               const ResidualColumnMap& map)
      : iterationNumber_(iterationNumber), values_(values), map_(map) {}

  std::int32_t iterationNumber() const { return iterationNumber_; }
  std::size_t valueCount() const { return values_.size(); }
  // 0 outside the row.
  double valueAt(long long position) const;
  // A name outside the residual table answers for the first residual column;
  // a residual the file does not hold answers 0.
  double valueOf(std::string_view residual) const;

 private:
  std::int32_t iterationNumber_;
  std::span<const double> values_;
  const ResidualColumnMap& map_;
};

class ResFileMarine : public QVfile {
 public:
  enum class RunMode { steady = 0, unsteady = 1, unknown = 2 };

  explicit ResFileMarine(std::string path);

  // Reads the header. Prints "Residual file <path> is not found", "BAD FILE
  // FORMAT .res" or "*** Parameter : <column> in file: <path> is not found"
  // and answers false when it cannot.
  bool readHeader();

  // Reads the rows appended since the last update. A file found rewritten
  // (the rows held no longer match it) is forgotten, as by restart().
  fileformat::Update update();

  // Forgets every row and the header; the next read starts from the top.
  void restart();

  const fileformat::GrowingFile& file() const { return file_; }

  // Writes the header state and the records' iteration numbers to the file
  // itself (a save facility nothing reads back).
  void write() const;

  RunMode runMode() const { return runMode_; }
  const std::string& modeText() const { return modeText_; }
  int skipCount() const { return skipCount_; }
  const ResidualColumnMap& columnMap() const { return columnMap_; }
  std::size_t residualCount() const { return residualCount_; }

  std::size_t recordCount() const { return iterations_.size(); }
  IteResMarine record(std::size_t index) const;
  // Iteration number of the record before the last (0 with fewer than two).
  std::int32_t previousIterationNumber() const;

 private:
  // Takes one header line; false at the first line that is not part of it.
  bool takeHeaderLine(std::string_view line);
  bool takeRow(std::string_view line);

  fileformat::GrowingFile file_;
  bool headerRead_ = false;
  bool insideBlock_ = false;
  bool columnsValid_ = true;
  std::string modeText_;
  RunMode runMode_ = RunMode::unknown;
  int skipCount_ = 1;
  ResidualColumnMap columnMap_;
  std::size_t residualCount_ = 0;

  std::vector<std::int32_t> iterations_;
  std::vector<double> values_;  // residualCount_ per record
  std::uint64_t bytesAhead_ = 0;
};

}  // namespace marine
