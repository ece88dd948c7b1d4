// Bodies, the force and moment files that feed them, and every lookup with its complaint.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "console_capture.h"
#include "marine/body_object.h"
#include "marine/component_file.h"
#include "marine/header_lines.h"
#include "scratch_folder.h"

namespace {

using marine::BodyObject;
using marine::Component;
using marine::ComponentFile;
using marine::ComponentHistories;
using Doubles = std::vector<double>;
constexpr Component kF = Component::force;
constexpr Component kM = Component::moment;

marine::HeaderLines linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return marine::HeaderLines(lines);
}

// Bodies read from their blocks, each the lines after its "BODY".
std::vector<BodyObject> bodiesOf(const std::vector<std::string>& blocks, bool unsteady) {
  std::vector<BodyObject> bodies(blocks.size());
  for (std::size_t b = 0; b < blocks.size(); ++b) {
    marine::HeaderLines lines = linesOf(blocks[b]);
    bodies[b].readBlock(lines);
    bodies[b].setRunMode(unsteady);
  }
  return bodies;
}

const std::vector<std::string> kHullAndRudder = {
    "NAME hull\n#QV_BEGIN\nSUBBODY\nNAME keel\n#QV_END\n#QV_BEGIN\nSUBBODY\nNAME bulb\n#QV_END\n"
    "#QV_END",
    "NAME rudder\n#QV_END"};
const std::vector<std::string> kHullRudder = {"NAME hull\n#QV_END", "NAME rudder\n#QV_END"};

// Every history the owner holds, one line per quantity that has values.
std::string held(const ComponentHistories& owner) {
  std::ostringstream text;
  for (const Component component : {kF, kM}) {
    for (int q = 0; q < 18; ++q) {
      const std::vector<double>* values = owner.history(component, q);
      if (values == nullptr || values->empty()) continue;
      text << (component == kF ? marine::kForceNames[q] : marine::kMomentNames[q]) << ':';
      for (const double value : *values) text << ' ' << value;
      text << '\n';
    }
  }
  return text.str();
}

// Whether the block ends, then the name, the sub-bodies and the gravity centre.
TEST(MarineBodyBlock, BlocksSubBodiesAndGravityCentre) {
  const std::pair<const char*, const char*> cases[] = {
      {"NAME main hull\n#QV_END", "1 main hull 0 0 0"},
      {"#QV_BEGIN\nSUBBODY\n#QV_END\n#QV_END", "1 undefined undefined 0 0 0"},
      {"NAME hull\n#QV_BEGIN\nSUBBODY\nNAME keel\n#QV_END\n#QV_BEGIN\nSUBBODY",
       "0 hull keel 0 0 0"},
      {"NAME hull\nGRAVITY_CENTER 1 2 3", "0 hull G 1 2 3"},
      {"#QV_BEGIN\nNAME x\n#QV_END\n#QV_END", "1 x 0 0 0"},
      {"GRAVITY_CENTER\t+1\t-2   3e1\n#QV_END", "1 undefined G 1 -2 30"},
      {"GRAVITY_CENTER 1.0 2.0 z\n#QV_END", "1 undefined 0 0 0"},
      {"GRAVITY_CENTER 1,2,3\n#QV_END", "1 undefined 0 0 0"},
      {"GRAVITY_CENTER\n#QV_END", "1 undefined 0 0 0"},
  };
  for (const auto& [text, read] : cases) {
    marine::HeaderLines lines = linesOf(text);
    BodyObject body;
    ConsoleCapture console;
    std::ostringstream shown;
    shown << body.readBlock(lines) << ' ' << body.name();
    for (std::size_t s = 0; s < body.subBodyCount(); ++s) shown << ' ' << body.subBody(s).name();
    if (body.hasGravityCentre()) shown << " G";
    for (const double x : body.gravityCentre()) shown << ' ' << x;
    EXPECT_EQ(shown.str() + console.text(), read) << text;
  }
}

// One lookup: "e" element by name, "c" converged value, "l" converged
// length, "i" converged iterations, "t" history length by name.
using Lookup = std::tuple<char, Component, const char*, int, long long>;

// What the lookups print, with "-" for a quiet one; each answers 0.
std::string asked(const ComponentHistories& owner, const std::vector<Lookup>& lookups) {
  std::string said;
  for (const auto& [call, component, name, quantity, step] : lookups) {
    ConsoleCapture console;
    const double value = call == 'e'   ? owner.element(component, name, step)
                         : call == 'c' ? owner.converged(component, quantity, step)
                         : call == 'l' ? owner.convergedLength(component, quantity)
                         : call == 'i' ? owner.convergedIterations(component, quantity)
                                       : owner.realTimesteps(component, name);
    EXPECT_EQ(value, 0.0) << call << ' ' << name << ' ' << quantity;
    said += console.text().empty() ? "-\n" : console.text();
  }
  return said;
}

