// HeldValues: the last value the device reported for each parameter, as it
// came on the wire (text with ".", in the reply's unit). A write that must
// carry an item the user did not confirm (a partner of a value that is
// written only together with others) takes the device's own value from here
// rather than what the page shows, which may be an unconfirmed or refused
// edit. A write's values become the device's own when the device confirms
// the write, so that a later write of a partner never puts an older value
// back.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace kt500::data {

struct HeldValue {
    std::string value;
    std::string unit;
};

class HeldValues {
public:
    void hold(const std::string& strName, const std::string& strValue, const std::string& strUnit) {
        m_values[strName] = HeldValue{strValue, strUnit};
    }
    // The value last reported for strName; nullptr when none came yet.
    [[nodiscard]] const HeldValue* find(std::string_view strName) const {
        const auto found = m_values.find(std::string(strName));
        return found == m_values.end() ? nullptr : &found->second;
    }

    // The values of a write of strGroup sent to the device, held once it
    // confirms the write (written) and forgotten when it fails (notWritten).
    void sent(const std::string& strGroup, std::vector<std::pair<std::string, HeldValue>> values) {
        m_sent[strGroup] = std::move(values);
    }
    void written(const std::string& strGroup) {
        const auto found = m_sent.find(strGroup);
        if (found == m_sent.end()) {
            return;
        }
        for (auto& [name, value] : found->second) {
            m_values[name] = std::move(value);
        }
        m_sent.erase(found);
    }
    void notWritten(const std::string& strGroup) { m_sent.erase(strGroup); }

private:
    std::unordered_map<std::string, HeldValue> m_values;
    std::unordered_map<std::string, std::vector<std::pair<std::string, HeldValue>>> m_sent;
};

}  // namespace kt500::data
