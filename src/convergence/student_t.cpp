#include "convergence/student_t.h"

#include <cmath>
#include <initializer_list>

namespace convergence {
namespace {

// Continued fraction of the regularized incomplete beta function, by the
// modified Lentz method.
double betaFraction(double a, double b, double x) {
  constexpr double kTiny = 1e-300;
  double c = 1.0;
  double d = 1.0 - (a + b) * x / (a + 1.0);
  d = 1.0 / (std::fabs(d) < kTiny ? kTiny : d);
  double result = d;
  for (int m = 1; m <= 300; ++m) {
    const double m2 = 2.0 * m;
    for (const double numerator : {m * (b - m) * x / ((a + m2 - 1.0) * (a + m2)),
                                   -(a + m) * (a + b + m) * x / ((a + m2) * (a + m2 + 1.0))}) {
      d = 1.0 + numerator * d;
      d = 1.0 / (std::fabs(d) < kTiny ? kTiny : d);
      c = 1.0 + numerator / c;
      if (std::fabs(c) < kTiny) c = kTiny;
      result *= d * c;
    }
    if (std::fabs(d * c - 1.0) < 1e-15) break;
  }
  return result;
}

double incompleteBeta(double a, double b, double x) {
  if (x <= 0.0) return 0.0;
  if (x >= 1.0) return 1.0;
  const double front = std::exp(std::lgamma(a + b) - std::lgamma(a) - std::lgamma(b) +
                                a * std::log(x) + b * std::log1p(-x));
  if (x < (a + 1.0) / (a + b + 2.0)) return front * betaFraction(a, b, x) / a;
  return 1.0 - front * betaFraction(b, a, 1.0 - x) / b;
}

double distribution(double t, int freedom) {
  const double nu = freedom;
  const double tail = 0.5 * incompleteBeta(nu / 2.0, 0.5, nu / (nu + t * t));
  return t >= 0.0 ? 1.0 - tail : tail;
}

}  // namespace

double studentQuantile(double probability, int freedom) {
  // Bisection on the distribution: slow by the standards of a library, but
  // a verdict asks for one quantile.
  double low = -1e4;
  double high = 1e4;
  for (int i = 0; i < 200 && high - low > 1e-12 * (1.0 + std::fabs(low)); ++i) {
    const double middle = 0.5 * (low + high);
    (distribution(middle, freedom) < probability ? low : high) = middle;
  }
  return 0.5 * (low + high);
}

}  // namespace convergence
