// A fresh folder per test for the files a test writes, removed afterwards.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

class ScratchFolder : public testing::Test {
 protected:
  ScratchFolder() {
    static int serial = 0;
    folder_ = std::filesystem::temp_directory_path() /
              ("monitor_test_" + std::to_string(::getpid()) + "_" + std::to_string(++serial));
    std::filesystem::create_directories(folder_);
  }
  ~ScratchFolder() override { std::filesystem::remove_all(folder_); }

  std::string pathOf(const std::string& name) const { return (folder_ / name).string(); }
  void write(const std::string& name, const std::string& text) {
    std::ofstream(pathOf(name), std::ios::binary | std::ios::trunc) << text;
  }
  void append(const std::string& name, const std::string& text) {
    std::ofstream(pathOf(name), std::ios::binary | std::ios::app) << text;
  }

  std::filesystem::path folder_;
};
