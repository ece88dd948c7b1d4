// The residual history that the turbomachinery solver appends to while it
// runs (".res"). The file is a stream of whitespace-separated tokens: a
// header (short: blocks and equations; long: format version, blocks, module,
// turbulence model, extra equations, mode, application) and then one record
// per stored iteration.
//
// Every read after the first resumes after the last complete record and
// appends the records that follow; a file that no longer continues the
// history held (rewritten by a new run) makes the history start over. A
// record is taken only when the lines holding it are complete. The values
// are kept in one contiguous array, a fixed count per record.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "fileformat/class_ids.h"
#include "fileformat/growing_file.h"
#include "fileformat/qv_file.h"
#include "turbo/ite_res.h"

namespace fileformat {
class TokenStream;
}

namespace turbo {

class ResFile : public QVfile {
 public:
  static constexpr std::uint16_t kClassId = classid::kResFile;

  // The most values one record may hold; a header asking for more is
  // refused rather than believed.
  static constexpr std::uint64_t kMaxValuesPerRecord = 16u << 20;

  explicit ResFile(std::string path);

  // 0: the file cannot be opened or its header is bad (the object is reset);
  // 1: the history is up to date and the next read resumes;
  // 2: nothing could be read, or the file no longer continues the history
  //    held; the object is reset and the next read starts from the top.
  int read();

  // Writes a debugging dump of the object to the file itself: the block and
  // equation counts and each record's address. Nothing reads it back.
  void write() const;

  const std::string& version() const { return version_; }
  const std::string& module() const { return module_; }
  const std::string& turbulence() const { return turbulence_; }
  const std::vector<std::string>& extraNames1() const { return extraNames1_; }
  const std::vector<std::string>& extraNames2() const { return extraNames2_; }
  int nbExtra1() const { return static_cast<int>(extraNames1_.size()); }
  int nbExtra2() const { return static_cast<int>(extraNames2_.size()); }
  const std::string& mode() const { return mode_; }
  const std::string& application() const { return application_; }
  std::uint32_t nbBlocks() const { return nbBlocks_; }
  std::uint32_t nbVars() const { return nbVars_; }
  std::uint32_t headerInt() const { return headerInt_; }
  std::int32_t lastIndex() const { return lastIndex_; }
  std::uint32_t lastIterationNumber() const { return lastIterationNumber_; }

  std::size_t recordCount() const { return iterationNumbers_.size(); }
  IteRes record(std::size_t index) const;
  // Values held per record (9 + 2 x blocks x equations).
  std::size_t valuesPerRecord() const { return valuesPerRecord_; }

 private:
  void reset();
  void clearRecords();
  // Takes the header and then the whole records at the start of `text`.
  fileformat::Taken take(std::string_view text);
  bool readHeader(fileformat::TokenStream& tokens);
  // Appends one record read from `tokens`; on failure nothing is appended.
  bool readRecord(fileformat::TokenStream& tokens);
  void reportCannotOpen(const char* operation) const;

  std::string version_;
  std::string module_ = "3D";
  std::string turbulence_ = "NO-K-E";
  std::vector<std::string> extraNames1_;
  std::string mode_;
  std::vector<std::string> extraNames2_;
  std::string application_ = "TURBO";
  fileformat::GrowingFile file_;
  enum class HeaderState { expected, read, failed } header_ = HeaderState::expected;
  std::uint32_t nbBlocks_ = 0;
  std::uint32_t nbVars_ = 0;
  std::int32_t lastIndex_ = 0;
  std::uint32_t lastIterationNumber_ = 0;
  std::uint32_t headerInt_ = 0;

  // The history, record by record: the shape of the records as the header
  // gave it when they were read, then their numbers and values.
  std::size_t valuesPerRecord_ = 0;
  bool unsteady_ = false;
  std::vector<float> values_;
  std::vector<std::int32_t> iterationNumbers_;
  std::vector<std::int32_t> timeSteps_;
  std::vector<double> physicalTimes_;
};

}  // namespace turbo
