#include "solver_simulator/case_headers.h"

#include "solver_simulator/text_row.h"

namespace solver_simulator {
namespace {

std::string modeBlock(const CaseSetup& setup) {
  return std::string("#QV_BEGIN\nCALCUL\nMODE ") + (setup.unsteady() ? "UNSTEADY" : "STEADY") +
         "\n#QV_END\n";
}

}  // namespace

std::string residualHeader(const CaseSetup& setup) {
  TextRow columns;
  columns.word("#COLUMNS").word("itnl").word("cpums");
  if (setup.unsteady()) columns.word("t");
  for (const std::string_view name : kResidualNames) columns.word(name);
  return "#CREATED " + setup.stamp.text() + "\n" + modeBlock(setup) + columns.line();
}

std::string bodyDescription(const CaseSetup& setup) {
  std::string text;
  for (const BodySetup& body : setup.bodies) {
    text += "#QV_BEGIN\nBODY\nNAME " + body.name + "\n";
    if (body.gravityCentre) {
      const auto& [x, y, z] = *body.gravityCentre;
      text += TextRow().word("GRAVITY_CENTER").general(x, 9).general(y, 9).general(z, 9).line();
    }
    for (const std::string& subBody : body.subBodies) {
      text += "#QV_BEGIN\nSUBBODY\nNAME " + subBody + "\n#QV_END\n";
    }
    text += "#QV_END\n";
  }
  return text;
}

std::string loadFileHeader(const CaseSetup& setup, const LoadFile& file, bool runBlocks) {
  TextRow variables;
  TextRow names;
  TextRow columns;
  variables.word("VARIABLES").word("=").word("T").word("itnl");
  names.word("NAMES").word("=");
  columns.word("#COLUMNS").word("T").word("itnl");
  for (const LoadColumn& column : loadColumns(setup)) {
    variables.word(file.quantity);
    names.word(column.name);
    columns.word(column.name);
  }
  const std::string blocks = runBlocks ? modeBlock(setup) + bodyDescription(setup) : std::string();
  return blocks + "#QV_BEGIN\n" + variables.line() + names.line() + "#QV_END\n" + columns.line();
}

std::string motionHeader() {
  TextRow columns;
  columns.word("#COLUMNS").word("T").word("=");
  for (const std::string_view name : kMotionColumns) columns.word(name);
  return columns.line();
}

std::string diskHeader(const CaseSetup& setup) {
  TextRow variables;
  variables.word("VARIABLES").word("=").word("\"T\"");
  for (int disk = 1; disk <= setup.actuatorDisks; ++disk) {
    for (const std::string_view quantity : kDiskQuantities) {
      std::string name(1, '"');
      name.append(quantity).append(std::to_string(disk)).push_back('"');
      variables.word(name);
    }
  }
  return variables.line() + "ZONE T=\"actuator disks\"\n";
}

std::string userDataHeader(const CaseSetup& setup) {
  TextRow titles('\t');
  titles.word("Time [s]");
  for (const UserQuantity& quantity : setup.userQuantities) {
    titles.word(quantity.unit.empty() ? quantity.name : quantity.name + " [" + quantity.unit + "]");
  }
  return titles.line();
}

}  // namespace solver_simulator
