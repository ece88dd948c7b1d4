// Bodies and sub-bodies: their blocks, the force and moment files that feed
// their histories, and every lookup with its exact complaint.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "console_capture.h"
#include "marine/body_object.h"
#include "marine/component_file.h"
#include "marine/header_lines.h"
#include "marine/marine_names.h"
#include "scratch_folder.h"

namespace {

using marine::BodyObject;
using marine::Component;
using marine::ComponentFile;
using marine::HeaderLines;
using marine::SubBodyObject;
using Doubles = std::vector<double>;

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
    BodyObject body;
    body.readBlock(lines);
    bodies.push_back(std::move(body));
  }
  for (BodyObject& body : bodies) body.setRunMode(unsteady);
  return bodies;
}

const std::string kHullAndRudder =
    "#QV_BEGIN\nBODY\nNAME hull\nGRAVITY_CENTER 61.2 0.0 -1.5\n"
    "#QV_BEGIN\nSUBBODY\nNAME keel\n#QV_END\n"
    "#QV_BEGIN\nSUBBODY\nNAME bulb\n#QV_END\n"
    "#QV_END\n"
    "#QV_BEGIN\nBODY\nNAME rudder\n#QV_END\n";

Doubles forcesOf(const marine::ComponentHistories& owner, const char* name) {
  Doubles values;
  for (int i = 0; i < owner.realTimesteps(marine::Component::force, name); ++i)
    values.push_back(owner.element(marine::Component::force, name, i));
  return values;
}

Doubles momentsOf(const marine::ComponentHistories& owner, const char* name) {
  Doubles values;
  for (int i = 0; i < owner.realTimesteps(marine::Component::moment, name); ++i)
    values.push_back(owner.element(marine::Component::moment, name, i));
  return values;
}

Doubles forceConvOf(const marine::ComponentHistories& owner, int quantity) {
  Doubles values;
  for (int i = 0; i < owner.convergedLength(marine::Component::force, quantity); ++i)
    values.push_back(owner.converged(marine::Component::force, quantity, i));
  return values;
}

// ---------------------------------------------------------------------------
// Body blocks

TEST(MarineBodyBlock, BodiesWithSubBodiesAndGravityCentre) {
  HeaderLines lines(linesOf(kHullAndRudder));
  lines.advance();
  lines.advance();
  BodyObject hull;
  ASSERT_TRUE(hull.readBlock(lines));
  // The reader stands at the next block.
  EXPECT_EQ(lines.current(), "#QV_BEGIN");
  EXPECT_EQ(hull.name(), "hull");
  ASSERT_TRUE(hull.hasGravityCentre());
  EXPECT_EQ(hull.gravityCentre(), (std::array<double, 3>{61.2, 0.0, -1.5}));
  ASSERT_EQ(hull.subBodyCount(), 2u);
  EXPECT_EQ(hull.subBody(0).name(), "keel");
  EXPECT_EQ(hull.subBody(1).name(), "bulb");

  lines.advance();
  lines.advance();
  BodyObject rudder;
  ASSERT_TRUE(rudder.readBlock(lines));
  EXPECT_TRUE(lines.atEnd());
  EXPECT_EQ(rudder.name(), "rudder");
  EXPECT_FALSE(rudder.hasGravityCentre());
  EXPECT_EQ(rudder.subBodyCount(), 0u);
}

TEST(MarineBodyBlock, GravityCentreNeedsAllThreeNumbers) {
  const struct {
    const char* line;
    bool taken;
    std::array<double, 3> centre;
  } cases[] = {
      {"GRAVITY_CENTER 61.2 0.0 -1.5", true, {61.2, 0.0, -1.5}},
      {"GRAVITY_CENTER\t+1\t-2   3e1", true, {1.0, -2.0, 30.0}},
      {"GRAVITY_CENTER 1.0 2.0", false, {}},
      {"GRAVITY_CENTER 1.0 2.0 z", false, {}},
      {"GRAVITY_CENTER x y z", false, {}},
      {"GRAVITY_CENTER", false, {}},
      {"GRAVITY_CENTER 1,2,3", false, {}},
  };
  for (const auto& c : cases) {
    HeaderLines lines({"NAME hull", c.line, "#QV_END"});
    BodyObject body;
    ConsoleCapture console;
    EXPECT_TRUE(body.readBlock(lines)) << c.line;
    EXPECT_EQ(console.text(), "") << c.line;
    EXPECT_EQ(body.hasGravityCentre(), c.taken) << c.line;
    EXPECT_EQ(body.gravityCentre(), c.centre) << c.line;
  }
}