TEST(MarineHistories, LookupMessagesOfEmptyHistories) {
  BodyObject b;
  b.setRunMode(true);
  const std::vector<Lookup> unsteady = {
      {'e', kM, "MzVDyn", 0, 2}, {'c', kF, "", 18, 0},  {'c', kF, "", 0, 0},
      {'c', kM, "", 17, 3},      {'l', kF, "", 18, 0},  {'l', kM, "", 18, 0},
      {'l', kF, "", 17, 0},      {'i', kF, "", 18, 0},  {'i', kF, "", 17, 0},
      {'t', kF, "Bogus", 0, 0},  {'t', kM, "Fx", 0, 0}, {'t', kF, "FxDyn", 0, 0},
  };
  EXPECT_EQ(asked(b, unsteady),
            "Error in BodyObject::getMoment! Curve 'MzVDyn' has only 0 elements while element #2 "
            "was requested.\n"
            "BodyObject::getForceConv wrong curve index 18\n"
            "BodyObject::getForceConv wrong iteration number 0 (n = 0)\n"
            "BodyObject::getMomentConv wrong iteration number 3 (n = 0)\n"
            "SubBodyObject::getForceConvLength wrong force index 18\n"
            "BodyObject::getMomentConvLength wrong moment index 18\n-\n"
            "BodyObject::nbIterForceConv (getter) wrong index 18\n-\n"
            "Error in BodyObject::realForcesTimesteps! Unknown curve name 'Bogus'.\n"
            "Error in BodyObject::realMomentsTimesteps! Unknown curve name 'Fx'.\n-\n");
  // A steady run has no converged series.
  b.setRunMode(false);
  EXPECT_EQ(
      asked(b,
            {{'c', kF, "", 1, 0}, {'l', kF, "", 1, 0}, {'l', kM, "", 13, 0}, {'i', kM, "", 5, 0}}),
      "BodyObject::getForceConv wrong converted curve index -1\n"
      "SubBodyObject::getForceConvLength wrong converted force index 1\n"
      "BodyObject::getMomentConvLength wrong converted moment index 13\n"
      "BodyObject::nbIterMomentConv (getter) wrong converted index 5\n");
  marine::SubBodyObject s;
  s.setConvergedSeries(true);
  EXPECT_EQ(asked(s, {{'l', kM, "", 18, 0}, {'t', kM, "x", 0, 0}}),
            "SubBodyObject::getMomentConvLength wrong moment index 18\n"
            "Error in SubBodyObject::realMomentsTimesteps! Unknown curve name 'x'.\n");
}

std::string columnsBlock(const std::string& variables, const std::string& names) {
  return "#QV_BEGIN\nVARIABLES = " + variables + "\nNAMES = " + names +
         "\n#QV_END\n#COLUMNS T itnl " + names + "\n";
}

using MarineComponentFile = ScratchFolder;

// "+INF" and "NaN" are stored as 1.0; converged rows feed the per-time-step
// quantity; the values before a gap are kept, the rows after it read whole.
TEST_F(MarineComponentFile, RowsFeedBodiesSubBodiesAndConvergedSeries) {
  write("eff_Fx.dat", "#QV_BEGIN\nCALCUL\n#QV_BEGIN\nBODY\nNAME hull\n#QV_END\n#QV_END\n" +
                          columnsBlock("T itnl Fx Fx Fx Fx", "hull hull:keel hull:bulb rudder") +
                          "0.00 1 1.5 2.5 3.5 4.5\n0.00 2 1.25 2.25\n0.0\nhello world\n" +
                          std::string("\x01\x02\xff\xfe\x00\x7f\x80", 7) +
                          "\n\t\t\n# note\n-0.05 2 1.0 2.0 3.0 4.0\n0.05 3 +INF 2.75 NaN 4.75\n"
                          "-0.1 3 1.125 2.125 3.125 4.125\n");
  std::vector<BodyObject> bodies = bodiesOf(kHullAndRudder, true);
  ComponentFile file(pathOf("eff_Fx.dat"), kF, 0);
  ConsoleCapture console;
  ASSERT_TRUE(file.readHeader(bodies));
  EXPECT_EQ(file.update(bodies, true), fileformat::Update::appended);
  const std::string wrong = "Wrong eff file format, cannot read force value\n";
  EXPECT_EQ(console.text(), wrong + wrong + wrong + wrong);
  const BodyObject& hull = bodies[0];
  EXPECT_EQ(held(hull) + held(hull.subBody(0)) + held(hull.subBody(1)) + held(bodies[1]),
            "Fx: 1.5 1.25 1\nFxDyn: 1 1.125\nFx: 2.5 2.25 2.75\nFxDyn: 2 2.125\n"
            "Fx: 3.5 1\nFxDyn: 3 3.125\nFx: 4.5 4.75\nFxDyn: 4 4.125\n");
  // The reference file gives every body the rows' times and iterations, a
  // damaged row's too when it has them.
  EXPECT_EQ(bodies[1].times(), (Doubles{0.0, 0.0, 0.0, 0.05}));
  EXPECT_EQ(bodies[1].iterations(), (std::vector<std::int32_t>{1, 2, 0, 3}));
  EXPECT_EQ(bodies[1].convergedTimes(), (Doubles{0.05, 0.1}));
  EXPECT_EQ(asked(hull, {{'c', kF, "", 1, 2}}),
            "BodyObject::getForceConv wrong iteration number 2 (n = 2)\n");
}

