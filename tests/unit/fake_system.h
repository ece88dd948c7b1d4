// A system whose program path, registry, environment and folders are set by
// the test, and which records what the code under test exports and creates.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/registry_file.h"
#include "platform/system_services.h"

class FakeSystem final : public platform::SystemServices {
 public:
  platform::ExecutablePath programPath;
  platform::RegistryFiles registry;
  std::map<std::string, std::string> environment;
  std::vector<std::pair<std::string, std::string>> exports;
  std::vector<std::string> createdFolders;
  int inputLinesRead = 0;

  void setRegistry(const std::string& text) {
    registry = {};
    registry.add(platform::RegistryFile::parse(text));
  }

  platform::ExecutablePath executablePath() override { return programPath; }
  bool registryKeyExists(const std::string& key) override { return registry.hasKey(key); }
  std::optional<std::string> registryValue(const std::string& key,
                                           const std::string& name) override {
    return registry.value(key, name);
  }
  std::optional<std::string> environmentVariable(const std::string& name) override {
    const auto found = environment.find(name);
    if (found == environment.end()) return std::nullopt;
    return found->second;
  }
  void exportVariable(const std::string& name, const std::string& value) override {
    exports.emplace_back(name, value);
    environment[name] = value;
  }
  void createFolder(const std::string& path) override { createdFolders.push_back(path); }
  void waitForInputLine() override { ++inputLinesRead; }
};
