// The fixed vocabulary of the marine solver's files: residual names, force
// and moment quantities and the files that hold them.
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace marine {

inline constexpr std::array<std::string_view, 8> kResidualNames = {
    "ResU", "ResV", "ResW", "ResP", "ResK", "Res`w", "ResE", "ResVt~"};

// Per axis: total, total per time step, pressure part, its value per time
// step, viscous part, its value per time step.
inline constexpr std::array<std::string_view, 18> kForceNames = {
    "Fx",     "FxDyn", "FxP",    "FxPDyn", "FxV",   "FxVDyn", "Fy",     "FyDyn", "FyP",
    "FyPDyn", "FyV",   "FyVDyn", "Fz",     "FzDyn", "FzP",    "FzPDyn", "FzV",   "FzVDyn"};

// The moment table has three slots more than it has names; the moment
// commands check their indexes against all 21 slots.
inline constexpr std::array<std::string_view, 21> kMomentNames = {
    "Mx",    "MxDyn",  "MxP",    "MxPDyn", "MxV",    "MxVDyn", "My",
    "MyDyn", "MyP",    "MyPDyn", "MyV",    "MyVDyn", "Mz",     "MzDyn",
    "MzP",   "MzPDyn", "MzV",    "MzVDyn", "",       "",       ""};

inline constexpr int kForceCount = 18;
inline constexpr int kMomentCount = 21;

inline constexpr std::array<std::string_view, 9> kForceFileNames = {
    "eff_Fx.dat",  "eff_FxP.dat", "eff_FxV.dat", "eff_Fy.dat", "eff_FyP.dat",
    "eff_FyV.dat", "eff_Fz.dat",  "eff_FzP.dat", "eff_FzV.dat"};
inline constexpr std::array<std::string_view, 9> kMomentFileNames = {
    "eff_Mx.dat",  "eff_MxP.dat", "eff_MxV.dat", "eff_My.dat", "eff_MyP.dat",
    "eff_MyV.dat", "eff_Mz.dat",  "eff_MzP.dat", "eff_MzV.dat"};

inline constexpr int kComponentFiles = 9;

// Index of a name in a table; nothing for a name it does not hold.
template <std::size_t N>
std::optional<int> indexIn(const std::array<std::string_view, N>& table, std::string_view name) {
  for (std::size_t i = 0; i < N; ++i) {
    if (!table[i].empty() && table[i] == name) return static_cast<int>(i);
  }
  return std::nullopt;
}

// The file that holds the plain (per-iteration) history of a quantity:
// quantity 6k, 6k+2 and 6k+4 come from file 3k, 3k+1 and 3k+2. The per-time-
// step quantities (odd indexes) have no file of their own.
inline std::optional<int> fileOfQuantity(int quantity) {
  if (quantity < 0 || quantity >= 18 || quantity % 2 != 0) return std::nullopt;
  return quantity / 2;
}

}  // namespace marine