TEST(MarineBodyBlock, UnfinishedBlocks) {
  {
    // A body and a sub-body without a name keep the default one.
    HeaderLines lines({"#QV_BEGIN", "SUBBODY", "#QV_END", "#QV_END"});
    BodyObject body;
    EXPECT_TRUE(body.readBlock(lines));
    EXPECT_EQ(body.name(), "undefined");
    ASSERT_EQ(body.subBodyCount(), 1u);
    EXPECT_EQ(body.subBody(0).name(), "undefined");
  }
  {
    // A sub-body block that never ends is dropped and stops the body.
    HeaderLines lines({"NAME hull", "#QV_BEGIN", "SUBBODY", "NAME keel", "#QV_END", "#QV_BEGIN",
                       "SUBBODY", "NAME bulb"});
    BodyObject body;
    EXPECT_FALSE(body.readBlock(lines));
    EXPECT_EQ(body.name(), "hull");
    ASSERT_EQ(body.subBodyCount(), 1u);
    EXPECT_EQ(body.subBody(0).name(), "keel");
  }
  {
    HeaderLines lines({"NAME hull", "GRAVITY_CENTER 1 2 3"});
    BodyObject body;
    EXPECT_FALSE(body.readBlock(lines));
    EXPECT_EQ(body.name(), "hull");
  }
  {
    HeaderLines lines({"NAME main hull", "#QV_END"});
    BodyObject body;
    EXPECT_TRUE(body.readBlock(lines));
    EXPECT_EQ(body.name(), "main hull");
  }
}

TEST(MarineBodyBlock, RowKeys) {
  BodyObject body;
  ConsoleCapture console;
  EXPECT_TRUE(body.addRowKey("T", 0.25));
  EXPECT_TRUE(body.addRowKey("itnl", 12));
  EXPECT_FALSE(body.addRowKey("t", 1.0));
  EXPECT_FALSE(body.addRowKey("ITNL", 1.0));
  EXPECT_FALSE(body.addRowKey("", 1.0));
  EXPECT_EQ(console.text(),
            "Problem in iteration. Parametre unknown: t\n"
            "Problem in iteration. Parametre unknown: ITNL\n"
            "Problem in iteration. Parametre unknown: \n");
  EXPECT_EQ(body.times(), Doubles{0.25});
  EXPECT_EQ(body.iterations(), std::vector<std::int32_t>{12});
}

// ---------------------------------------------------------------------------
// Lookups and their complaints

TEST(MarineNames, MomentTableHasThreeUnnamedSlots) {
  EXPECT_EQ(marine::kForceNames.size(), 18u);
  EXPECT_EQ(marine::kMomentNames.size(), 21u);
  EXPECT_EQ(marine::kForceCount, 18);
  EXPECT_EQ(marine::kMomentCount, 21);
  EXPECT_EQ(marine::kMomentNames[17], "MzVDyn");
  for (std::size_t slot = 18; slot < 21; ++slot) EXPECT_EQ(marine::kMomentNames[slot], "") << slot;
  // The unnamed slots are no quantity.
  EXPECT_FALSE(marine::indexIn(marine::kMomentNames, "").has_value());
  EXPECT_EQ(marine::indexIn(marine::kMomentNames, "MxPDyn"), 3);
  EXPECT_EQ(marine::indexIn(marine::kForceNames, "FzV"), 16);
}

struct Lookup {
  const char* what;
  std::function<double()> call;
  const char* message;  // the whole console output
};

void expectLookups(const std::vector<Lookup>& lookups) {
  for (const Lookup& lookup : lookups) {
    ConsoleCapture console;
    EXPECT_EQ(lookup.call(), 0.0) << lookup.what;
    EXPECT_EQ(console.text(), lookup.message) << lookup.what;
  }
}

