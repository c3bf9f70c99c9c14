#include "app/ScriptLexer.h"

namespace kt500::app {

namespace {

bool isBlank(char c) noexcept {
    return c == ' ' || c == '\t' || c == '\r';
}

ScriptLine lexLine(std::string_view line, int number) {
    ScriptLine result{number, {}};
    std::size_t at = 0;
    while (true) {
        while (at < line.size() && isBlank(line[at])) {
            ++at;
        }
        if (at >= line.size()) {
            break;
        }
        if (line[at] == '#' &&
            (result.words.empty() || at + 1 == line.size() || isBlank(line[at + 1]))) {
            break;
        }
        std::string word;
        while (at < line.size() && !isBlank(line[at])) {
            if (line[at] != '"') {
                word += line[at++];
                continue;
            }
            ++at;
            bool closed = false;
            while (at < line.size()) {
                const char c = line[at++];
                if (c == '"') {
                    closed = true;
                    break;
                }
                if (c == '\\' && at < line.size() && (line[at] == '"' || line[at] == '\\')) {
                    word += line[at++];
                } else {
                    word += c;
                }
            }
            if (!closed) {
                throw ScriptError(number, "a quoted word is not closed");
            }
        }
        result.words.push_back(std::move(word));
    }
    return result;
}

}  // namespace

std::vector<ScriptLine> LexScript(std::string_view text) {
    std::vector<ScriptLine> lines;
    int number = 0;
    std::size_t start = 0;
    while (start <= text.size()) {
        const std::size_t end = text.find('\n', start);
        const std::size_t stop = end == std::string_view::npos ? text.size() : end;
        ++number;
        ScriptLine line = lexLine(text.substr(start, stop - start), number);
        if (!line.words.empty()) {
            lines.push_back(std::move(line));
        }
        if (end == std::string_view::npos) {
            break;
        }
        start = end + 1;
    }
    return lines;
}

}  // namespace kt500::app
