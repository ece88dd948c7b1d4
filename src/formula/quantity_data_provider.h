// What a formula's variables are read from: named series sampled on one
// common set of points.
#pragma once

#include <string>
#include <vector>

namespace formula {

class QuantityDataProvider {
 public:
  virtual void GetVariableNames(std::vector<std::string>& names) const = 0;
  virtual int GetPointsCount() const = 0;
  virtual double GetAbscissa(int point) const = 0;
  virtual double GetValue(int point, const std::string& name) const = 0;
  // The values of a variable, one per point as far as they go, when the
  // provider holds them as one array; null otherwise. Lets a plot read a
  // variable without looking its name up at every point.
  virtual const std::vector<double>* GetSeries(const std::string& name) const = 0;

 protected:
  ~QuantityDataProvider() = default;
};

}  // namespace formula
