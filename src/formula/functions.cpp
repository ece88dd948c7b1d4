#include "formula/functions.h"

#include <cmath>

#include "fileformat/number_text.h"
#include "formula/error_collector.h"

namespace formula {
namespace {

double naturalLog(double x) { return std::log(x); }
double decimalLog(double x) { return std::log10(x); }
double exponential(double x) { return std::exp(x); }
double squareRoot(double x) { return std::sqrt(x); }
double sine(double x) { return std::sin(x); }
double cosine(double x) { return std::cos(x); }
double tangent(double x) { return std::tan(x); }
double hyperbolicSine(double x) { return std::sinh(x); }
double hyperbolicCosine(double x) { return std::cosh(x); }
double hyperbolicTangent(double x) { return std::tanh(x); }
double arcSine(double x) { return std::asin(x); }
double arcCosine(double x) { return std::acos(x); }
double arcTangent(double x) { return std::atan(x); }
double absolute(double x) { return std::fabs(x); }

}  // namespace

double cotan(double x) {
  const double t = std::tan(x);
  if (t == 0.0) {
    collectError("cotan of " + fileformat::formatGeneral(x, 6) + " undefined.");
    return 3.4028234663852886e+38;
  }
  return 1.0 / t;
}

const std::array<FunctionEntry, 15> kFunctions = {{
    {"log", naturalLog},
    {"log10", decimalLog},
    {"exp", exponential},
    {"sqrt", squareRoot},
    {"sin", sine},
    {"cos", cosine},
    {"tan", tangent},
    {"cotan", cotan},
    {"sinh", hyperbolicSine},
    {"cosh", hyperbolicCosine},
    {"tanh", hyperbolicTangent},
    {"asin", arcSine},
    {"acos", arcCosine},
    {"atan", arcTangent},
    {"abs", absolute},
}};

SymbolTable functionSymbols() {
  SymbolTable symbols;
  for (const FunctionEntry& entry : kFunctions) symbols.insert(entry.name);
  return symbols;
}

}  // namespace formula
