#include "platform/registry_file.h"

#include <gtest/gtest.h>

namespace {

using platform::RegistryFile;
using platform::RegistryFiles;

TEST(RegistryFile, SectionsValuesCommentsAndCase) {
  const RegistryFile file = RegistryFile::parse(
      "; installed programs\n"
      "# another comment\n"
      "[Software\\TALVIK\\dune71]\r\n"
      "  TALVIK_DIR =  /opt/talvik/dune71  \r\n"
      "Driver=x11 ; kept as written\n"
      "\n"
      "[HKEY_LOCAL_MACHINE\\Software\\Talvik\\DUNE_MARINE71]\n"
      "talvik_dir=/opt/talvik/dune_marine71\n");
  EXPECT_TRUE(file.hasKey("software\\talvik\\DUNE71"));
  EXPECT_EQ(file.value("Software\\TALVIK\\dune71", "TALVIK_DIR"), "/opt/talvik/dune71");
  EXPECT_EQ(file.value("Software\\TALVIK\\dune71", "DRIVER"), "x11 ; kept as written");
  EXPECT_EQ(file.value("Software\\TALVIK\\dune_marine71", "TALVIK_DIR"),
            "/opt/talvik/dune_marine71");
  EXPECT_EQ(file.value("HKEY_LOCAL_MACHINE\\Software\\TALVIK\\dune71", "talvik_dir"),
            "/opt/talvik/dune71");
  EXPECT_FALSE(file.value("Software\\TALVIK\\dune_marine71", "DRIVER"));
  EXPECT_FALSE(file.hasKey("Software\\TALVIK\\dune72"));
}

TEST(RegistryFile, JunkLinesAreIgnored) {
  const RegistryFile file = RegistryFile::parse(
      "VALUE=before any section\n"
      "[unclosed section\n"
      "no equals sign here\n"
      "=no name\n"
      "[Software\\TALVIK\\dune71]\n"
      "garbage \x01\x02\n"
      "TALVIK_DIR=/x=y\n"
      "EMPTY=\n");
  EXPECT_EQ(file.value("Software\\TALVIK\\dune71", "TALVIK_DIR"), "/x=y");
  EXPECT_EQ(file.value("Software\\TALVIK\\dune71", "EMPTY"), "");
  EXPECT_FALSE(file.hasKey("unclosed section"));
}

TEST(RegistryFile, EmptySectionIsAKeyWithoutValues) {
  const RegistryFile file = RegistryFile::parse("[Software\\TALVIK\\dune71]\n");
  EXPECT_TRUE(file.hasKey("Software\\TALVIK\\dune71"));
  EXPECT_FALSE(file.value("Software\\TALVIK\\dune71", "TALVIK_DIR"));
}

TEST(RegistryFiles, FirstFileHoldingTheKeyAnswers) {
  RegistryFiles files;
  files.add(RegistryFile::parse("[Software\\TALVIK\\dune71]\n"));
  files.add(
      RegistryFile::parse("[Software\\TALVIK\\dune71]\nTALVIK_DIR=/"
                          "second\n[Software\\TALVIK\\dune80]\nTALVIK_DIR=/eighty\n"));
  EXPECT_TRUE(files.hasKey("Software\\TALVIK\\dune71"));
  // The first file has the key, so its (missing) value is the answer.
  EXPECT_FALSE(files.value("Software\\TALVIK\\dune71", "TALVIK_DIR"));
  EXPECT_EQ(files.value("Software\\TALVIK\\dune80", "TALVIK_DIR"), "/eighty");
  EXPECT_FALSE(files.hasKey("Software\\TALVIK\\dune90"));
}

}  // namespace
