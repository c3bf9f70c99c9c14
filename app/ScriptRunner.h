// The headless frame: runs an automation script against the control and
// the built-in BL, playing the frame and the user, and prints what the
// script asks for. docs/scripting.md describes the language.
//
// Exit status: 0 when every expect held; 1 when one failed (the script goes
// on and reports each); 2 when the script cannot run (an unknown command,
// control, target or device key, a malformed line): the error names the
// line, and the script stops there.
#pragma once

#include "app/ScriptLexer.h"
#include "app/ControlSession.h"

#include <filesystem>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace kt500::app {

// Lexes a script and checks each line's command and number of words, so
// that a misspelt command stops the script before it starts. Pure; throws
// ScriptError naming the line.
[[nodiscard]] std::vector<ScriptLine> ParseScript(std::string_view text);

class ScriptRunner {
public:
    static constexpr int kPassed = 0;
    static constexpr int kExpectFailed = 1;
    static constexpr int kCannotRun = 2;

    ScriptRunner(const std::filesystem::path& shareDir, std::ostream& out);

    // Runs the script; errors of status 2 go to err as "line N: why". A
    // further run goes on in the same session, so a driver may feed a
    // script a few lines at a time.
    int run(std::string_view text, std::ostream& err);

    // The session the script drives, for a driver that looks between runs.
    [[nodiscard]] ControlSession& session() noexcept { return m_session; }

private:
    void execute(const ScriptLine& line);
    void start(const ScriptLine& line);
    void session(const ScriptLine& line);
    void click(const ScriptLine& line);
    void type(const ScriptLine& line);
    void focus(const ScriptLine& line);
    void select(const ScriptLine& line);
    void check(const ScriptLine& line);
    void node(const ScriptLine& line);
    void toolbarClick(const ScriptLine& line);
    void row(const ScriptLine& line);
    void answer(const ScriptLine& line);
    void wait(const ScriptLine& line);
    void bl(const ScriptLine& line);
    void get(const ScriptLine& line);
    void expect(const ScriptLine& line);
    void messages();
    void requests();
    void looking(const ScriptLine& line);

    ControlSession m_session;
    std::ostream& m_out;
    int m_failures = 0;
};

// Runs a script and returns its exit status.
int RunScript(std::string_view text, const std::filesystem::path& shareDir, std::ostream& out,
              std::ostream& err);

}  // namespace kt500::app
