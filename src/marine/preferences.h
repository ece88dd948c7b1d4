// The user's preferences file "preferences.dat", shared with the maker's
// other tools: named groups of settings.
//
//   PRODUCT Monitor
//   Refresh 5
//   END_PRODUCT
//
// Group names are compared as written; keys without regard to case.
#pragma once

#include <map>
#include <string>

namespace marine {

class Preferences {
 public:
  // Replaces the table by the groups of the file; an unreadable file leaves
  // it empty.
  void read(const std::string& path);

  // The value of the key in the group, or `fallback` when it has none.
  std::string getPreference(const std::string& group, const std::string& key,
                            const std::string& fallback);

 private:
  std::map<std::string, std::map<std::string, std::string>> groups_;
};

}  // namespace marine
