// The user quantities of a computation, from "user_data.csv" in its folder:
// a first line of tab-separated titles ("Heave force [N]"), then one line of
// numbers per record. Lines are read as the file grows; each is stored once.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "fileformat/growing_file.h"

namespace marine {

struct ExtraQuantity {
  std::string name;
  std::string unit;
  int currentIteration = 0;    // the position the scripts last chose
  std::vector<double> values;  // one per data line
};

// A title's name and unit: "Heave force [N]" gives "Heave force" and "N".
// The character before "[" is dropped as the blank that separates them.
std::pair<std::string, std::string> splitTitle(std::string_view title);

// The first `count` numbers of a data line; a line with fewer prints
// "Warning! Unfinished line '<line>. Expected <count> values in the line."
// and is padded with zeros.
std::vector<double> readDataLine(std::string_view line, std::size_t count);

class ExtraQuantities {
 public:
  // Starts reading the folder's "user_data.csv" from its top.
  void reset(const std::string& folder);
  // Reads the lines added since the last update. A file that was rewritten
  // is read again from its top; the scripts' current positions stay.
  fileformat::Update update();

  const fileformat::GrowingFile& file() const { return file_; }

  std::vector<ExtraQuantity>& quantities() { return quantities_; }
  const std::vector<ExtraQuantity>& quantities() const { return quantities_; }

 private:
  bool take(std::string_view line);

  fileformat::GrowingFile file_;
  bool headerRead_ = false;
  std::vector<ExtraQuantity> quantities_;
};

}  // namespace marine
