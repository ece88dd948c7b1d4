// The force, moment and motion histories of one marine computation, offered
// to formulas as variables named <component>_<body or sub-body>, e.g.
// "Fx_hull", "MzV_keel", "Z_hull". Every variable is sampled on the records
// of the first body's "Fx" history: iteration numbers as abscissae in a steady
// run, physical times in an unsteady one.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "formula/quantity_data_provider.h"

namespace marine {
class ProjectMonitorMarine;
}

namespace formula {

class MarineVarsProvider final : public QuantityDataProvider {
 public:
  explicit MarineVarsProvider(const marine::ProjectMonitorMarine& project) : project_(project) {}

  // The name of the variable of a quantity ("Fx", a motion column "Z") of a
  // body or sub-body ("hull"): "Fx_hull", "Z_hull".
  static std::string variableName(std::string_view quantity, std::string_view object);

  // Lists the variables again from the project as it is now (motions of the
  // moving bodies, then forces and then moments of every body and sub-body).
  void rebuild();

  void GetVariableNames(std::vector<std::string>& names) const override;
  int GetPointsCount() const override;
  double GetAbscissa(int point) const override;
  // NaN past the end of the variable's history or for an unknown name.
  double GetValue(int point, const std::string& name) const override;
  const std::vector<double>* GetSeries(const std::string& name) const override;

 private:
  struct Entry {
    std::string name;                   // component + "_" + object
    const std::vector<double>* series;  // the component's history
  };

  const marine::ProjectMonitorMarine& project_;
  std::vector<Entry> entries_;
  std::unordered_map<std::string, std::size_t> byName_;
};

}  // namespace formula
