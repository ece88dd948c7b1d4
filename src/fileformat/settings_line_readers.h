// Readers of "KEYWORD values..." lines. Each takes one line apart into the
// values its caller needs; on a line of the wrong shape it prints a console
// line, fills the caller's LineStatus with a three-part diagnosis and leaves
// the results untouched. None of them looks at the keyword itself.
#pragma once

#include <string>

// The diagnosis of the last malformed line of one file being read.
struct LineStatus {
  std::string message;   // "line<N>: wrong format"
  std::string read;      // "read:     " + the line
  std::string expected;  // "expected: " + keyword + the form that was expected
  long lineNumber = 0;   // kept by the caller
  int ok = 1;            // set to 0 on a malformed line, never back to 1 here
};

// KEYWORD <strings>: `text` is the rest of the line after the keyword, blanks
// and tabs trimmed at both ends, inner ones kept. Needs the keyword.
int readStrings(LineStatus& status, std::string& text, const std::string& line);

// KEYWORD <string> <integer>: `word` is the second word; `rest` the words after
// it joined by single blanks. Needs two words; the number is not checked here.
int readStringInteger(LineStatus& status, std::string& word, std::string& rest,
                      const std::string& line);

// KEYWORD <string> <string>: the second and third words; further words are
// ignored. Needs three words.
int readStringString(LineStatus& status, std::string& second, std::string& third,
                     const std::string& line);
