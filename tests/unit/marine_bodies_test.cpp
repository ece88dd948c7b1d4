// Bodies and sub-bodies: their blocks, the force and moment files that feed
// their histories, and every lookup with its exact complaint.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
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
using marine::HeaderLines;
using Doubles = std::vector<double>;
constexpr Component kF = Component::force;
constexpr Component kM = Component::moment;

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

// Every "#QV_BEGIN" / "BODY" block of the text, as the loader reads them.
std::vector<BodyObject> bodiesOf(const std::string& text, bool unsteady) {
  HeaderLines lines(linesOf(text));
  std::vector<BodyObject> bodies;
  while (!lines.atEnd()) {
    const bool opens = lines.keyword() == "#QV_BEGIN";
    lines.advance();
    if (!opens || lines.keyword() != "BODY") continue;
    lines.advance();
    bodies.emplace_back().readBlock(lines);
  }
  for (BodyObject& body : bodies) body.setRunMode(unsteady);
  return bodies;
}

const std::string kHullAndRudder =
    "#QV_BEGIN\nBODY\nNAME hull\nGRAVITY_CENTER 61.2 0.0 -1.5\n"
    "#QV_BEGIN\nSUBBODY\nNAME keel\n#QV_END\n#QV_BEGIN\nSUBBODY\nNAME bulb\n#QV_END\n#QV_END\n"
    "#QV_BEGIN\nBODY\nNAME rudder\n#QV_END\n";
const std::string kHullRudder =
    "#QV_BEGIN\nBODY\nNAME hull\n#QV_END\n#QV_BEGIN\nBODY\nNAME rudder\n#QV_END\n";

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

TEST(MarineBodyBlock, BlocksSubBodiesAndGravityCentre) {
  const struct {
    const char* what;
    std::vector<std::string> lines;
    bool ends;
    std::string read;  // name, sub-bodies, gravity centre when taken
  } cases[] = {
      {"name with blanks", {"NAME main hull", "#QV_END"}, true, "main hull 0 0 0"},
      {"no names",
       {"#QV_BEGIN", "SUBBODY", "#QV_END", "#QV_END"},
       true,
       "undefined undefined 0 0 0"},
      {"sub-body never ends",
       {"NAME hull", "#QV_BEGIN", "SUBBODY", "NAME keel", "#QV_END", "#QV_BEGIN", "SUBBODY"},
       false,
       "hull keel 0 0 0"},
      {"body never ends", {"NAME hull", "GRAVITY_CENTER 1 2 3"}, false, "hull G 1 2 3"},
      {"other block inside", {"#QV_BEGIN", "NAME x", "#QV_END", "#QV_END"}, true, "x 0 0 0"},
      {"centre with signs and tabs",
       {"GRAVITY_CENTER\t+1\t-2   3e1", "#QV_END"},
       true,
       "undefined G 1 -2 30"},
      {"centre ending in a word", {"GRAVITY_CENTER 1.0 2.0 z", "#QV_END"}, true, "undefined 0 0 0"},
      {"centre with commas", {"GRAVITY_CENTER 1,2,3", "#QV_END"}, true, "undefined 0 0 0"},
      {"centre without numbers", {"GRAVITY_CENTER", "#QV_END"}, true, "undefined 0 0 0"},
  };
  for (const auto& c : cases) {
    HeaderLines lines(c.lines);
    BodyObject body;
    ConsoleCapture console;
    EXPECT_EQ(body.readBlock(lines), c.ends) << c.what;
    std::ostringstream read;
    read << body.name();
    for (std::size_t s = 0; s < body.subBodyCount(); ++s) read << ' ' << body.subBody(s).name();
    if (body.hasGravityCentre()) read << " G";
    for (const double x : body.gravityCentre()) read << ' ' << x;
    EXPECT_EQ(read.str(), c.read) << c.what;
    EXPECT_EQ(console.text(), "") << c.what;
  }
}

TEST(MarineBodyBlock, RowKeys) {
  BodyObject body;
  ConsoleCapture console;
  EXPECT_TRUE(body.addRowKey("T", 0.25));
  EXPECT_TRUE(body.addRowKey("itnl", 12));
  EXPECT_FALSE(body.addRowKey("t", 1.0));
  EXPECT_FALSE(body.addRowKey("", 1.0));
  EXPECT_EQ(
      console.text(),
      "Problem in iteration. Parametre unknown: t\nProblem in iteration. Parametre unknown: \n");
  EXPECT_EQ(body.times(), Doubles{0.25});
  EXPECT_EQ(body.iterations(), std::vector<std::int32_t>{12});
}