TEST(MarineHistories, BodyLookupMessagesInAnUnsteadyRun) {
  BodyObject b;
  b.setRunMode(true);
  EXPECT_EQ(b.convergedSeriesCount(Component::force), 9);
  EXPECT_EQ(b.convergedSeriesCount(Component::moment), 9);
  expectLookups({
      {"getForce past the end", [&] { return b.element(marine::Component::force, "Fx", 0); },
       "Error in BodyObject::getForce! Curve 'Fx' has only 0 elements while element #0 was "
       "requested.\n"},
      {"getForce negative", [&] { return b.element(marine::Component::force, "FyV", -1); },
       "Error in BodyObject::getForce! Curve 'FyV' has only 0 elements while element #-1 was "
       "requested.\n"},
      {"getForce moment name", [&] { return b.element(marine::Component::force, "Mx", 0); },
       "Error in BodyObject::getForce! Curve 'Mx' is not found.\n"},
      {"getForce lower case", [&] { return b.element(marine::Component::force, "fx", 0); },
       "Error in BodyObject::getForce! Curve 'fx' is not found.\n"},
      {"getMoment empty slot name", [&] { return b.element(marine::Component::moment, "", 0); },
       "Error in BodyObject::getMoment! Curve '' is not found.\n"},
      {"getMoment past the end", [&] { return b.element(marine::Component::moment, "MzVDyn", 2); },
       "Error in BodyObject::getMoment! Curve 'MzVDyn' has only 0 elements while element #2 was "
       "requested.\n"},
      {"getForceConv 18", [&] { return b.converged(marine::Component::force, 18, 0); },
       "BodyObject::getForceConv wrong curve index 18\n"},
      {"getForceConv -1", [&] { return b.converged(marine::Component::force, -1, 0); },
       "BodyObject::getForceConv wrong curve index -1\n"},
      // A plain quantity shares the converged series of its file.
      {"getForceConv plain quantity", [&] { return b.converged(marine::Component::force, 0, 0); },
       "BodyObject::getForceConv wrong iteration number 0 (n = 0)\n"},
      {"getForceConv empty series", [&] { return b.converged(marine::Component::force, 1, 0); },
       "BodyObject::getForceConv wrong iteration number 0 (n = 0)\n"},
      {"getMomentConv 18", [&] { return b.converged(marine::Component::moment, 18, 0); },
       "BodyObject::getMomentConv wrong curve index 18\n"},
      {"getMomentConv 20", [&] { return b.converged(marine::Component::moment, 20, 0); },
       "BodyObject::getMomentConv wrong curve index 20\n"},
      {"getMomentConv step", [&] { return b.converged(marine::Component::moment, 17, 3); },
       "BodyObject::getMomentConv wrong iteration number 3 (n = 0)\n"},
      {"getForceConvLength 18", [&] { return b.convergedLength(marine::Component::force, 18); },
       "SubBodyObject::getForceConvLength wrong force index 18\n"},
      {"getForceConvLength plain", [&] { return b.convergedLength(marine::Component::force, 2); },
       ""},
      {"getMomentConvLength 18", [&] { return b.convergedLength(marine::Component::moment, 18); },
       "BodyObject::getMomentConvLength wrong moment index 18\n"},
      {"getMomentConvLength plain", [&] { return b.convergedLength(marine::Component::moment, 4); },
       ""},
      {"nbIterForceConv 18", [&] { return b.convergedIterations(marine::Component::force, 18); },
       "BodyObject::nbIterForceConv (getter) wrong index 18\n"},
      {"nbIterForceConv plain", [&] { return b.convergedIterations(marine::Component::force, 0); },
       ""},
      {"nbIterMomentConv -3", [&] { return b.convergedIterations(marine::Component::moment, -3); },
       "BodyObject::nbIterMomentConv (getter) wrong index -3\n"},
      {"nbIterMomentConv plain",
       [&] { return b.convergedIterations(marine::Component::moment, 6); }, ""},
      {"realForcesTimesteps", [&] { return b.realTimesteps(marine::Component::force, "Bogus"); },
       "Error in BodyObject::realForcesTimesteps! Unknown curve name 'Bogus'.\n"},
      {"realMomentsTimesteps force name",
       [&] { return b.realTimesteps(marine::Component::moment, "Fx"); },
       "Error in BodyObject::realMomentsTimesteps! Unknown curve name 'Fx'.\n"},
      // Lookups that are fine answer quietly.
      {"getForceConvLength Dyn", [&] { return b.convergedLength(marine::Component::force, 1); },
       ""},
      {"getMomentConvLength Dyn", [&] { return b.convergedLength(marine::Component::moment, 17); },
       ""},
      {"nbIterForceConv Dyn", [&] { return b.convergedIterations(marine::Component::force, 17); },
       ""},
      {"realForcesTimesteps Dyn",
       [&] { return b.realTimesteps(marine::Component::force, "FxDyn"); }, ""},
      {"realMomentsTimesteps", [&] { return b.realTimesteps(marine::Component::moment, "MyP"); },
       ""},
  });
}

