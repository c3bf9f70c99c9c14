#include "app/ScriptRunner.h"
#include "app/ScriptFiles.h"

#include "app/ScriptCompare.h"
#include "app/ScriptTargets.h"
#include "app/ScriptViews.h"
#include "services/IDtmDialogs.h"

#include <QDir>
#include <QTemporaryDir>

#include <algorithm>
#include <charconv>
#include <limits>
#include <map>

namespace kt500::app {

namespace {

constexpr std::size_t kAny = std::numeric_limits<std::size_t>::max();

struct Arity {
    std::size_t min;
    std::size_t max;  // words, the command's own included
};

const std::map<std::string, Arity, std::less<>>& commands() {
    static const std::map<std::string, Arity, std::less<>> table = {
        {"start", {2, 9}},        {"session", {2, kAny}}, {"release", {1, 1}},   {"click", {2, 2}},
        {"type", {3, 3}},         {"focus", {2, 2}},      {"select", {3, 3}},    {"check", {3, 3}},
        {"node", {2, 2}},
        {"toolbar", {1, 2}},      {"row", {3, 4}},        {"answer", {2, kAny}}, {"wait", {2, 2}},
        {"settle", {1, 1}},       {"bl", {2, kAny}},      {"get", {2, 2}},       {"expect", {4, 4}},
        {"messages", {1, 1}},     {"requests", {1, 1}},   {"tree", {1, 1}},      {"status", {1, 1}},
        {"confirmation", {1, 1}}, {"chart", {2, 3}},    {"file", {2, 2}},
        {"write", {3, 4}},        {"digest", {1, 1}},     {"list", {2, 2}},
        {"rows", {2, 2}},
    };
    return table;
}

const std::map<std::string, int, std::less<>>& answers() {
    static const std::map<std::string, int, std::less<>> table = {
        {"yes", services::ButtonYes},
        {"no", services::ButtonNo},
        {"ok", services::ButtonOk},
        {"cancel", services::ButtonCancel},
    };
    return table;
}

bool isBlCommand(std::string_view word) {
    static constexpr std::string_view kWords[] = {
        "fail",     "refuse",  "set",     "status",  "reply", "ready",
        "complete", "stopped", "calmode", "request", "lock",  "unlock",
    };
    return std::find(std::begin(kWords), std::end(kWords), word) != std::end(kWords);
}

// A whole number from low up, or nothing.
std::optional<std::int64_t> wholeNumber(std::string_view text, std::int64_t low) {
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || error != std::errc() || end != text.data() + text.size() || value < low) {
        return std::nullopt;
    }
    return value;
}

std::optional<bool> flag(std::string_view text) {
    if (text == "1") {
        return true;
    }
    if (text == "0") {
        return false;
    }
    return std::nullopt;
}

// "1", "0 to 1", "at least 1": the words a command takes after its name.
std::string wordsAfter(const Arity& arity) {
    const std::string low = std::to_string(arity.min - 1);
    if (arity.max == kAny) {
        return "at least " + low;
    }
    return arity.min == arity.max ? low : low + " to " + std::to_string(arity.max - 1);
}

void checkLine(const ScriptLine& line) {
    const std::string& name = line.words.front();
    const auto found = commands().find(name);
    if (found == commands().end()) {
        throw ScriptError(line.number, "unknown command '" + name + "'");
    }
    const std::size_t count = line.words.size();
    if (count < found->second.min || count > found->second.max) {
        throw ScriptError(line.number,
                          "'" + name + "' takes " + wordsAfter(found->second) + " words after it");
    }
    const auto& w = line.words;
    const auto bad = [&](const std::string& why) { throw ScriptError(line.number, why); };
    if (name == "session") {
        for (std::size_t i = 1; i < count; ++i) {
            if (w[i].find('=') == std::string::npos || w[i].front() == '=') {
                bad("session: '" + w[i] + "' is not WORD=VALUE");
            }
        }
    } else if (name == "check" && !flag(w[2])) {
        bad("check: the value must be 0 or 1, not '" + w[2] + "'");
    } else if (name == "row" && (!wholeNumber(w[1], 1) || (w[2] != "on" && w[2] != "off"))) {
        bad("row: expects a row number from 1 and on or off");
    } else if (name == "answer") {
        for (std::size_t i = 1; i < count; ++i) {
            if (!answers().contains(w[i])) {
                bad("answer: '" + w[i] + "' is not yes, no, ok or cancel");
            }
        }
    } else if (name == "wait" && !wholeNumber(w[1], 0)) {
        bad("wait: expects milliseconds (a whole number from 0), not '" + w[1] + "'");
    } else if (name == "bl" && !isBlCommand(w[1])) {
        bad("unknown command 'bl " + w[1] + "'");
    } else if (name == "write" && count == 4 && !wholeNumber(w[3], 1)) {
        bad("write: the count must be a whole number from 1, not '" + w[3] + "'");
    } else if (name == "expect" && w[2] != "=" && w[2] != "!=") {
        bad("expect: TARGET.PROPERTY = VALUE or TARGET.PROPERTY != VALUE");
    }
}

}  // namespace