// One lookup: "e" element by name, "c" converged value, "l" converged
// length, "i" converged iterations, "t" history length by name.
struct Lookup {
  char call;
  Component component;
  const char* name;
  int quantity;
  long long step;
  const char* message;  // the whole console output
};

void expectLookups(const ComponentHistories& owner, const std::vector<Lookup>& lookups) {
  for (const Lookup& l : lookups) {
    ConsoleCapture console;
    const double value = l.call == 'e'   ? owner.element(l.component, l.name, l.step)
                         : l.call == 'c' ? owner.converged(l.component, l.quantity, l.step)
                         : l.call == 'l' ? owner.convergedLength(l.component, l.quantity)
                         : l.call == 'i' ? owner.convergedIterations(l.component, l.quantity)
                                         : owner.realTimesteps(l.component, l.name);
    EXPECT_EQ(value, 0.0) << l.message;
    EXPECT_EQ(console.text(), l.message) << l.call << ' ' << l.name << ' ' << l.quantity;
  }
}

TEST(MarineHistories, LookupMessagesOfEmptyHistories) {
  BodyObject b;
  b.setRunMode(true);
  EXPECT_EQ(b.convergedSeriesCount(kF), 9);
  expectLookups(
      b, {
             {'e', kF, "Fx", 0, 0,
              "Error in BodyObject::getForce! Curve 'Fx' has only 0 elements while element #0 was "
              "requested.\n"},
             {'e', kF, "Mx", 0, 0, "Error in BodyObject::getForce! Curve 'Mx' is not found.\n"},
             {'e', kM, "", 0, 0, "Error in BodyObject::getMoment! Curve '' is not found.\n"},
             {'e', kM, "MzVDyn", 0, 2,
              "Error in BodyObject::getMoment! Curve 'MzVDyn' has only 0 elements while element #2 "
              "was requested.\n"},
             {'c', kF, "", 18, 0, "BodyObject::getForceConv wrong curve index 18\n"},
             {'c', kF, "", 0, 0, "BodyObject::getForceConv wrong iteration number 0 (n = 0)\n"},
             {'c', kM, "", 17, 3, "BodyObject::getMomentConv wrong iteration number 3 (n = 0)\n"},
             {'l', kF, "", 18, 0, "SubBodyObject::getForceConvLength wrong force index 18\n"},
             {'l', kM, "", 18, 0, "BodyObject::getMomentConvLength wrong moment index 18\n"},
             {'l', kF, "", 17, 0, ""},
             {'i', kF, "", 18, 0, "BodyObject::nbIterForceConv (getter) wrong index 18\n"},
             {'i', kF, "", 17, 0, ""},
             {'t', kF, "Bogus", 0, 0,
              "Error in BodyObject::realForcesTimesteps! Unknown curve name 'Bogus'.\n"},
             {'t', kM, "Fx", 0, 0,
              "Error in BodyObject::realMomentsTimesteps! Unknown curve name 'Fx'.\n"},
             {'t', kF, "FxDyn", 0, 0, ""},
         });
  // A steady run has no converged series.
  b.setRunMode(false);
  EXPECT_EQ(b.convergedSeriesCount(kM), 0);
  expectLookups(
      b,
      {
          {'c', kF, "", 1, 0, "BodyObject::getForceConv wrong converted curve index -1\n"},
          {'l', kF, "", 1, 0, "SubBodyObject::getForceConvLength wrong converted force index 1\n"},
          {'l', kM, "", 13, 0, "BodyObject::getMomentConvLength wrong converted moment index 13\n"},
          {'i', kM, "", 5, 0, "BodyObject::nbIterMomentConv (getter) wrong converted index 5\n"},
      });
  marine::SubBodyObject s;
  s.setConvergedSeries(true);
  expectLookups(
      s, {
             {'l', kM, "", 18, 0, "SubBodyObject::getMomentConvLength wrong moment index 18\n"},
             {'t', kM, "x", 0, 0,
              "Error in SubBodyObject::realMomentsTimesteps! Unknown curve name 'x'.\n"},
         });
}

std::string columnsBlock(const std::string& variables, const std::string& names) {
  return "#QV_BEGIN\nVARIABLES = " + variables + "\nNAMES = " + names +
         "\n#QV_END\n#COLUMNS T itnl " + names + "\n";
}

using MarineComponentFile = ScratchFolder;

