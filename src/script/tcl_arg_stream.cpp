#include "script/tcl_arg_stream.h"

#include <tcl.h>

#include <cstring>
#include <limits>

#include "fileformat/number_text.h"

namespace {

std::int32_t toInt32(const char* text) {
  return static_cast<std::int32_t>(fileformat::leadingInteger(
      text, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()));
}

}  // namespace

TclArgStream::TclArgStream(int count, const char* const* items) {
  pushLevel(count, items, nullptr);
}

TclArgStream::~TclArgStream() {
  for (Level& level : levels_) {
    if (level.splitElements != nullptr) Tcl_Free(reinterpret_cast<char*>(level.splitElements));
  }
}

void TclArgStream::pushLevel(int count, const char* const* items, const char** owned) {
  Level level;
  level.count = count;
  level.items = items;
  level.splitElements = owned;
  level.state = count < 1 ? kEnd : 0;
  levels_.push_back(level);
}

const char* TclArgStream::next() {
  Level& level = current();
  if (level.position < level.count) return level.items[level.position++];
  level.state |= kEnd;
  return nullptr;
}

ArgStream& TclArgStream::beginList() {
  // A level is always opened, so that every endList has its beginList: when
  // there is no list to read, the level is empty and at its end.
  const char* list = good() ? next() : nullptr;
  if (list == nullptr) {
    pushLevel(0, nullptr, nullptr);
    return *this;
  }
  int count = 0;
  const char** elements = nullptr;
  // A malformed list reads as no elements.
  if (Tcl_SplitList(nullptr, list, &count, &elements) != TCL_OK) {
    count = 0;
    elements = nullptr;
  }
  pushLevel(count, elements, elements);
  return *this;
}

ArgStream& TclArgStream::endList() {
  if (levels_.size() < 2) return *this;
  if (current().splitElements != nullptr)
    Tcl_Free(reinterpret_cast<char*>(current().splitElements));
  levels_.pop_back();
  return *this;
}

template <typename Container>
ArgStream& TclArgStream::extractIntegerList(Container& values) {
  beginList();
  while (current().position < current().count) values.push_back(toInt32(next()));
  return endList();
}

ArgStream& TclArgStream::operator>>(std::list<int>& values) { return extractIntegerList(values); }

ArgStream& TclArgStream::operator>>(std::vector<int>& values) { return extractIntegerList(values); }

ArgStream& TclArgStream::operator>>(std::int64_t& value) {
  if (!good()) return *this;
  const char* item = next();
  if (item == nullptr) {
    markMissing();
    return *this;
  }
  value = fileformat::leadingInteger(item, std::numeric_limits<std::int64_t>::min(),
                                     std::numeric_limits<std::int64_t>::max());
  return *this;
}

ArgStream& TclArgStream::operator>>(std::int32_t& value) {
  if (!good()) return *this;
  const char* item = next();
  if (item == nullptr) {
    markMissing();
    return *this;
  }
  value = toInt32(item);
  return *this;
}

ArgStream& TclArgStream::extractPlainInteger(std::int32_t& value) {
  const char* item = next();
  if (good()) value = toInt32(item);
  return *this;
}

ArgStream& TclArgStream::operator>>(float& value) {
  const char* item = next();
  if (good()) value = static_cast<float>(fileformat::leadingDouble(item));
  return *this;
}

ArgStream& TclArgStream::operator>>(double& value) {
  const char* item = next();
  if (good()) value = fileformat::leadingDouble(item);
  return *this;
}

ArgStream& TclArgStream::operator>>(char& value) {
  const char* item = next();
  if (!good()) return *this;
  if (std::strlen(item) == 1) {
    value = item[0];
  } else {
    markMissing();
  }
  return *this;
}

ArgStream& TclArgStream::extractText(std::string& text, std::size_t capacity) {
  const char* item = next();
  if (!good()) return *this;
  const std::size_t length = std::strlen(item);
  if (length < capacity) {
    text.assign(item, length);
  } else {
    markMissing();
  }
  return *this;
}
