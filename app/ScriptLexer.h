// The words of an automation script, line by line. Pure: no I/O, no control,
// so that the lexer can be tested and fuzzed alone.
//
// Words are separated by blanks (spaces, tabs). A double quote opens a
// quoted part that runs to the next unescaped double quote; inside it `\"`
// is a quote and `\\` a backslash (any other backslash stays as written).
// Quoted and plain parts next to each other make one word, so `""` is an
// empty word. A `#` where a word would begin starts a comment when it is
// the first word of the line or is followed by a blank or the line's end;
// `#2` later in a line is a word (the list index of `select`). Lines that
// hold no word are left out.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace kt500::app {

// A script that cannot run: its line (from 1; 0 for the whole script) and why.
class ScriptError : public std::runtime_error {
public:
    ScriptError(int line, const std::string& message)
        : std::runtime_error("line " + std::to_string(line) + ": " + message), m_line(line) {}
    [[nodiscard]] int line() const noexcept { return m_line; }

private:
    int m_line;
};

struct ScriptLine {
    int number = 0;  // from 1
    std::vector<std::string> words;
};

// Throws ScriptError for a quote left open at the line's end.
[[nodiscard]] std::vector<ScriptLine> LexScript(std::string_view text);

}  // namespace kt500::app