TEST(MarineHistories, SteadyRunHasNoConvergedSeries) {
  BodyObject b;
  b.setRunMode(false);
  EXPECT_EQ(b.convergedSeriesCount(Component::force), 0);
  EXPECT_EQ(b.convergedSeriesCount(Component::moment), 0);
  expectLookups({
      {"getForceConv Dyn", [&] { return b.converged(marine::Component::force, 1, 0); },
       "BodyObject::getForceConv wrong converted curve index -1\n"},
      {"getMomentConv Dyn", [&] { return b.converged(marine::Component::moment, 3, 0); },
       "BodyObject::getMomentConv wrong converted curve index -1\n"},
      {"getForceConvLength Dyn", [&] { return b.convergedLength(marine::Component::force, 1); },
       "SubBodyObject::getForceConvLength wrong converted force index 1\n"},
      {"getMomentConvLength Dyn", [&] { return b.convergedLength(marine::Component::moment, 13); },
       "BodyObject::getMomentConvLength wrong converted moment index 13\n"},
      {"nbIterForceConv Dyn", [&] { return b.convergedIterations(marine::Component::force, 1); },
       "BodyObject::nbIterForceConv (getter) wrong converted index 1\n"},
      {"nbIterMomentConv Dyn", [&] { return b.convergedIterations(marine::Component::moment, 5); },
       "BodyObject::nbIterMomentConv (getter) wrong converted index 5\n"},
  });
}

TEST(MarineHistories, SubBodyLookupMessages) {
  SubBodyObject s;
  s.setConvergedSeries(true);
  expectLookups({
      {"getForce", [&] { return s.element(marine::Component::force, "Fy", 0); },
       "Error in SubBodyObject::getForce! Curve 'Fy' has only 0 elements while element #0 was "
       "requested.\n"},
      {"getMoment", [&] { return s.element(marine::Component::moment, "Fy", 0); },
       "Error in SubBodyObject::getMoment! Curve 'Fy' is not found.\n"},
      {"getForceConv", [&] { return s.converged(marine::Component::force, 2, 0); },
       "SubBodyObject::getForceConv wrong iteration number 0 (n = 0)\n"},
      {"getMomentConv", [&] { return s.converged(marine::Component::moment, 18, 0); },
       "SubBodyObject::getMomentConv wrong curve index 18\n"},
      {"getForceConvLength", [&] { return s.convergedLength(marine::Component::force, 18); },
       "SubBodyObject::getForceConvLength wrong force index 18\n"},
      {"getMomentConvLength", [&] { return s.convergedLength(marine::Component::moment, 18); },
       "SubBodyObject::getMomentConvLength wrong moment index 18\n"},
      {"getMomentConvLength plain", [&] { return s.convergedLength(marine::Component::moment, 0); },
       ""},
      {"nbIterForceConv", [&] { return s.convergedIterations(marine::Component::force, 4); }, ""},
      {"nbIterMomentConv", [&] { return s.convergedIterations(marine::Component::moment, 18); },
       "SubBodyObject::nbIterMomentConv (getter) wrong index 18\n"},
      {"realMomentsTimesteps", [&] { return s.realTimesteps(marine::Component::moment, "x"); },
       "Error in SubBodyObject::realMomentsTimesteps! Unknown curve name 'x'.\n"},
  });
}

// ---------------------------------------------------------------------------
// Force and moment files

class MarineComponentFile : public ScratchFolder {};

std::string columnsBlock(const std::string& variables, const std::string& names) {
  return "#QV_BEGIN\nVARIABLES = " + variables + "\nNAMES = " + names +
         "\n#QV_END\n#COLUMNS T itnl " + names + "\n";
}

const std::string kUnsteadyFxHeader =
    "#QV_BEGIN\nCALCUL\nMODE UNSTEADY\n#QV_END\n" + kHullAndRudder +
    columnsBlock("T itnl Fx Fx Fx Fx", "hull hull:keel hull:bulb rudder");