std::vector<ScriptLine> ParseScript(std::string_view text) {
    std::vector<ScriptLine> lines = LexScript(text);
    for (const ScriptLine& line : lines) {
        checkLine(line);
    }
    return lines;
}

ScriptRunner::ScriptRunner(const std::filesystem::path& shareDir, std::ostream& out)
    : m_session(shareDir), m_out(out) {}

int ScriptRunner::run(std::string_view text, std::ostream& err) {
    try {
        for (const ScriptLine& line : ParseScript(text)) {
            try {
                execute(line);
            } catch (const ScriptError&) {
                throw;
            } catch (const std::exception& failure) {
                throw ScriptError(line.number, failure.what());
            }
        }
    } catch (const ScriptError& error) {
        m_out.flush();
        err << error.what() << '\n';
        return kCannotRun;
    }
    return m_failures > 0 ? kExpectFailed : kPassed;
}

void ScriptRunner::execute(const ScriptLine& line) {
    const std::string& name = line.words.front();
    if (name == "start") {
        return start(line);
    }
    if (!m_session.started()) {
        throw ScriptError(line.number, "no session: '" + name + "' needs a start before it");
    }
    if (name == "session") {
        session(line);
    } else if (name == "release") {
        m_session.release();
    } else if (name == "click") {
        click(line);
    } else if (name == "type") {
        type(line);
    } else if (name == "focus") {
        focus(line);
    } else if (name == "select") {
        select(line);
    } else if (name == "check") {
        check(line);
    } else if (name == "node") {
        node(line);
    } else if (name == "toolbar" && line.words.size() == 2) {
        toolbarClick(line);
    } else if (name == "row") {
        row(line);
    } else if (name == "answer") {
        answer(line);
    } else if (name == "wait") {
        wait(line);
    } else if (name == "settle") {
        m_session.settle();
    } else if (name == "bl") {
        bl(line);
    } else if (name == "get") {
        get(line);
    } else if (name == "expect") {
        expect(line);
    } else if (name == "messages") {
        messages();
    } else if (name == "requests") {
        requests();
    } else {
        looking(line);
    }
}

void ScriptRunner::start(const ScriptLine& line) {
    simulator::SessionOptions options;
    options.deviceKey = line.words[1];
    const auto bad = [&](const std::string& why) { throw ScriptError(line.number, why); };
    const auto flagOf = [&](const std::string& word, const std::string& value) {
        const auto on = flag(value);
        if (!on) {
            bad("start: " + word + " takes 0 or 1, not '" + value + "'");
        }
        return *on;
    };
    for (std::size_t i = 2; i < line.words.size(); ++i) {
        const std::string& word = line.words[i];
        const auto equals = word.find('=');
        const std::string key = word.substr(0, equals);
        const std::string value = equals == std::string::npos ? "" : word.substr(equals + 1);
        if (word == "online" || word == "offline") {
            options.online = word == "online";
        } else if (equals == std::string::npos) {
            bad("start: unknown word '" + word + "'");
        } else if (key == "role") {
            options.role = value;
        } else if (key == "language") {
            options.language = value;
        } else if (key == "frameLanguage") {
            options.frameLanguage = value;
        } else if (key == "privateDialog") {
            options.privateDialog = flagOf(key, value);
        } else if (key == "savePath") {
            options.savePath = value;
        } else if (key == "locked") {
            options.locked = flagOf(key, value);
        } else {
            bad("start: unknown word '" + word + "'");
        }
    }
    try {
        (void)m_session.start(options);
    } catch (const std::invalid_argument& unknownKey) {
        bad(unknownKey.what());
    }
}

void ScriptRunner::session(const ScriptLine& line) {
    std::vector<std::pair<std::string, std::string>> changes;
    for (std::size_t i = 1; i < line.words.size(); ++i) {
        const std::string& word = line.words[i];
        const auto equals = word.find('=');
        changes.emplace_back(word.substr(0, equals), word.substr(equals + 1));
    }
    m_session.updateSessionData(changes);
}

