// Commands on the curves that the user defines by formulas.
#include "marine/commands/command_support.h"
#include "marine/commands/marine_command_set.h"
#include "script/arg_stream.h"
#include "script/result_stream.h"

namespace marine {
namespace {

// How a command words a plot number outside the project's plots: "Cannot
// find <noun> #n in project 'p'<closing> Number of custom plots in the
// project: c."
struct PlotWording {
  std::string_view noun;
  std::string_view closing;
};
constexpr PlotWording kPlot{"plot", "."};
constexpr PlotWording kCustomPlot{"custom plot", "."};
constexpr PlotWording kCustomPlotExclaimed{"custom plot", "!"};

// The plots of the project of `path` when `plot` is one of them; null after
// the command's line otherwise.
CustomPlots* plotsHolding(const char* command, const std::string& path, std::int32_t plot,
                          PlotWording wording) {
  ProjectMonitorMarine* project = findProject(command, path);
  if (project == nullptr) return nullptr;
  CustomPlots& plots = project->customPlots();
  if (plot >= 0 && static_cast<std::size_t>(plot) < plots.size()) return &plots;
  reportError(command,
              "Cannot find " + std::string(wording.noun) + " #" + std::to_string(plot) +
                  " in project '" + project->path() + "'" + std::string(wording.closing) +
                  " Number of custom plots in the project: " + std::to_string(plots.size()) + ".");
  return nullptr;
}

}  // namespace

void addCustomPlot(ArgStream& arguments, ResultStream& result) {
  const std::string path = textArgument(arguments);
  const std::string formula = textArgument(arguments);
  ProjectMonitorMarine* project = findProject("add_custom_plot", path);
  result << (project == nullptr ? -1 : project->customPlots().add(formula));
}

void editCustomPlot(ArgStream& arguments, ResultStream& result) {
  const std::string path = textArgument(arguments);
  const std::int32_t plot = integerArgument(arguments);
  const std::string formula = textArgument(arguments);
  CustomPlots* plots = plotsHolding("edit_custom_plot", path, plot, kPlot);
  result << (plots != nullptr && plots->edit(static_cast<std::size_t>(plot), formula) ? 1 : 0);
}

void getCustomPlotPointsNo(ArgStream& arguments, ResultStream& result) {
  const std::string path = textArgument(arguments);
  const std::int32_t plot = integerArgument(arguments);
  const CustomPlots* plots = plotsHolding("get_custom_plot_points_no", path, plot, kPlot);
  result << (plots == nullptr
                 ? 0
                 : static_cast<int>(plots->plot(static_cast<std::size_t>(plot)).points().size()));
}

void getCustomPlotPoint(ArgStream& arguments, ResultStream& result) {
  constexpr const char* kCommand = "get_custom_plot_point";
  const std::string path = textArgument(arguments);
  const std::int32_t number = integerArgument(arguments);
  const std::int32_t point = integerArgument(arguments);
  const CustomPlots* plots = plotsHolding(kCommand, path, number, kCustomPlot);
  const CustomPlot* plot =
      plots == nullptr ? nullptr : &plots->plot(static_cast<std::size_t>(number));
  if (plot != nullptr && point >= 0 && static_cast<std::size_t>(point) < plot->points().size()) {
    const auto& [abscissa, value] = plot->points()[static_cast<std::size_t>(point)];
    result << abscissa << value;
    return;
  }
  if (plot != nullptr) {
    reportError(kCommand, "Wrong point number " + std::to_string(point) + " for custom plot #" +
                              std::to_string(number) + " '" + plot->formula() + "' in project '" +
                              path + "'. Number of points is " +
                              std::to_string(plot->points().size()) + ".");
  }
  result << 0.0 << 0.0;
}

void removeCustomPlot(ArgStream& arguments, ResultStream&) {
  const std::string path = textArgument(arguments);
  const std::int32_t plot = integerArgument(arguments);
  CustomPlots* plots = plotsHolding("remove_custom_plot", path, plot, kCustomPlotExclaimed);
  if (plots != nullptr) plots->remove(static_cast<std::size_t>(plot));
}

void getCustomPlotsNo(ArgStream& arguments, ResultStream& result) {
  ProjectMonitorMarine* project = findProject("get_custom_plots_no", textArgument(arguments));
  result << (project == nullptr ? 0 : static_cast<int>(project->customPlots().size()));
}

void getCustomPlotFormula(ArgStream& arguments, ResultStream& result) {
  const std::string path = textArgument(arguments);
  const std::int32_t plot = integerArgument(arguments);
  const CustomPlots* plots =
      plotsHolding("get_custom_plot_formula", path, plot, kCustomPlotExclaimed);
  result << (plots == nullptr ? std::string()
                              : plots->plot(static_cast<std::size_t>(plot)).formula());
}

}  // namespace marine
