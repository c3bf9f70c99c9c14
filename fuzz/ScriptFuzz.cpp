// Scripts from bytes: the lexer and the command check must take any input
// and either give lines or a ScriptError that names a line of the input,
// never fail otherwise. The words of every line must also survive the
// comparison rules.
#include "app/ScriptCompare.h"
#include "app/ScriptRunner.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto lineCount = static_cast<int>(std::count(text.begin(), text.end(), '\n')) + 1;
    try {
        const auto lines = kt500::app::ParseScript(text);
        int previous = 0;
        for (const auto& line : lines) {
            if (line.words.empty() || line.number <= previous || line.number > lineCount) {
                std::abort();
            }
            previous = line.number;
            for (const auto& word : line.words) {
                (void)kt500::app::ValuesMatch(word, line.words.front());
            }
        }
    } catch (const kt500::app::ScriptError& error) {
        if (error.line() < 1 || error.line() > lineCount) {
            std::abort();
        }
    }
    return 0;
}
