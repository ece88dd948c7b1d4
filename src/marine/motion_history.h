// The motion of a body, from its file "Mvt_<body>.dat":
//
//   #COLUMNS T = X Y Z PHI THETA PSI
//   0.00 0.0 0.0 -0.10 0.0 0.010 0.0
//   0.05 0.1 0.0 -0.11 0.0 0.012 0.0
//
// One row per line: the time, then one value per motion column. Rows are
// read as they are appended; a rewritten file is read again from its top.
#pragma once

#include <string>
#include <vector>

#include "fileformat/growing_file.h"

namespace marine {

class MotionHistory {
 public:
  // Starts reading `path`: finds its "#COLUMNS" line. Without one, prints
  // "#COLUMNS line is not found in <path>" and the body has no motion
  // columns (the line is looked for again on later updates).
  void open(const std::string& path);

  // Reads the rows appended since the last update. Prints "Bad File Format"
  // for a row that ends early and "File End is reached" when the end of the
  // file is reached.
  fileformat::Update update();

  bool isOpen() const { return !file_.path().empty(); }
  const fileformat::GrowingFile& file() const { return file_; }
  const std::vector<std::string>& columnNames() const { return columnNames_; }
  const std::vector<double>& times() const { return times_; }
  const std::vector<double>& values(std::size_t column) const { return values_[column]; }
  std::size_t rowCount() const { return times_.size(); }

 private:
  void forget();
  // True once the "#COLUMNS" line was read.
  bool findColumns(bool report);
  bool takeRow(std::string_view line);

  fileformat::GrowingFile file_;
  bool columnsFound_ = false;
  std::vector<std::string> columnNames_;
  std::vector<double> times_;
  std::vector<std::vector<double>> values_;
};

}  // namespace marine
