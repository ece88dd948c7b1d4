// A strict reader of JSON text for the tests of the watch's JSON output: it
// refuses what a JSON parser would refuse (a trailing comma, a bare control
// character or invalid UTF-8 in a string, NaN, a number with a leading zero
// or a lone '.', text after the value), so that a test that reads a line
// back also shows that the line is valid JSON.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace testjson {

struct Value {
  enum class Kind { null, boolean, number, string, array, object };
  Kind kind = Kind::null;
  bool boolean = false;
  double number = 0.0;
  std::string text;
  std::vector<Value> items;
  std::vector<std::pair<std::string, Value>> members;

  bool isNull() const { return kind == Kind::null; }
  bool has(std::string_view key) const {
    for (const auto& member : members) {
      if (member.first == key) return true;
    }
    return false;
  }
  const Value& operator[](std::string_view key) const {
    for (const auto& member : members) {
      if (member.first == key) return member.second;
    }
    throw std::out_of_range("no member \"" + std::string(key) + "\"");
  }
  const Value& operator[](std::size_t index) const { return items.at(index); }
  std::vector<std::string> keys() const {
    std::vector<std::string> names;
    for (const auto& member : members) names.push_back(member.first);
    return names;
  }
};

class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  Value document() {
    Value value = parseValue();
    skipBlanks();
    if (at_ != text_.size()) fail("text after the value");
    return value;
  }

 private:
  [[noreturn]] void fail(const std::string& what) const {
    throw std::runtime_error("invalid JSON at byte " + std::to_string(at_) + ": " + what);
  }
  void skipBlanks() {
    while (at_ < text_.size() &&
           (text_[at_] == ' ' || text_[at_] == '\t' || text_[at_] == '\n' || text_[at_] == '\r'))
      ++at_;
  }
  bool take(char c) {
    skipBlanks();
    if (at_ < text_.size() && text_[at_] == c) {
      ++at_;
      return true;
    }
    return false;
  }
  void expect(char c) {
    if (!take(c)) fail(std::string("expected '") + c + "'");
  }
  bool takeWord(std::string_view word) {
    if (text_.substr(at_, word.size()) != word) return false;
    at_ += word.size();
    return true;
  }
  bool digitAt(std::size_t i) const {
    return i < text_.size() && text_[i] >= '0' && text_[i] <= '9';
  }

  Value parseValue() {
    skipBlanks();
    if (at_ >= text_.size()) fail("missing value");
    Value value;
    const char c = text_[at_];
    if (c == '{') return parseObject();
    if (c == '[') return parseArray();
    if (c == '"') {
      value.kind = Value::Kind::string;
      value.text = parseString();
    } else if (takeWord("null")) {
      value.kind = Value::Kind::null;
    } else if (takeWord("true")) {
      value.kind = Value::Kind::boolean;
      value.boolean = true;
    } else if (takeWord("false")) {
      value.kind = Value::Kind::boolean;
    } else {
      value.kind = Value::Kind::number;
      value.number = parseNumber();
    }
    return value;
  }

  Value parseObject() {
    Value value;
    value.kind = Value::Kind::object;
    expect('{');
    if (take('}')) return value;
    do {
      skipBlanks();
      if (at_ >= text_.size() || text_[at_] != '"') fail("expected a member name");
      std::string key = parseString();
      expect(':');
      value.members.emplace_back(std::move(key), parseValue());
    } while (take(','));
    expect('}');
    return value;
  }

  Value parseArray() {
    Value value;
    value.kind = Value::Kind::array;
    expect('[');
    if (take(']')) return value;
    do {
      value.items.push_back(parseValue());
    } while (take(','));
    expect(']');
    return value;
  }

  double parseNumber() {
    const std::size_t start = at_;
    if (at_ < text_.size() && text_[at_] == '-') ++at_;
    if (!digitAt(at_)) fail("expected a number");
    if (text_[at_] == '0') {
      ++at_;
    } else {
      while (digitAt(at_)) ++at_;
    }
    if (at_ < text_.size() && text_[at_] == '.') {
      ++at_;
      if (!digitAt(at_)) fail("a fraction needs digits");
      while (digitAt(at_)) ++at_;
    }
    if (at_ < text_.size() && (text_[at_] == 'e' || text_[at_] == 'E')) {
      ++at_;
      if (at_ < text_.size() && (text_[at_] == '+' || text_[at_] == '-')) ++at_;
      if (!digitAt(at_)) fail("an exponent needs digits");
      while (digitAt(at_)) ++at_;
    }
    return std::strtod(std::string(text_.substr(start, at_ - start)).c_str(), nullptr);
  }

  unsigned hexDigits() {
    if (at_ + 4 > text_.size()) fail("short \\u escape");
    unsigned value = 0;
    for (int i = 0; i < 4; ++i) {
      const char c = text_[at_++];
      value *= 16;
      if (c >= '0' && c <= '9') {
        value += static_cast<unsigned>(c - '0');
      } else if (c >= 'a' && c <= 'f') {
        value += static_cast<unsigned>(c - 'a' + 10);
      } else if (c >= 'A' && c <= 'F') {
        value += static_cast<unsigned>(c - 'A' + 10);
      } else {
        fail("bad \\u escape");
      }
    }
    return value;
  }

  static void appendUtf8(std::uint32_t code, std::string& out) {
    if (code < 0x80) {
      out += static_cast<char>(code);
    } else if (code < 0x800) {
      out += static_cast<char>(0xC0 | (code >> 6));
      out += static_cast<char>(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
      out += static_cast<char>(0xE0 | (code >> 12));
      out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
      out += static_cast<char>(0x80 | (code & 0x3F));
    } else {
      out += static_cast<char>(0xF0 | (code >> 18));
      out += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
      out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
      out += static_cast<char>(0x80 | (code & 0x3F));
    }
  }

  // One UTF-8 character copied as it stands; refuses malformed sequences.
  void copyUtf8(std::string& out) {
    const auto lead = static_cast<unsigned char>(text_[at_]);
    std::size_t length = 0;
    std::uint32_t code = 0;
    if (lead >= 0xC2 && lead <= 0xDF) {
      length = 2;
      code = lead & 0x1F;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
      length = 3;
      code = lead & 0x0F;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
      length = 4;
      code = lead & 0x07;
    } else {
      fail("invalid UTF-8");
    }
    if (at_ + length > text_.size()) fail("cut UTF-8 sequence");
    for (std::size_t k = 1; k < length; ++k) {
      const auto next = static_cast<unsigned char>(text_[at_ + k]);
      if ((next & 0xC0) != 0x80) fail("invalid UTF-8");
      code = (code << 6) | (next & 0x3F);
    }
    const std::uint32_t lowest = length == 2 ? 0x80 : length == 3 ? 0x800 : 0x10000;
    if (code < lowest || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF))
      fail("invalid UTF-8");
    out.append(text_.substr(at_, length));
    at_ += length;
  }

  std::string parseString() {
    ++at_;  // the opening quote
    std::string out;
    while (true) {
      if (at_ >= text_.size()) fail("unterminated string");
      const char c = text_[at_];
      if (c == '"') {
        ++at_;
        return out;
      }
      if (static_cast<unsigned char>(c) < 0x20) fail("control character in a string");
      if (static_cast<unsigned char>(c) >= 0x80) {
        copyUtf8(out);
        continue;
      }
      ++at_;
      if (c != '\\') {
        out += c;
        continue;
      }
      if (at_ >= text_.size()) fail("cut escape");
      const char escaped = text_[at_++];
      switch (escaped) {
        case '"':
        case '\\':
        case '/':
          out += escaped;
          break;
        case 'b':
          out += '\b';
          break;
        case 'f':
          out += '\f';
          break;
        case 'n':
          out += '\n';
          break;
        case 'r':
          out += '\r';
          break;
        case 't':
          out += '\t';
          break;
        case 'u': {
          std::uint32_t code = hexDigits();
          if (code >= 0xD800 && code <= 0xDBFF) {
            if (!takeWord("\\u")) fail("lone surrogate");
            const unsigned low = hexDigits();
            if (low < 0xDC00 || low > 0xDFFF) fail("bad surrogate pair");
            code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
          } else if (code >= 0xDC00 && code <= 0xDFFF) {
            fail("lone surrogate");
          }
          appendUtf8(code, out);
          break;
        }
        default:
          fail("bad escape");
      }
    }
  }

  std::string_view text_;
  std::size_t at_ = 0;
};

// Throws std::runtime_error, saying where, for text that is not one JSON value.
inline Value parse(std::string_view text) { return Reader(text).document(); }

}  // namespace testjson