// Total, pressure and viscous parts of Fx together; a group past the last
// file, whose values are dropped.
TEST_F(MarineComponentFile, GroupsFeedConsecutiveHistoriesFromTheFilePosition) {
  write("eff_Fx.dat", columnsBlock("T itnl Fx FxP FxV Fx", "hull hull hull rudder") +
                          "0.0 1 1.5 0.5 1.0 9.5\n-0.5 1 1.25 0.25 1.0 9.25\n");
  write("eff_FzV.dat", columnsBlock("T itnl FzV FzV FzV", "hull hull rudder") +
                           "0.0 1 1.5 2.5 3.5\n-0.5 1 1.25 2.25 3.25\n");
  std::vector<BodyObject> bodies = bodiesOf(kHullRudder, true);
  ComponentFile fx(pathOf("eff_Fx.dat"), kF, 0);
  ComponentFile fzv(pathOf("eff_FzV.dat"), kF, 8);
  ConsoleCapture console;
  for (ComponentFile* file : {&fx, &fzv}) {
    ASSERT_TRUE(file->readHeader(bodies));
    file->update(bodies, false);
  }
  EXPECT_EQ(console.text(), "BodyObject::readForces wrong index\n");
  EXPECT_EQ(held(bodies[0]) + held(bodies[1]),
            "Fx: 1.5\nFxDyn: 1.25\nFxP: 0.5\nFxPDyn: 0.25\nFxV: 1\nFxVDyn: 1\nFzV: 1.5\n"
            "FzVDyn: 1.25\n"
            "Fx: 9.5\nFxDyn: 9.25\nFzV: 3.5\nFzVDyn: 3.25\n");
}

TEST_F(MarineComponentFile, HeadersAndTheirMessages) {
  const std::string unknown =
      columnsBlock("T itnl X X X X X", "ghost hull hull:fin rudder rudder:tab") +
      "0.0 1 9.5 1.5 8.5 4.5 7.5\n";
  const std::string noVariables = "*** Parameter : #QV_END VARIABLES is not found in file: @\n";
  const std::string noNames = "*** Parameter : NAMES in file: @ is not found\n";
  const struct {
    const char* file;
    std::string text;
    std::string read;  // '@' stands for the path
  } cases[] = {
      {"eff_Fx.dat", "#QV_BEGIN\nCALCUL\n#QV_END\n#COLUMNS T itnl hull\n0 1 2\n", noVariables},
      {"eff_Fx.dat", "VARIABLES = T itnl Fx\n#QV_BEGIN\nNAMES = hull\n", noVariables},
      {"eff_Fx.dat", "#QV_BEGIN\nVARIABLES = T itnl Fx\n#QV_END\n0 1 2\n", noNames},
      {"eff_Fx.dat",
       "#QV_BEGIN\nVARIABLES = T itnl Fx\n#QV_END\n#QV_BEGIN\nNAMES = hull\n#QV_END\n", noNames},
      {"eff_Fx.dat", columnsBlock("T itnl Fx Fx", "hull"), noNames},
      {"eff_Fy.dat", unknown,
       "read|Unknown body: ghost\nUnknown body: hull:fin\nUnknown body: rudder:tab\nFx: 1.5\nFx: "
       "4.5\n"},
      {"eff_Mx.dat", unknown,
       "read|Unknow body ghost\nUnknow body hull:fin\nUnknow body rudder:tab\nMx: 1.5\nMx: 4.5\n"},
  };
  for (const auto& c : cases) {
    if (!c.text.empty()) write(c.file, c.text);
    std::vector<BodyObject> bodies = bodiesOf(kHullRudder, false);
    ComponentFile file(pathOf(c.file), c.file[4] == 'F' ? kF : kM, 0);
    ConsoleCapture console;
    const std::string read = file.readHeader(bodies) ? "read|" : "";
    file.update(bodies, false);
    // Only the reference file gives the bodies their times.
    std::string expected = c.read;
    for (std::size_t at = expected.find('@'); at != std::string::npos; at = expected.find('@'))
      expected.replace(at, 1, pathOf(c.file));
    EXPECT_EQ(read + console.text() + held(bodies[0]) + held(bodies[1]) +
                  std::to_string(bodies[0].times().size()),
              expected + "0")
        << c.text;
  }
}

}  // namespace
