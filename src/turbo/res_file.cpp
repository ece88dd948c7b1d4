#include "turbo/res_file.h"

#include <algorithm>
#include <cstdio>
#include <fstream>

#include "fileformat/input_file.h"
#include "fileformat/line_helpers.h"
#include "fileformat/token_stream.h"
#include "platform/console.h"
#include "turbo/curve_names.h"

namespace turbo {
namespace {

constexpr std::int32_t kShortHeaderLimit = 100000;

int moduleEquationCount(const std::string& module) {
  if (module == "3D" || module == "B2B") return 5;
  if (module == "TF") return 6;
  return -1;
}

// Reads a count of names and the names themselves.
bool readNames(fileformat::TokenStream& tokens, std::vector<std::string>& names) {
  std::int32_t count = 0;
  if (!tokens.readInteger(count) || count < 0 ||
      static_cast<std::size_t>(count) > fileformat::kMaxColumns) {
    return false;
  }
  names.clear();
  for (std::int32_t i = 0; i < count; ++i) {
    std::string name;
    if (!tokens.readWord(name)) return false;
    names.push_back(std::move(name));
  }
  return true;
}

}  // namespace

ResFile::ResFile(std::string path) : QVfile(std::move(path)), file_(this->path()) {}

void ResFile::reset() {
  extraNames1_.clear();
  extraNames2_.clear();
  version_.clear();
  module_ = "3D";
  turbulence_ = "NO-K-E";
  mode_.clear();
  application_ = "TURBO";
  header_ = HeaderState::expected;
  lastIndex_ = 0;
  lastIterationNumber_ = 0;
  headerInt_ = 0;
}

void ResFile::clearRecords() {
  values_.clear();
  iterationNumbers_.clear();
  timeSteps_.clear();
  physicalTimes_.clear();
}

void ResFile::reportCannotOpen(const char* operation) const {
  platform::consoleLine(std::string("*** ResFile  :: ") + operation + "() Cannot open the file :");
  platform::consoleLine("\t\t\t      " + path());
}

bool ResFile::readHeader(fileformat::TokenStream& tokens) {
  std::int32_t first = 0;
  if (!tokens.readInteger(first)) return false;
  std::int64_t equations = 0;
  std::int32_t blocks = 0;
  if (first >= 1 && first <= kShortHeaderLimit) {
    blocks = first;
    std::int32_t vars = 0;
    if (!tokens.readInteger(vars)) return false;
    equations = vars;
  } else {
    if (!tokens.readWord(version_) || !tokens.readInteger(blocks) || !tokens.readWord(module_)) {
      return false;
    }
    const int moduleEquations = moduleEquationCount(module_);
    if (moduleEquations < 0) {
      platform::consoleLine("unkown module " + module_);
      return false;
    }
    if (!tokens.readWord(turbulence_) || !readNames(tokens, extraNames1_)) return false;
    if (version_ != "1.0" && !readNames(tokens, extraNames2_)) return false;
    if (version_ != "1.0" && version_ != "2.0") {
      std::int32_t choice = 0;
      if (!tokens.readInteger(choice)) return false;
      headerInt_ = static_cast<std::uint32_t>(choice);
    }
    if (!tokens.readWord(mode_) || !tokens.readWord(application_)) return false;
    equations = moduleEquations + turbulenceEquationCount(turbulence_) +
                static_cast<std::int64_t>(extraNames1_.size() + extraNames2_.size());
  }
  const std::uint64_t perRecord =
      9 + 2 * static_cast<std::uint64_t>(std::max(blocks, 0)) *
              static_cast<std::uint64_t>(std::max<std::int64_t>(equations, 0));
  if (blocks < 0 || equations < 0 || perRecord > kMaxValuesPerRecord) {
    platform::consoleLine("*** ResFile  :: read() " + std::to_string(blocks) + " blocks of " +
                          std::to_string(equations) + " equations are not a residual history :");
    platform::consoleLine("\t\t\t      " + path());
    return false;
  }
  nbBlocks_ = static_cast<std::uint32_t>(blocks);
  nbVars_ = static_cast<std::uint32_t>(equations);
  valuesPerRecord_ = static_cast<std::size_t>(perRecord);
  unsteady_ = mode_ == "UNSTEADY";
  return true;
}

bool ResFile::readRecord(fileformat::TokenStream& tokens) {
  std::int32_t timeStep = -1;
  std::int32_t iteration = 0;
  if (unsteady_ && !tokens.readInteger(timeStep)) return false;
  if (!tokens.readInteger(iteration)) return false;

  const std::size_t held = values_.size();
  values_.resize(held + valuesPerRecord_);
  float* out = values_.data() + held;
  float physicalTime = 0.0f;
  const std::size_t floats = valuesPerRecord_ + (unsteady_ ? 1 : 0);
  for (std::size_t k = 0; k < floats; ++k) {
    float value = 0.0f;
    if (!tokens.readReal(value)) {
      values_.resize(held);
      return false;
    }
    // The third float of an unsteady record is its physical time.
    if (unsteady_ && k == 2) {
      physicalTime = value;
    } else {
      *out++ = value;
    }
  }
  iterationNumbers_.push_back(iteration);
  timeSteps_.push_back(timeStep);
  if (unsteady_) physicalTimes_.push_back(physicalTime);
  return true;
}

fileformat::Taken ResFile::take(std::string_view text) {
  std::size_t position = 0;
  if (header_ == HeaderState::expected) {
    // Without the top of the file (a first line too long to be read) there
    // is no header to read: the text is passed over until the file is
    // rewritten.
    if (file_.offset() != 0) return {text.size(), false};
    fileformat::TokenStream tokens(text);
    if (!readHeader(tokens)) {
      header_ = HeaderState::failed;
      return {0, true};
    }
    header_ = HeaderState::read;
    position = tokens.position();
  }
  fileformat::TokenStream tokens(text.substr(position),
                                 fileformat::TokenStream::MissingReal::quiet);
  std::size_t taken = position;
  while (readRecord(tokens)) taken = position + tokens.position();
  return {taken, false};
}

int ResFile::read() {
  // A read from the top of a file that can be opened starts a fresh history;
  // a file that cannot be opened leaves the history held.
  if (header_ != HeaderState::read && fileformat::InputFile::open(path())) clearRecords();
  const fileformat::Update status =
      file_.read([this](std::string_view text) { return take(text); });
  if (status == fileformat::Update::missing) {
    reportCannotOpen("read");
    reset();
    return 0;
  }
  if (status == fileformat::Update::rewritten) {
    reset();
    return 2;
  }
  if (header_ != HeaderState::read) {
    reset();
    return 0;
  }
  if (recordCount() == 0) {
    // A header without records: read again from the top next time.
    reset();
    file_.restart();
    return 2;
  }
  lastIndex_ = static_cast<std::int32_t>(recordCount()) - 1;
  lastIterationNumber_ = static_cast<std::uint32_t>(iterationNumbers_.back());
  return 1;
}

IteRes ResFile::record(std::size_t index) const {
  return IteRes(std::span<const float>(values_.data() + index * valuesPerRecord_, valuesPerRecord_),
                iterationNumbers_[index], timeSteps_[index],
                unsteady_ ? physicalTimes_[index] : 0.0, unsteady_, nbBlocks_, nbVars_);
}

void ResFile::write() const {
  std::ofstream out(path());
  if (!out) {
    reportCannotOpen("write");
    return;
  }
  out << nbBlocks_ << nbVars_;
  for (std::size_t i = 0; i < recordCount(); ++i) {
    out << static_cast<const void*>(values_.data() + i * valuesPerRecord_);
  }
}

}  // namespace turbo
