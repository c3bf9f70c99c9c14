// What must hold after every step of a random session: the device and the
// data set receive only values that stood ticked in the confirmation list
// (or that they hold already), nothing else of them changes, a refused
// value never becomes a pending row, the step shows only the message boxes
// it called for, after settle the toolbar is idle, and a clean read of the
// page shows the device's values.
#pragma once

#include "random/RandomSession.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace kt500::random {

class SessionInvariants {
public:
    explicit SessionInvariants(app::ControlSession& session) : m_session(session) {}

    // Takes what the step is judged against; forgets earlier boxes and requests.
    void before();
    // Each broken invariant as one line; empty when all hold.
    [[nodiscard]] std::vector<std::string> after(const Step& step);

private:
    struct Row {
        bool checked = false;
        std::string name;
        std::string newValue;
        std::string page;
        // What the row's text meant when the row was made: the page's unit,
        // and for a list entry its item data (the text is of the language
        // of that moment).
        std::string unit;
        std::optional<int> itemData;
    };
    // The context of each row as first seen, by name and new value.
    std::map<std::pair<std::string, std::string>, std::pair<std::string, std::optional<int>>>
        m_rowContext;
    [[nodiscard]] std::map<std::string, std::string> deviceValues() const;
    [[nodiscard]] std::map<std::string, std::string> dataSetValues() const;
    [[nodiscard]] bool sameAsRow(const Row& row, const std::string& wire,
                                 const std::string& wireUnit) const;
    [[nodiscard]] std::string confirmedDate(const std::string& held) const;
    [[nodiscard]] double toUnit(double value, const std::string& from, const std::string& to) const;
    void checkBoxes(const Step& step, std::vector<std::string>& broken) const;
    void checkWrites(std::vector<std::string>& broken, std::map<std::string, std::string>& written);
    void checkChanges(const std::map<std::string, std::string>& written,
                      std::vector<std::string>& broken) const;
    void checkIdle(std::vector<std::string>& broken) const;
    void checkTypedField(const Step& step, std::vector<std::string>& broken) const;
    void checkPage(std::vector<std::string>& broken) const;

    app::ControlSession& m_session;
    std::vector<Row> m_rows;
    std::map<std::string, std::string> m_device;
    std::map<std::string, std::string> m_dataSet;
    bool m_readSeen = false;
    // Groups of an injected fault that no request has met yet (the send it
    // was meant for was stopped by a refused value): the BL fails the
    // group's next request, whichever step posts it.
    std::set<std::string> m_pendingFaults;
    std::set<std::string> m_requested;  // the groups the step posted  // the step posted a read: a page with nothing to upload posts none
};

}  // namespace kt500::random
