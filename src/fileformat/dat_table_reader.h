// Incremental reader of "VARIABLES" / "ZONE" column tables:
//
//   VARIABLES = "Thrust1" "Torque1" "Thrust2" "Torque2"
//   ZONE T="disks"
//   1.0 2.0 3.0 4.0
//
// Columns whose names end in a group number (1, 2, ... in order of first
// appearance, a group's columns side by side) feed the caller's groups; other
// columns are read and dropped. Every update parses only what was appended
// since the previous one; a line without its line feed yet is kept until the
// rest arrives.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "fileformat/growing_file.h"

namespace fileformat {

// Quantities of one group, each with its values in row order.
struct QuantityGroup {
  std::vector<std::string> names;
  std::vector<std::vector<double>> values;  // one list per name
};

class DatTableReader {
 public:
  enum class State { header = 0, zone = 1, rows = 2 };

  // Forgets everything read and starts again on `path` from its first byte.
  void reset(const std::string& path);

  // Reads what was appended to the file since the last update into `groups`.
  // A missing file is not an error: nothing happens until it appears. A
  // rewritten file empties `groups` and is read again from its start.
  Update update(std::vector<QuantityGroup>& groups);

  const std::vector<std::string>& columnNames() const { return columnNames_; }
  State state() const { return state_; }
  const GrowingFile& file() const { return file_; }

 private:
  struct Column {
    bool used = false;
    int group = 0;
    int slot = 0;
  };

  void processLine(std::string_view line, std::vector<QuantityGroup>& groups);
  void readHeader(std::string_view line, std::vector<QuantityGroup>& groups);
  void readRow(std::string_view line, std::vector<QuantityGroup>& groups);

  std::vector<std::string> columnNames_;
  std::vector<Column> columns_;
  GrowingFile file_;
  State state_ = State::header;
};

// The column names of a "VARIABLES = ..." line: quoted names or names
// separated by commas give one name each; unquoted names separated only by
// blanks form a single name. Prints a diagnosis and answers nothing for a
// line that is not such a header. Stops one name past kMaxColumns: a longer
// answer tells that the line names too many.
std::vector<std::string> parseVariablesHeader(std::string_view line);

}  // namespace fileformat