TEST_F(MarineComponentFile, BodyWithTwoSubBodiesTakesThreeValuesPerRow) {
  write("eff_Fx.dat", kUnsteadyFxHeader +
                          "0.00 1 1.5 2.5 3.5 4.5\n"
                          "0.00 2 1.25 2.25 3.25 4.25\n"
                          "-0.05 2 1.0 2.0 3.0 4.0\n"
                          "0.05 3 +INF 2.75 NaN 4.75\n"
                          "-0.1 3 1.125 2.125 3.125 4.125\n");
  std::vector<BodyObject> bodies = bodiesOf(kHullAndRudder, true);
  ComponentFile file(pathOf("eff_Fx.dat"), Component::force, 0);
  ConsoleCapture console;
  ASSERT_TRUE(file.readHeader(bodies));
  EXPECT_EQ(file.update(bodies, true), fileformat::Update::appended);
  EXPECT_EQ(console.text(), "");

  const BodyObject& hull = bodies[0];
  const BodyObject& rudder = bodies[1];
  // "+INF" and "NaN" are stored as 1.0.
  EXPECT_EQ(forcesOf(hull, "Fx"), (Doubles{1.5, 1.25, 1.0}));
  EXPECT_EQ(forcesOf(hull.subBody(0), "Fx"), (Doubles{2.5, 2.25, 2.75}));
  EXPECT_EQ(forcesOf(hull.subBody(1), "Fx"), (Doubles{3.5, 3.25, 1.0}));
  EXPECT_EQ(forcesOf(rudder, "Fx"), (Doubles{4.5, 4.25, 4.75}));
  // Converged rows feed the per-time-step quantity.
  EXPECT_EQ(forceConvOf(hull, 1), (Doubles{1.0, 1.125}));
  EXPECT_EQ(forceConvOf(hull.subBody(0), 1), (Doubles{2.0, 2.125}));
  EXPECT_EQ(forceConvOf(hull.subBody(1), 1), (Doubles{3.0, 3.125}));
  EXPECT_EQ(forceConvOf(rudder, 1), (Doubles{4.0, 4.125}));
  EXPECT_EQ(hull.element(marine::Component::force, "FxDyn", 1), 1.125);
  EXPECT_EQ(hull.convergedIterations(marine::Component::force, 1), 2);
  EXPECT_EQ(hull.convergedLength(marine::Component::force, 3), 0);
  // The reference file gives every body the rows' times and iterations.
  for (const BodyObject& body : bodies) {
    EXPECT_EQ(body.times(), (Doubles{0.0, 0.0, 0.05})) << body.name();
    EXPECT_EQ(body.iterations(), (std::vector<std::int32_t>{1, 2, 3})) << body.name();
    EXPECT_EQ(body.convergedTimes(), (Doubles{0.05, 0.1})) << body.name();
  }
  EXPECT_EQ(forcesOf(hull, "FxP"), Doubles{});

  // Past the end of what was read.
  expectLookups({
      {"getForce at the length", [&] { return hull.element(marine::Component::force, "Fx", 3); },
       "Error in BodyObject::getForce! Curve 'Fx' has only 3 elements while element #3 was "
       "requested.\n"},
      {"sub-body getForce",
       [&] { return hull.subBody(1).element(marine::Component::force, "Fx", 7); },
       "Error in SubBodyObject::getForce! Curve 'Fx' has only 3 elements while element #7 was "
       "requested.\n"},
      {"getForceConv at the length", [&] { return hull.converged(marine::Component::force, 1, 2); },
       "BodyObject::getForceConv wrong iteration number 2 (n = 2)\n"},
      {"sub-body getForceConv",
       [&] { return hull.subBody(0).converged(marine::Component::force, 1, -1); },
       "SubBodyObject::getForceConv wrong iteration number -1 (n = 2)\n"},
  });
}

TEST_F(MarineComponentFile, ConvergedRowsInASteadyRunAreReported) {
  write("eff_Fx.dat", "#QV_BEGIN\nCALCUL\nMODE STEADY\n#QV_END\n" +
                          columnsBlock("T itnl Fx Fx Fx", "hull hull:keel rudder") +
                          "0.0 1 1.5 2.5 4.5\n-0.05 1 1.0 2.0 4.0\n0.0 2 1.25 2.25 4.25\n");
  write("eff_Mz.dat", columnsBlock("T itnl Mz", "hull") + "0.0 1 7.5\n-1.0 1 7.0\n");
  std::vector<BodyObject> bodies = bodiesOf(
      "#QV_BEGIN\nBODY\nNAME hull\n#QV_BEGIN\nSUBBODY\nNAME keel\n#QV_END\n#QV_END\n"
      "#QV_BEGIN\nBODY\nNAME rudder\n#QV_END\n",
      false);
  ComponentFile forces(pathOf("eff_Fx.dat"), Component::force, 0);
  ComponentFile moments(pathOf("eff_Mz.dat"), Component::moment, 6);
  ConsoleCapture console;
  ASSERT_TRUE(forces.readHeader(bodies));
  ASSERT_TRUE(moments.readHeader(bodies));
  forces.update(bodies, true);
  moments.update(bodies, false);
  EXPECT_EQ(console.text(),
            "BodyObject::readForces wrong index\n"
            "SubBodyObject::readForces wrong index\n"
            "BodyObject::readForces wrong index\n"
            "BodyObject::readMoments wrong index\n");
  // The plain rows around the converged one are all kept.
  EXPECT_EQ(forcesOf(bodies[0], "Fx"), (Doubles{1.5, 1.25}));
  EXPECT_EQ(forcesOf(bodies[0].subBody(0), "Fx"), (Doubles{2.5, 2.25}));
  EXPECT_EQ(forcesOf(bodies[1], "Fx"), (Doubles{4.5, 4.25}));
  EXPECT_EQ(momentsOf(bodies[0], "Mz"), Doubles{7.5});
  EXPECT_EQ(bodies[0].times(), (Doubles{0.0, 0.0}));
}