void ScriptRunner::click(const ScriptLine& line) {
    form::Control& control = ScriptTargets(m_session).control(line.words[1]);
    // A disabled control takes no click, as on screen.
    if (control.has(form::PropertyId::Enabled) && !control.enabled()) {
        return;
    }
    form::Form& form = *control.form();
    switch (control.kind()) {
        case form::ControlKind::CheckBox:
            // Setting Value raises the click.
            control.setValue(control.value() == 1.0 ? 0.0 : 1.0);
            break;
        case form::ControlKind::OptionButton:
            if (control.value() == 0.0) {
                control.setValue(1.0);
            } else {
                form.raiseClick(control);
            }
            break;
        default:
            form.raiseClick(control);
            break;
    }
}

void ScriptRunner::type(const ScriptLine& line) {
    form::Control& control = ScriptTargets(m_session).control(line.words[1]);
    const std::string& text = line.words[2];
    form::Form& form = *control.form();
    form.raiseGotFocus(control);
    // The key of the edit: the text's first character, or a backspace that
    // emptied the field.
    constexpr int kBackspace = 8;
    (void)form.raiseKeyPress(control,
                             text.empty() ? kBackspace : static_cast<unsigned char>(text.front()));
    control.setText(text);
    form.raiseLostFocus(control);
}

void ScriptRunner::focus(const ScriptLine& line) {
    form::Control& control = ScriptTargets(m_session).control(line.words[1]);
    form::Form& form = *control.form();
    // The focus passes through the field: no key, no change.
    form.raiseGotFocus(control);
    form.raiseLostFocus(control);
}

void ScriptRunner::select(const ScriptLine& line) {
    form::Control& control = ScriptTargets(m_session).control(line.words[1]);
    const std::string& choice = line.words[2];
    int index = -1;
    if (choice.size() > 1 && choice.front() == '#') {
        const auto number = wholeNumber(std::string_view(choice).substr(1), 0);
        if (!number || *number >= control.listCount()) {
            throw ScriptError(line.number, control.displayName() + " has no entry " + choice +
                                               " (ListCount " +
                                               std::to_string(control.listCount()) + ")");
        }
        index = static_cast<int>(*number);
    } else {
        for (int i = 0; i < control.listCount(); ++i) {
            if (control.list(i) == choice) {
                index = i;
                break;
            }
        }
        if (index < 0) {
            throw ScriptError(line.number,
                              control.displayName() + " has no entry '" + choice + "'");
        }
    }
    form::Form& form = *control.form();
    form.raiseGotFocus(control);
    if (control.listIndex() == index) {
        form.raiseClick(control);  // the same entry again: no change, still a click
    } else {
        control.setListIndex(index);  // raises the click
    }
    form.raiseLostFocus(control);
}

void ScriptRunner::check(const ScriptLine& line) {
    form::Control& control = ScriptTargets(m_session).control(line.words[1]);
    const double value = line.words[2] == "1" ? 1.0 : 0.0;
    if (control.value() == value) {
        control.form()->raiseClick(control);
    } else {
        control.setValue(value);  // raises the click
    }
}

void ScriptRunner::node(const ScriptLine& line) {
    form::Control& tree = ScriptTargets(m_session).navigationTree();
    const std::string& key = line.words[1];
    if (tree.tree().find(key) == nullptr) {
        throw ScriptError(line.number, "unknown node '" + key + "' of " + tree.name());
    }
    // The tree view selects the node under the mouse, then raises the click.
    tree.tree().select(key);
    tree.form()->raiseNodeClick(tree, key);
}

void ScriptRunner::toolbarClick(const ScriptLine& line) {
    form::Control& bar = ScriptTargets(m_session).toolbar();
    const std::string& key = line.words[1];
    const form::ToolbarItem* item = bar.toolbar().find(key);
    if (item == nullptr) {
        throw ScriptError(line.number, "unknown toolbar item '" + key + "'");
    }
    if (!item->enabled) {
        return;  // as on screen
    }
    if (item->style == form::ToolbarItemStyle::Check) {
        bar.toolbar().setPressed(key, !item->pressed);
    }
    bar.form()->raiseToolbarClick(bar, key);
}

void ScriptRunner::row(const ScriptLine& line) {
    const std::string name = line.words.size() == 4 ? line.words[3] : "lsvConfirmation";
    form::Control& list = ScriptTargets(m_session).control(name);
    if (list.kind() != form::ControlKind::ListView) {
        throw ScriptError(line.number, list.displayName() + " is not a list view");
    }
    const auto number = *wholeNumber(line.words[1], 1);
    if (number > list.listView().count()) {
        throw ScriptError(line.number, name + " has no row " + line.words[1] + " (" +
                                           std::to_string(list.listView().count()) + " rows)");
    }
    list.form()->raiseItemCheck(list, static_cast<int>(number), line.words[2] == "on");
}

void ScriptRunner::answer(const ScriptLine& line) {
    for (std::size_t i = 1; i < line.words.size(); ++i) {
        m_session.dialogs().queueAnswer(answers().find(line.words[i])->second);
    }
}

