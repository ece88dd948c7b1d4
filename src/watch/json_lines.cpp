#include "watch/json_lines.h"

#include <cmath>

#include "watch/number_text.h"

namespace watch {
namespace {

constexpr std::string_view kReplacementCharacter = "\\ufffd";

bool continuation(std::string_view text, std::size_t at) {
  return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;
}

// The length of the well-formed UTF-8 sequence of two to four bytes that
// starts at `at`; 0 when none does (a stray byte, an overlong form, a
// surrogate, a code point beyond U+10FFFF, or a cut sequence).
std::size_t multiByteSequence(std::string_view text, std::size_t at) {
  const auto lead = static_cast<unsigned char>(text[at]);
  const auto second = at + 1 < text.size() ? static_cast<unsigned char>(text[at + 1]) : 0u;
  std::size_t length = 0;
  unsigned lowest = 0x80;
  unsigned highest = 0xBF;
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3;
    if (lead == 0xE0) lowest = 0xA0;
    if (lead == 0xED) highest = 0x9F;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4;
    if (lead == 0xF0) lowest = 0x90;
    if (lead == 0xF4) highest = 0x8F;
  } else {
    return 0;
  }
  if (second < lowest || second > highest) return 0;
  for (std::size_t k = 2; k < length; ++k) {
    if (!continuation(text, at + k)) return 0;
  }
  return length;
}

void appendAscii(char c, std::string& out) {
  switch (c) {
    case '"':
      out += "\\\"";
      return;
    case '\\':
      out += "\\\\";
      return;
    case '\n':
      out += "\\n";
      return;
    case '\r':
      out += "\\r";
      return;
    case '\t':
      out += "\\t";
      return;
    default:
      break;
  }
  if (static_cast<unsigned char>(c) < 0x20) {
    constexpr char kHex[] = "0123456789abcdef";
    out += "\\u00";
    out += kHex[(c >> 4) & 0xF];
    out += kHex[c & 0xF];
    return;
  }
  out += c;
}

std::string number(double value) { return std::isfinite(value) ? exactNumber(value) : "null"; }

std::string numberOrNull(const std::optional<double>& value) {
  return value ? number(*value) : "null";
}

void writeCurve(std::ostream& out, const CurveReport& curve) {
  const convergence::Verdict& verdict = curve.verdict;
  const bool judged = verdict.state != convergence::State::shortSeries;
  out << "{\"name\":" << jsonString(curve.name)
      << ",\"points\":" << std::to_string(curve.points.size())
      << ",\"last\":" << numberOrNull(curve.last())
      << ",\"transientEnd\":" << numberOrNull(verdict.transientEnd)
      << ",\"mean\":" << (judged ? number(verdict.mean) : "null")
      << ",\"halfWidth\":" << (judged ? number(verdict.halfWidth) : "null")
      << ",\"confidence\":" << number(verdict.confidence)
      << ",\"drift\":" << (verdict.drift ? "true" : "false")
      << ",\"period\":" << numberOrNull(verdict.period)
      << ",\"verdict\":" << jsonString(convergence::stateName(verdict.state)) << "}";
}

void writeComputation(std::ostream& out, const ComputationReport& computation) {
  out << "{\"path\":" << jsonString(computation.path)
      << ",\"mode\":" << jsonString(modeName(computation.mode))
      << ",\"stamp\":" << (computation.stamp ? jsonString(*computation.stamp) : "null")
      << ",\"rows\":" << std::to_string(computation.rows) << ",\"curves\":[";
  bool first = true;
  for (const CurveReport& curve : computation.curves) {
    if (!curve.shown) continue;
    if (!first) out << ",";
    first = false;
    writeCurve(out, curve);
  }
  out << "]}";
}

}  // namespace

std::string jsonString(std::string_view text) {
  std::string out = "\"";
  out.reserve(text.size() + 2);
  for (std::size_t i = 0; i < text.size();) {
    if (static_cast<unsigned char>(text[i]) < 0x80) {
      appendAscii(text[i++], out);
    } else if (const std::size_t length = multiByteSequence(text, i); length > 0) {
      out.append(text.substr(i, length));
      i += length;
    } else {
      out += kReplacementCharacter;
      ++i;
    }
  }
  out += '"';
  return out;
}

void writeJsonLine(std::ostream& out, std::string_view time,
                   std::span<const ComputationReport* const> computations) {
  out << "{\"time\":" << jsonString(time) << ",\"computations\":[";
  for (std::size_t c = 0; c < computations.size(); ++c) {
    if (c > 0) out << ",";
    writeComputation(out, *computations[c]);
  }
  out << "]}\n" << std::flush;
}

}  // namespace watch
