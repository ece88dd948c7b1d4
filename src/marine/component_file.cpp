#include "marine/component_file.h"

#include <filesystem>
#include <unordered_map>

#include "fileformat/line_helpers.h"
#include "fileformat/token_stream.h"
#include "platform/console.h"

namespace marine {
namespace {

std::string_view firstWord(std::string_view line) {
  std::size_t end = 0;
  while (end < line.size() && !fileformat::isWhitespace(line[end])) ++end;
  return line.substr(0, end);
}

// The words of a keyword line after the keyword, without "=", up to the
// most columns a file may have.
std::vector<std::string> listedWords(std::string_view line, const std::string& path) {
  fileformat::TokenStream tokens(line.substr(firstWord(line).size()));
  std::vector<std::string> words;
  std::string_view token;
  while (tokens.next(token)) {
    if (token == "=") continue;
    if (words.size() == fileformat::kMaxColumns) {
      fileformat::reportTooManyColumns(path);
      break;
    }
    words.emplace_back(token);
  }
  return words;
}

float realToken(std::string_view token) {
  return fileformat::isNonFiniteToken(token) ? 1.0f
                                             : static_cast<float>(fileformat::tokenReal(token));
}

}  // namespace

bool ComponentFile::takeHeaderLine(std::string_view raw) {
  const std::string_view line = fileformat::trim(raw);
  const std::string_view word = firstWord(line);
  if (word == "#QV_BEGIN") {
    ++depth_;
  } else if (word == "#QV_END") {
    if (depth_ > 0) --depth_;
    inColumnsBlock_ = false;
  } else if (word == "VARIABLES" && depth_ > 0) {
    variables_ = listedWords(line, path());
    sawVariables_ = true;
    inColumnsBlock_ = true;
  } else if (word == "NAMES" && inColumnsBlock_) {
    names_ = listedWords(line, path());
    sawNames_ = true;
  } else if (depth_ == 0 && !line.empty() && !line.starts_with("#")) {
    return false;  // the first row
  }
  return true;
}

bool ComponentFile::readHeader(std::vector<BodyObject>& bodies, bool report) {
  auto status = lines_.readLines([this](std::string_view line) { return takeHeaderLine(line); });
  if (status == fileformat::Update::rewritten) {
    *this = ComponentFile(path(), component_, baseIndex_);
    status = lines_.readLines([this](std::string_view line) { return takeHeaderLine(line); });
  }
  if (status == fileformat::Update::missing) {
    if (report) platform::consoleLine("No file " + path());
    return false;
  }
  if (!sawVariables_) {
    if (report)
      platform::consoleLine("*** Parameter : #QV_END VARIABLES is not found in file: " + path());
    return false;
  }
  if (!sawNames_) {
    if (report) platform::consoleLine("*** Parameter : NAMES in file: " + path() + " is not found");
    return false;
  }
  headerDone_ = true;
  return mapColumns(bodies);
}

bool ComponentFile::mapColumns(std::vector<BodyObject>& bodies) {
  std::vector<std::string> valueColumns;
  for (const std::string& variable : variables_) {
    if (variable != "T" && variable != "itnl") valueColumns.push_back(variable);
  }
  if (valueColumns.size() != names_.size()) {
    platform::consoleLine("*** Parameter : NAMES in file: " + path() + " is not found");
    return false;
  }
  // Where each name of the NAMES line points: "body" or "body:sub-body",
  // split at the first colon. The first body or sub-body of a name wins, as
  // the names are looked up in body order.
  std::unordered_map<std::string, Target> owners;
  for (std::size_t b = 0; b < bodies.size(); ++b) {
    if (bodies[b].name().find(':') != std::string::npos) continue;
    owners.try_emplace(bodies[b].name(), Target{static_cast<int>(b), -1, 0});
    for (std::size_t sub = 0; sub < bodies[b].subBodyCount(); ++sub) {
      owners.try_emplace(bodies[b].name() + ":" + bodies[b].subBody(sub).name(),
                         Target{static_cast<int>(b), static_cast<int>(sub), 0});
    }
  }
  columns_.assign(names_.size(), Target{});
  std::unordered_map<std::string, int> groupsSeen;
  for (std::size_t c = 0; c < names_.size(); ++c) {
    const std::string& name = names_[c];
    const auto owner = owners.find(name);
    if (owner == owners.end()) {
      platform::consoleLine((component_ == Component::force ? "Unknown body: " : "Unknow body ") +
                            name);
      continue;
    }
    columns_[c] = owner->second;
    columns_[c].index = baseIndex_ + groupsSeen[name]++;
  }
  return true;
}

bool ComponentFile::takeRow(std::string_view line, std::vector<BodyObject>& bodies,
                            bool reference) {
  if (fileformat::trim(line).empty() || line.starts_with("#")) return true;
  fileformat::TokenStream tokens(line, fileformat::TokenStream::MissingReal::quiet);
  std::string_view token;
  std::int32_t iteration = 0;
  if (!tokens.next(token)) return true;
  const double time = fileformat::isNonFiniteToken(token) ? 1.0 : fileformat::tokenReal(token);
  if (!tokens.readInteger(iteration)) {
    platform::consoleLine("Wrong eff file format, cannot read force value");
    return true;
  }
  if (rowsRead_ == 0 && bytesAhead_ != 0) {
    const std::size_t rows =
        static_cast<std::size_t>(bytesAhead_ / (line.size() + 1)) * 21 / 20 + 16;
    for (const Target& target : columns_) {
      if (target.body < 0) continue;
      BodyObject& body = bodies[static_cast<std::size_t>(target.body)];
      ComponentHistories& owner = target.subBody < 0
                                      ? static_cast<ComponentHistories&>(body)
                                      : body.subBody(static_cast<std::size_t>(target.subBody));
      owner.reserve(component_, target.index, rows);
    }
    if (reference)
      for (BodyObject& body : bodies) body.reserveRows(rows);
  }
  ++rowsRead_;
  if (reference) {
    for (BodyObject& body : bodies) {
      if (time >= 0.0) {
        body.addRowKey("T", time);
        body.addRowKey("itnl", iteration);
      } else {
        body.addConvergedTime(-time);
      }
    }
  }
  for (const Target& target : columns_) {
    if (!tokens.next(token)) {
      platform::consoleLine("Wrong eff file format, cannot read force value");
      break;
    }
    if (target.body < 0) continue;
    BodyObject& body = bodies[static_cast<std::size_t>(target.body)];
    ComponentHistories& owner = target.subBody < 0
                                    ? static_cast<ComponentHistories&>(body)
                                    : body.subBody(static_cast<std::size_t>(target.subBody));
    owner.store(component_, time, target.index, realToken(token));
  }
  return true;
}

fileformat::Update ComponentFile::update(std::vector<BodyObject>& bodies, bool reference) {
  if (!headerDone_ && !readHeader(bodies, false)) {
    return lines_.present() ? fileformat::Update::unchanged : fileformat::Update::missing;
  }
  if (rowsRead_ == 0) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path(), error);
    bytesAhead_ = error || size < lines_.offset() ? 0 : size - lines_.offset();
  }
  const fileformat::Update status =
      lines_.readLines([&](std::string_view line) { return takeRow(line, bodies, reference); });
  // What the bodies hold belongs to the old run: the owner starts over, and
  // this file with it, from its header.
  if (status == fileformat::Update::rewritten)
    *this = ComponentFile(path(), component_, baseIndex_);
  return status;
}

}  // namespace marine