TEST_F(MarineComponentFile, GroupsFeedConsecutiveHistories) {
  // Total, pressure and viscous parts of Fx together in eff_Fx.dat.
  write("eff_Fx.dat", columnsBlock("T itnl Fx FxP FxV Fx", "hull hull hull rudder") +
                          "0.0 1 1.5 0.5 1.0 9.5\n-0.5 1 1.25 0.25 1.0 9.25\n");
  // A moment file further down its table: its groups start at its position.
  write("eff_My.dat",
        columnsBlock("T itnl My MyP", "hull hull") + "0.0 1 3.5 2.5\n-0.5 1 3.25 2.25\n");
  std::vector<BodyObject> bodies = bodiesOf(
      "#QV_BEGIN\nBODY\nNAME hull\n#QV_END\n#QV_BEGIN\nBODY\nNAME rudder\n#QV_END\n", true);
  ComponentFile fx(pathOf("eff_Fx.dat"), Component::force, 0);
  ComponentFile my(pathOf("eff_My.dat"), Component::moment, 3);
  ConsoleCapture console;
  ASSERT_TRUE(fx.readHeader(bodies));
  ASSERT_TRUE(my.readHeader(bodies));
  fx.update(bodies, true);
  my.update(bodies, false);
  EXPECT_EQ(console.text(), "");
  const BodyObject& hull = bodies[0];
  EXPECT_EQ(forcesOf(hull, "Fx"), Doubles{1.5});
  EXPECT_EQ(forcesOf(hull, "FxP"), Doubles{0.5});
  EXPECT_EQ(forcesOf(hull, "FxV"), Doubles{1.0});
  EXPECT_EQ(forcesOf(bodies[1], "Fx"), Doubles{9.5});
  EXPECT_EQ(forcesOf(bodies[1], "FxP"), Doubles{});
  EXPECT_EQ(hull.converged(marine::Component::force, 1, 0), 1.25);
  EXPECT_EQ(hull.converged(marine::Component::force, 3, 0), 0.25);
  EXPECT_EQ(hull.converged(marine::Component::force, 5, 0), 1.0);
  EXPECT_EQ(bodies[1].converged(marine::Component::force, 1, 0), 9.25);
  EXPECT_EQ(momentsOf(hull, "My"), Doubles{3.5});
  EXPECT_EQ(momentsOf(hull, "MyP"), Doubles{2.5});
  EXPECT_EQ(hull.converged(marine::Component::moment, 7, 0), 3.25);
  EXPECT_EQ(hull.converged(marine::Component::moment, 9, 0), 2.25);
  EXPECT_EQ(hull.element(marine::Component::moment, "MyDyn", 0), 3.25);
  EXPECT_EQ(momentsOf(hull, "Mx"), Doubles{});
}

TEST_F(MarineComponentFile, GroupBeyondTheLastFileKeepsTheOtherColumns) {
  write("eff_FzV.dat", columnsBlock("T itnl FzV FzV FzV", "hull hull rudder") +
                           "0.0 1 1.5 2.5 3.5\n-0.5 1 1.25 2.25 3.25\n");
  std::vector<BodyObject> bodies = bodiesOf(
      "#QV_BEGIN\nBODY\nNAME hull\n#QV_END\n#QV_BEGIN\nBODY\nNAME rudder\n#QV_END\n", true);
  ComponentFile file(pathOf("eff_FzV.dat"), Component::force, 8);
  ConsoleCapture console;
  ASSERT_TRUE(file.readHeader(bodies));
  file.update(bodies, false);
  EXPECT_EQ(console.text(), "BodyObject::readForces wrong index\n");
  EXPECT_EQ(forcesOf(bodies[0], "FzV"), Doubles{1.5});
  EXPECT_EQ(forcesOf(bodies[1], "FzV"), Doubles{3.5});
  EXPECT_EQ(bodies[0].converged(marine::Component::force, 17, 0), 1.25);
  EXPECT_EQ(bodies[1].converged(marine::Component::force, 17, 0), 3.25);
}

