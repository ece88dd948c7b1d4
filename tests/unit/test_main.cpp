#include <gtest/gtest.h>
#include <tcl.h>

int main(int argc, char** argv) {
  // Tcl's list and memory routines need its subsystems initialised, even
  // without an interpreter.
  Tcl_FindExecutable(argv[0]);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
