#include "solver_simulator/marine_case_writer.h"

#include <stdexcept>

#include "solver_simulator/case_headers.h"
#include "solver_simulator/text_row.h"

namespace solver_simulator {
namespace {

constexpr int kTimeDigits = 9;
constexpr int kValueDigits = 7;
constexpr int kMotionDigits = 6;

const CaseSetup& checked(const CaseSetup& setup) {
  if (!(setup.timeStep > 0.0)) throw std::invalid_argument("the time step must be positive");
  if (setup.iterationsPerTimeStep < 1) {
    throw std::invalid_argument("a time step needs at least one iteration");
  }
  return setup;
}

// A row that starts with the time of the iteration's step.
TextRow timeRow(const IterationPlace& place, char separator = ' ') {
  TextRow row(separator);
  row.general(place.time, kTimeDigits);
  return row;
}

}  // namespace

MarineCaseWriter::MarineCaseWriter(CaseSetup setup)
    : setup_(std::move(setup)),
      signals_(checked(setup_), run_),
      residuals_(setup_.residualPath()),
      bodyDescription_(setup_.folder / (setup_.caseName + "_body_param.dat")) {
  for (const LoadFile& file : kLoadFiles) loadFiles_.emplace_back(setup_.folder / file.fileName);
  for (const BodySetup& body : setup_.bodies) {
    if (body.moving) motionFiles_.emplace_back(setup_.folder / ("Mvt_" + body.name + ".dat"));
  }
  if (setup_.actuatorDisks > 0) disks_.emplace(setup_.folder / "eff_AD.dat");
  if (!setup_.userQuantities.empty()) userData_.emplace(setup_.folder / "user_data.csv");
}

template <typename Action>
void MarineCaseWriter::forEachFile(Action action) {
  action(residuals_);
  action(bodyDescription_);
  for (SolverOutputFile& file : loadFiles_) action(file);
  for (SolverOutputFile& file : motionFiles_) action(file);
  if (disks_) action(*disks_);
  if (userData_) action(*userData_);
}

int MarineCaseWriter::timeStepsCompleted() const {
  return setup_.unsteady() ? iteration_ / setup_.iterationsPerTimeStep : iteration_;
}

void MarineCaseWriter::writeHeaders() {
  std::filesystem::create_directories(setup_.folder);
  iteration_ = 0;
  residuals_.rewrite(residualHeader(setup_));
  bodyDescription_.rewrite(bodyDescription(setup_));
  for (std::size_t f = 0; f < loadFiles_.size(); ++f) {
    loadFiles_[f].rewrite(loadFileHeader(setup_, kLoadFiles[f], f == 0));
  }
  for (SolverOutputFile& file : motionFiles_) file.rewrite(motionHeader());
  if (disks_) disks_->rewrite(diskHeader(setup_));
  if (userData_) userData_->rewrite(userDataHeader(setup_));
}

void MarineCaseWriter::restart(const RunStamp& stamp) {
  setup_.stamp = stamp;
  signals_ = FlowSignals(setup_, ++run_);
  writeHeaders();
}

void MarineCaseWriter::resume(int iterations) {
  forEachFile([](SolverOutputFile& file) { file.keepInMemory(); });
  writeHeaders();
  for (int i = 0; i < iterations; ++i) appendIteration();
  forEachFile([](SolverOutputFile& file) { file.catchUp(); });
}

void MarineCaseWriter::completeLines() {
  forEachFile([](SolverOutputFile& file) { file.completeLine(); });
}

void MarineCaseWriter::appendIteration(LineEnd end) {
  completeLines();
  const IterationPlace place = placeOf(setup_, ++iteration_);

  TextRow residualRow;
  residualRow.integer(place.iteration).fixed(signals_.cpuSeconds(place.iteration), 2);
  if (setup_.unsteady()) residualRow.general(place.time, kTimeDigits);
  for (std::size_t r = 0; r < kResidualNames.size(); ++r) {
    residualRow.scientific(signals_.residual(r, place), 4);
  }
  residuals_.append(residualRow.line(), end);

  appendLoadRows(place, end);
  if (place.completesStep) appendStepRows(place, end);
}

void MarineCaseWriter::appendLoadRows(const IterationPlace& place, LineEnd end) {
  const std::vector<LoadColumn> columns = loadColumns(setup_);
  for (std::size_t f = 0; f < loadFiles_.size(); ++f) {
    TextRow values;
    for (const LoadColumn& column : columns) {
      values.general(signals_.load(column, kLoadFiles[f], place), kValueDigits);
    }
    const auto rowAt = [&](double time) {
      return TextRow()
          .general(time, kTimeDigits)
          .integer(place.iteration)
          .word(values.text())
          .line();
    };
    std::string rows = rowAt(place.time);
    if (setup_.unsteady() && place.completesStep) rows += rowAt(-place.time);
    loadFiles_[f].append(rows, end);
  }
}

void MarineCaseWriter::appendStepRows(const IterationPlace& place, LineEnd end) {
  for (std::size_t body = 0; body < motionFiles_.size(); ++body) {
    TextRow row = timeRow(place);
    for (std::size_t c = 0; c < kMotionColumns.size(); ++c) {
      row.general(signals_.motion(body, c, place), kMotionDigits);
    }
    motionFiles_[body].append(row.line(), end);
  }
  if (disks_) {
    TextRow row = timeRow(place);
    for (int disk = 0; disk < setup_.actuatorDisks; ++disk) {
      for (std::size_t q = 0; q < kDiskQuantities.size(); ++q) {
        row.general(signals_.disk(disk, q, place), kValueDigits);
      }
    }
    disks_->append(row.line(), end);
  }
  if (userData_) {
    TextRow row = timeRow(place, '\t');
    for (std::size_t q = 0; q < setup_.userQuantities.size(); ++q) {
      row.general(signals_.user(q, place), kValueDigits);
    }
    userData_->append(row.line(), end);
  }
}

}  // namespace solver_simulator