TEST_F(MarineComponentFile, UnsteadyRowsFeedBodiesSubBodiesAndConvergedSeries) {
  write("eff_Fx.dat", "#QV_BEGIN\nCALCUL\nMODE UNSTEADY\n#QV_END\n" + kHullAndRudder +
                          columnsBlock("T itnl Fx Fx Fx Fx", "hull hull:keel hull:bulb rudder") +
                          "0.00 1 1.5 2.5 3.5 4.5\n0.00 2 1.25 2.25 3.25 4.25\n"
                          "-0.05 2 1.0 2.0 3.0 4.0\n0.05 3 +INF 2.75 NaN 4.75\n"
                          "-0.1 3 1.125 2.125 3.125 4.125\n");
  std::vector<BodyObject> bodies = bodiesOf(kHullAndRudder, true);
  ComponentFile file(pathOf("eff_Fx.dat"), kF, 0);
  ConsoleCapture console;
  ASSERT_TRUE(file.readHeader(bodies));
  EXPECT_EQ(file.update(bodies, true), fileformat::Update::appended);
  EXPECT_EQ(console.text(), "");
  const BodyObject& hull = bodies[0];
  // "+INF" and "NaN" are stored as 1.0; converged rows feed the per-time-step quantity.
  EXPECT_EQ(held(hull), "Fx: 1.5 1.25 1\nFxDyn: 1 1.125\n");
  EXPECT_EQ(held(hull.subBody(0)), "Fx: 2.5 2.25 2.75\nFxDyn: 2 2.125\n");
  EXPECT_EQ(held(hull.subBody(1)), "Fx: 3.5 3.25 1\nFxDyn: 3 3.125\n");
  EXPECT_EQ(held(bodies[1]), "Fx: 4.5 4.25 4.75\nFxDyn: 4 4.125\n");
  EXPECT_EQ(hull.convergedIterations(kF, 0), 2);
  EXPECT_EQ(hull.convergedLength(kF, 0), 2);
  EXPECT_EQ(hull.converged(kF, 0, 1), 1.125);
  // The reference file gives every body the rows' times and iterations.
  EXPECT_EQ(bodies[1].times(), (Doubles{0.0, 0.0, 0.05}));
  EXPECT_EQ(bodies[1].iterations(), (std::vector<std::int32_t>{1, 2, 3}));
  EXPECT_EQ(bodies[1].convergedTimes(), (Doubles{0.05, 0.1}));
  expectLookups(
      hull, {{'e', kF, "Fx", 0, 3,
              "Error in BodyObject::getForce! Curve 'Fx' has only 3 elements while "
              "element #3 was requested.\n"},
             {'c', kF, "", 1, 2, "BodyObject::getForceConv wrong iteration number 2 (n = 2)\n"}});
}

TEST_F(MarineComponentFile, GroupsFeedConsecutiveHistoriesFromTheFilePosition) {
  // Total, pressure and viscous parts of Fx together; a moment file further
  // down its table; a group past the last file, whose values are dropped.
  write("eff_Fx.dat", columnsBlock("T itnl Fx FxP FxV Fx", "hull hull hull rudder") +
                          "0.0 1 1.5 0.5 1.0 9.5\n-0.5 1 1.25 0.25 1.0 9.25\n");
  write("eff_My.dat",
        columnsBlock("T itnl My MyP", "hull hull") + "0.0 1 3.5 2.5\n-0.5 1 3.25 2.25\n");
  write("eff_FzV.dat", columnsBlock("T itnl FzV FzV FzV", "hull hull rudder") +
                           "0.0 1 1.5 2.5 3.5\n-0.5 1 1.25 2.25 3.25\n");
  std::vector<BodyObject> bodies = bodiesOf(kHullRudder, true);
  ComponentFile fx(pathOf("eff_Fx.dat"), kF, 0);
  ComponentFile my(pathOf("eff_My.dat"), kM, 3);
  ComponentFile fzv(pathOf("eff_FzV.dat"), kF, 8);
  ConsoleCapture console;
  for (ComponentFile* file : {&fx, &my, &fzv}) {
    ASSERT_TRUE(file->readHeader(bodies));
    file->update(bodies, false);
  }
  EXPECT_EQ(console.text(), "BodyObject::readForces wrong index\n");
  EXPECT_EQ(held(bodies[0]),
            "Fx: 1.5\nFxDyn: 1.25\nFxP: 0.5\nFxPDyn: 0.25\nFxV: 1\nFxVDyn: 1\nFzV: 1.5\n"
            "FzVDyn: 1.25\nMy: 3.5\nMyDyn: 3.25\nMyP: 2.5\nMyPDyn: 2.25\n");
  EXPECT_EQ(held(bodies[1]), "Fx: 9.5\nFxDyn: 9.25\nFzV: 3.5\nFzVDyn: 3.25\n");
}