void ScriptRunner::wait(const ScriptLine& line) {
    m_session.wait(*wholeNumber(line.words[1], 0));
}

void ScriptRunner::bl(const ScriptLine& line) {
    try {
        m_session.bl().simulatedControl().inject({line.words.begin() + 1, line.words.end()});
    } catch (const std::invalid_argument& failure) {
        throw ScriptError(line.number, failure.what());
    }
    m_session.deliverDue();
}

void ScriptRunner::get(const ScriptLine& line) {
    // Read first: a target that does not exist prints nothing.
    const std::string value = ScriptTargets(m_session).read(line.words[1]);
    m_out << line.words[1] << '=' << value << '\n';
}

void ScriptRunner::expect(const ScriptLine& line) {
    const std::string& target = line.words[1];
    const bool equal = line.words[2] == "=";
    const std::string& expected = line.words[3];
    const std::string actual = ScriptTargets(m_session).read(target);
    if (ValuesMatch(expected, actual) != equal) {
        ++m_failures;
        m_out << "line " << line.number << ": expected " << target << ' ' << line.words[2] << ' '
              << expected << ", actual " << actual << '\n';
    }
}

void ScriptRunner::messages() {
    for (const simulator::RecordedBox& box : m_session.dialogs().takeBoxes()) {
        m_out << "message " << box.header << " | " << box.text << '\n';
    }
}

void ScriptRunner::requests() {
    if (const std::size_t dropped = m_session.recorder().droppedRequests(); dropped > 0) {
        m_out << "requests dropped " << dropped << " (the record keeps the last "
              << RecordingControl::kKeptRequests << ")\n";
    }
    for (RecordedRequest& request : m_session.recorder().takeRequests()) {
        // One line a request: the line breaks of the document go.
        std::erase(request.request, '\n');
        std::erase(request.request, '\r');
        m_out << "request " << request.operation << ' ' << request.request << '\n';
    }
}

void ScriptRunner::looking(const ScriptLine& line) {
    const ScriptTargets targets(m_session);
    const std::string& name = line.words.front();
    if (name == "tree") {
        PrintTree(targets.navigationTree(), m_out);
    } else if (name == "status") {
        PrintTree(targets.statusTree(), m_out);
        PrintStatusHeader(targets.toolbar(), m_out);
    } else if (name == "confirmation") {
        PrintConfirmation(targets.control("lsvConfirmation"), m_out);
    } else if (name == "toolbar") {
        PrintToolbar(targets.toolbar(), m_out);
    } else if (name == "chart") {
        const form::Control& chart = targets.control(line.words[1]);
        if (chart.kind() != form::ControlKind::Chart) {
            throw ScriptError(line.number, chart.displayName() + " is not a chart");
        }
        int last = -1;
        if (line.words.size() == 3 && line.words[2] == "labels") {
            PrintChartLabels(chart, m_out);
            return;
        }
        if (line.words.size() == 3) {
            const std::string& count = line.words[2];
            if (count.empty() || count.find_first_not_of("0123456789") != std::string::npos ||
                count.size() > 6) {
                throw ScriptError(line.number, "not a count of points: '" + count + "'");
            }
            last = std::stoi(count);
        }
        PrintChart(chart, m_out, last);
    } else if (name == "list") {
        const form::Control& list = targets.control(line.words[1]);
        if (list.kind() != form::ControlKind::ListView) {
            throw ScriptError(line.number, list.displayName() + " is not a list view");
        }
        PrintListView(list, m_out);
    } else if (name == "file") {
        PrintFile(line.words[1], m_out);
    } else if (name == "rows") {
        const form::Control& listView = targets.control(line.words[1]);
        if (listView.kind() != form::ControlKind::ListView) {
            throw ScriptError(line.number, listView.displayName() + " is not a list view");
        }
        PrintListRows(listView, m_out);
    } else if (name == "digest") {
        PrintDigest(m_session.control(), m_out);
    } else if (name == "write") {
        WriteScriptFile(line.words[1], line.words[2],
                        line.words.size() == 4 ? *wholeNumber(line.words[3], 1) : 1);
    }
}

int RunScript(std::string_view text, const std::filesystem::path& shareDir, std::ostream& out,
              std::ostream& err) {
    // A relative file name (a log file the script chooses) lands in a
    // folder of the run, gone with it.
    const QTemporaryDir scratch;
    const QString before = QDir::currentPath();
    if (scratch.isValid()) {
        QDir::setCurrent(scratch.path());
    }
    ScriptRunner runner(shareDir, out);
    const int status = runner.run(text, err);
    QDir::setCurrent(before);
    return status;
}

}  // namespace kt500::app