TEST_F(MarineComponentFile, HeaderWithoutItsColumnsBlock) {
  const struct {
    const char* what;
    std::string text;
    std::string message;  // "@" stands for the path
  } cases[] = {
      {"no columns block",
       "#QV_BEGIN\nCALCUL\nMODE STEADY\n#QV_END\n#COLUMNS T itnl hull\n0.0 1 2.5\n",
       "*** Parameter : #QV_END VARIABLES is not found in file: @\n"},
      {"empty file", "", "*** Parameter : #QV_END VARIABLES is not found in file: @\n"},
      {"VARIABLES outside any block", "VARIABLES = T itnl Fx\n#QV_BEGIN\nNAMES = hull\n#QV_END\n",
       "*** Parameter : #QV_END VARIABLES is not found in file: @\n"},
      {"no NAMES", "#QV_BEGIN\nVARIABLES = T itnl Fx\n#QV_END\n#COLUMNS T itnl hull\n0.0 1 2.5\n",
       "*** Parameter : NAMES in file: @ is not found\n"},
      {"NAMES in another block",
       "#QV_BEGIN\nVARIABLES = T itnl Fx\n#QV_END\n#QV_BEGIN\nNAMES = hull\n#QV_END\n",
       "*** Parameter : NAMES in file: @ is not found\n"},
  };
  for (const auto& c : cases) {
    write("eff_Fx.dat", c.text);
    std::vector<BodyObject> bodies = bodiesOf("#QV_BEGIN\nBODY\nNAME hull\n#QV_END\n", false);
    ComponentFile file(pathOf("eff_Fx.dat"), Component::force, 0);
    ConsoleCapture console;
    EXPECT_FALSE(file.readHeader(bodies)) << c.what;
    std::string expected = c.message;
    expected.replace(expected.find('@'), 1, pathOf("eff_Fx.dat"));
    EXPECT_EQ(console.text(), expected) << c.what;
  }
}

TEST_F(MarineComponentFile, UnknownBodiesAreReportedAndTheirColumnsSkipped) {
  const std::string names = "ghost hull hull:fin rudder rudder:tab";
  const std::string header = columnsBlock("T itnl X X X X X", names);
  const std::string rows = "0.0 1 9.5 1.5 8.5 4.5 7.5\n0.0 2 9.25 1.25 8.25 4.25 7.25\n";
  const struct {
    const char* file;
    Component component;
    const char* messages;
  } cases[] = {
      {"eff_Fy.dat", Component::force,
       "Unknown body: ghost\nUnknown body: hull:fin\nUnknown body: rudder:tab\n"},
      {"eff_Mx.dat", Component::moment,
       "Unknow body ghost\nUnknow body hull:fin\nUnknow body rudder:tab\n"},
  };
  for (const auto& c : cases) {
    write(c.file, header + rows);
    std::vector<BodyObject> bodies = bodiesOf(
        "#QV_BEGIN\nBODY\nNAME hull\n#QV_BEGIN\nSUBBODY\nNAME keel\n#QV_END\n#QV_END\n"
        "#QV_BEGIN\nBODY\nNAME rudder\n#QV_END\n",
        false);
    ComponentFile file(pathOf(c.file), c.component, c.component == Component::force ? 3 : 0);
    ConsoleCapture console;
    EXPECT_TRUE(file.readHeader(bodies)) << c.file;
    file.update(bodies, false);
    EXPECT_EQ(console.text(), c.messages) << c.file;
    if (c.component == Component::force) {
      EXPECT_EQ(forcesOf(bodies[0], "Fy"), (Doubles{1.5, 1.25}));
      EXPECT_EQ(forcesOf(bodies[1], "Fy"), (Doubles{4.5, 4.25}));
      EXPECT_EQ(forcesOf(bodies[0].subBody(0), "Fy"), Doubles{});
    } else {
      EXPECT_EQ(momentsOf(bodies[0], "Mx"), (Doubles{1.5, 1.25}));
      EXPECT_EQ(momentsOf(bodies[1], "Mx"), (Doubles{4.5, 4.25}));
    }
    // Not the reference file: no times.
    EXPECT_EQ(bodies[0].times(), Doubles{});
  }
}