// The values before a gap are kept, the rows after it read whole; a
// converged row of a steady run is told for each column.
TEST_F(MarineComponentFile, RowsThatDoNotFit) {
  write("eff_Fx.dat",
        columnsBlock("T itnl A A A A", "hull hull:keel hull:bulb rudder") +
            "0.0 1 1.5 2.5 3.5 4.5\n0.0 2 1.25 2.25\n0.0\nhello world\n" +
            std::string("\x01\x02\xff\xfe\x00\x7f\x80", 7) +
            "\n\t\t\n# note\n-0.5 1 1.0 2.0 3.0 4.0\n0.0 3 1.125 2.125 3.125 4.125\n");
  std::vector<BodyObject> bodies = bodiesOf(kHullAndRudder, false);
  ComponentFile file(pathOf("eff_Fx.dat"), kF, 0);
  ConsoleCapture console;
  ASSERT_TRUE(file.readHeader(bodies));
  file.update(bodies, false);
  const std::string wrong = "Wrong eff file format, cannot read force value\n";
  EXPECT_EQ(console.text(),
            wrong + wrong + wrong + wrong +
                "BodyObject::readForces wrong index\nSubBodyObject::readForces wrong index\n"
                "SubBodyObject::readForces wrong index\nBodyObject::readForces wrong index\n");
  EXPECT_EQ(
      held(bodies[0]) + held(bodies[0].subBody(0)) + held(bodies[0].subBody(1)) + held(bodies[1]),
      "Fx: 1.5 1.25 1.125\nFx: 2.5 2.25 2.125\nFx: 3.5 3.125\nFx: 4.5 4.125\n");
}

TEST_F(MarineComponentFile, HeadersAndTheirMessages) {
  const std::string names = "ghost hull hull:fin rudder rudder:tab";
  const std::string unknown =
      columnsBlock("T itnl X X X X X", names) + "0.0 1 9.5 1.5 8.5 4.5 7.5\n";
  const std::string noVariables = "*** Parameter : #QV_END VARIABLES is not found in file: @\n";
  const std::string noNames = "*** Parameter : NAMES in file: @ is not found\n";
  const struct {
    const char* what;
    const char* file;
    std::string text;
    bool read;
    std::string console;  // '@' stands for the path
  } cases[] = {
      {"no columns block", "eff_Fx.dat",
       "#QV_BEGIN\nCALCUL\n#QV_END\n#COLUMNS T itnl hull\n0 1 2\n", false, noVariables},
      {"VARIABLES outside any block", "eff_Fx.dat",
       "VARIABLES = T itnl Fx\n#QV_BEGIN\nNAMES = hull\n", false, noVariables},
      {"no NAMES", "eff_Fx.dat", "#QV_BEGIN\nVARIABLES = T itnl Fx\n#QV_END\n0 1 2\n", false,
       noNames},
      {"NAMES in another block", "eff_Fx.dat",
       "#QV_BEGIN\nVARIABLES = T itnl Fx\n#QV_END\n#QV_BEGIN\nNAMES = hull\n#QV_END\n", false,
       noNames},
      {"fewer NAMES than values", "eff_Fx.dat", columnsBlock("T itnl Fx Fx", "hull"), false,
       noNames},
      {"no file", "eff_FyP.dat", "", false, "No file @\n"},
      {"unknown force bodies", "eff_Fy.dat", unknown, true,
       "Unknown body: ghost\nUnknown body: hull:fin\nUnknown body: rudder:tab\n"},
      {"unknown moment bodies", "eff_Mx.dat", unknown, true,
       "Unknow body ghost\nUnknow body hull:fin\nUnknow body rudder:tab\n"},
  };
  for (const auto& c : cases) {
    if (c.file != std::string("eff_FyP.dat")) write(c.file, c.text);
    std::vector<BodyObject> bodies = bodiesOf(kHullRudder, false);
    const Component component = c.file[4] == 'F' ? kF : kM;
    ComponentFile file(pathOf(c.file), component, 0);
    ConsoleCapture console;
    EXPECT_EQ(file.readHeader(bodies), c.read) << c.what;
    file.update(bodies, false);
    std::string expected = c.console;
    for (std::size_t at = expected.find('@'); at != std::string::npos; at = expected.find('@'))
      expected.replace(at, 1, pathOf(c.file));
    EXPECT_EQ(console.text(), expected) << c.what;
    if (!c.read) continue;
    EXPECT_TRUE(file.present());
    EXPECT_EQ(held(bodies[0]) + held(bodies[1]),
              component == kF ? "Fx: 1.5\nFx: 4.5\n" : "Mx: 1.5\nMx: 4.5\n");
    EXPECT_EQ(bodies[0].times(), Doubles{});  // not the reference file
  }
}

}  // namespace
