// One force or moment file "eff_<component>.dat". After the keyword blocks
// (the run's mode and, in eff_Fx.dat, the bodies), a columns block says what
// each column of the rows holds:
//
//   #QV_BEGIN
//   VARIABLES = T itnl Fx Fx Fx Fx
//   NAMES = hull hull:keel hull:bulb rudder
//   #QV_END
//   #COLUMNS T itnl hull hull:keel hull:bulb rudder
//   0.0 1 1520.5 210.2 95.0 12.1
//
// "VARIABLES" lists the columns: "T" and "itnl" and then the quantity of each
// value column. "NAMES" names, for each value column in order, the body
// ("hull") or sub-body ("hull:keel") whose value it holds. A file holds one
// group of values per body and sub-body, or several: the n-th column of the
// same body belongs to group n (from 0), and group n of the file at table
// position p stores its values at index p + n. Rows with a negative time are
// the converged values of a time step (unsteady runs).
#pragma once

#include <string>
#include <vector>

#include "fileformat/growing_file.h"
#include "marine/body_object.h"

namespace marine {

class ComponentFile {
 public:
  // `baseIndex` is the file's position in its table.
  ComponentFile(std::string path, Component component, int baseIndex)
      : lines_(std::move(path)), component_(component), baseIndex_(baseIndex) {}

  // Reads the header and maps the columns onto `bodies`. Prints "No file
  // <path>" when the file cannot be opened, and the missing-keyword messages
  // of a header without its columns block, when `report`; false then.
  bool readHeader(std::vector<BodyObject>& bodies, bool report = true);

  // Reads the rows appended since the last update into the bodies. The
  // reference file (eff_Fx.dat) also gives every body its row times and
  // iteration numbers. A file whose header could not be read yet (it did not
  // exist, or was still being written) is tried again. A rewritten file is a
  // new run: what the bodies hold no longer matches it.
  fileformat::Update update(std::vector<BodyObject>& bodies, bool reference);

  const fileformat::GrowingFile& file() const { return lines_; }
  const std::string& path() const { return lines_.path(); }
  // Whether the file's header has been read: the run writes this component.
  bool present() const { return headerDone_; }
  // Rows read since the header.
  std::size_t rowsRead() const { return rowsRead_; }

 private:
  // Where one value column goes: body, sub-body (-1 for the body itself) and
  // history index; body -1 for a column that is read and dropped.
  struct Target {
    int body = -1;
    int subBody = -1;
    int index = 0;
  };

  bool takeHeaderLine(std::string_view line);
  bool mapColumns(std::vector<BodyObject>& bodies);
  bool takeRow(std::string_view line, std::vector<BodyObject>& bodies, bool reference);

  fileformat::GrowingFile lines_;
  Component component_;
  int baseIndex_;
  int depth_ = 0;
  bool inColumnsBlock_ = false;
  bool headerDone_ = false;
  std::vector<std::string> variables_;
  std::vector<std::string> names_;
  bool sawVariables_ = false;
  bool sawNames_ = false;
  std::vector<Target> columns_;
  std::size_t rowsRead_ = 0;
  std::uint64_t bytesAhead_ = 0;
};

}  // namespace marine