TEST_F(MarineComponentFile, FileThatAppearsAfterTheLoad) {
  std::vector<BodyObject> bodies = bodiesOf("#QV_BEGIN\nBODY\nNAME hull\n#QV_END\n", false);
  ComponentFile file(pathOf("eff_FyP.dat"), Component::force, 4);
  {
    ConsoleCapture console;
    EXPECT_FALSE(file.readHeader(bodies));
    EXPECT_EQ(console.text(), "No file " + pathOf("eff_FyP.dat") + "\n");
    EXPECT_EQ(file.update(bodies, false), fileformat::Update::missing);
    EXPECT_EQ(console.text(), "No file " + pathOf("eff_FyP.dat") + "\n");
  }
  // Written in two goes: the columns block, then the rows.
  write("eff_FyP.dat", "#QV_BEGIN\nVARIABLES = T itnl FyP\n");
  ConsoleCapture console;
  EXPECT_EQ(file.update(bodies, false), fileformat::Update::unchanged);
  append("eff_FyP.dat", "NAMES = hull\n#QV_END\n#COLUMNS T itnl hull\n0.0 1 2.5\n0.0 2 2.25\n");
  EXPECT_EQ(file.update(bodies, false), fileformat::Update::appended);
  append("eff_FyP.dat", "0.0 3 2.125\n0.0 4 2");
  EXPECT_EQ(file.update(bodies, false), fileformat::Update::appended);
  EXPECT_EQ(console.text(), "");
  EXPECT_EQ(forcesOf(bodies[0], "FyP"), (Doubles{2.5, 2.25, 2.125}));
}

TEST_F(MarineComponentFile, RowWithTooFewValues) {
  const struct {
    const char* file;
    Component component;
  } cases[] = {{"eff_Fx.dat", Component::force}, {"eff_Mx.dat", Component::moment}};
  for (const auto& c : cases) {
    write(c.file, columnsBlock("T itnl A A A A", "hull hull:keel hull:bulb rudder") +
                      "0.0 1 1.5 2.5 3.5 4.5\n"
                      "0.0 2 1.25 2.25\n"
                      "0.0\n"
                      "0.0 3 1.125 2.125 3.125 4.125\n");
    std::vector<BodyObject> bodies = bodiesOf(kHullAndRudder, false);
    ComponentFile file(pathOf(c.file), c.component, 0);
    ConsoleCapture console;
    ASSERT_TRUE(file.readHeader(bodies));
    file.update(bodies, false);
    EXPECT_EQ(console.text(),
              "Wrong eff file format, cannot read force value\n"
              "Wrong eff file format, cannot read force value\n")
        << c.file;
    const auto values = [&](const marine::ComponentHistories& owner) {
      return c.component == Component::force ? forcesOf(owner, "Fx") : momentsOf(owner, "Mx");
    };
    // The values before the gap are kept; the rows after it are read whole.
    EXPECT_EQ(values(bodies[0]), (Doubles{1.5, 1.25, 1.125})) << c.file;
    EXPECT_EQ(values(bodies[0].subBody(0)), (Doubles{2.5, 2.25, 2.125})) << c.file;
    EXPECT_EQ(values(bodies[0].subBody(1)), (Doubles{3.5, 3.125})) << c.file;
    EXPECT_EQ(values(bodies[1]), (Doubles{4.5, 4.125})) << c.file;
  }
}

TEST_F(MarineComponentFile, RewrittenFileIsReported) {
  write("eff_Fx.dat", columnsBlock("T itnl Fx", "hull") + "0.0 1 1.5\n0.0 2 1.25\n");
  std::vector<BodyObject> bodies = bodiesOf("#QV_BEGIN\nBODY\nNAME hull\n#QV_END\n", false);
  ComponentFile file(pathOf("eff_Fx.dat"), Component::force, 0);
  ASSERT_TRUE(file.readHeader(bodies));
  EXPECT_EQ(file.update(bodies, true), fileformat::Update::appended);
  write("eff_Fx.dat", columnsBlock("T itnl Fx", "hull") + "0.0 1 1.5\n0.0 2 1.75\n0.0 3 1.0\n");
  EXPECT_EQ(file.update(bodies, true), fileformat::Update::rewritten);
  EXPECT_EQ(forcesOf(bodies[0], "Fx"), (Doubles{1.5, 1.25}));
  // The file starts over from its header, into bodies that start over too.
  std::vector<BodyObject> fresh = bodiesOf("#QV_BEGIN\nBODY\nNAME hull\n#QV_END\n", false);
  EXPECT_EQ(file.update(fresh, true), fileformat::Update::appended);
  EXPECT_EQ(forcesOf(fresh[0], "Fx"), (Doubles{1.5, 1.75, 1.0}));
}

}  // namespace
