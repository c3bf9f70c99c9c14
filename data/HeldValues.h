// HeldValues: the last value the device reported for each parameter, as it
// came on the wire (text with ".", in the reply's unit). A write that must
// carry an item the user did not confirm (a partner of a value that is
// written only together with others) takes the device's own value from here
// rather than what the page shows, which may be an unconfirmed or refused
// edit.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

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

private:
    std::unordered_map<std::string, HeldValue> m_values;
};

}  // namespace kt500::data
