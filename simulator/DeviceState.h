// What the simulated device holds, apart from the data set: its own value of
// every parameter (starting from the data set's values when the connection
// opens), its status items, and the description of parameters, request
// groups and statuses that the parameter document gives. The data set
// itself is the live parameter document, which the host reads and edits;
// DeviceState writes a parameter's value and synchronised state into it
// when a write or an offline write asks for that.
#pragma once

#include "simulator/CommunicationMessages.h"
#include "xml/Document.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kt500::simulator {

struct ParameterInfo {
    std::string name;
    std::string access;  // "read", "write", "readWrite"
    std::string type;    // "floatVal", "integerVal", "stringVal"
    std::string unit;    // the device's unit, "noUnit" when none
    std::string minVal;  // "" when unbounded; for a stringVal the longest length is maxVal
    std::string maxVal;
};

struct GroupInfo {
    std::string name;
    int requestCount = 1;
    std::vector<std::string> parameters;  // in sending order
};

class DeviceState {
public:
    // Reads the description from the data set; the device's values start as
    // the data set's values and every status as "0".
    explicit DeviceState(xml::Document& dataSet);

    [[nodiscard]] const ParameterInfo* parameter(const std::string& name) const;
    [[nodiscard]] const GroupInfo* group(const std::string& name) const;
    [[nodiscard]] std::string publishedProtocol() const { return m_protocol; }

    // Where measured values come from: a parameter that the source gives a
    // value for reads that value instead of the stored one.
    using LiveValues = std::function<std::optional<std::string>(const std::string&)>;
    void setLiveValues(LiveValues live) { m_live = std::move(live); }

    // The device's own value; nothing for a name the device lacks.
    [[nodiscard]] std::optional<std::string> value(const std::string& name) const;
    // Throws std::invalid_argument for a name the device lacks.
    void setValue(const std::string& name, const std::string& value);
    // The reply item of a parameter, with the device's value and unit.
    [[nodiscard]] MessageItem item(const std::string& name) const;

    // "" when the device takes the value for the parameter, else the error
    // word of the refusal: "invalidValue" (read-only parameter, not a number,
    // a string too long), "outOfRange" (beyond minVal or maxVal).
    [[nodiscard]] static std::string checkWrite(const ParameterInfo& parameter,
                                                const std::string& value);

    // The status items in tree order, with their values; a status set
    // through setStatus that the tree lacks is kept apart and not listed.
    [[nodiscard]] std::vector<StatusEntry> statuses() const;
    [[nodiscard]] std::string statusValue(const std::string& name) const;
    // True when the value changed.
    bool setStatus(const std::string& name, const std::string& value);

    // The data set: a parameter's value and synchronised state in the live
    // parameter document. False for a name the document lacks.
    bool storeInDataSet(const std::string& name, const std::string& value,
                        const std::string& synchronised);
    [[nodiscard]] std::string dataSetAttribute(const std::string& name,
                                               const std::string& attribute) const;

private:
    [[nodiscard]] xml::Node dataSetNode(const std::string& name) const;

    xml::Document& m_dataSet;
    LiveValues m_live;
    std::string m_protocol;
    std::map<std::string, ParameterInfo, std::less<>> m_parameters;
    std::map<std::string, GroupInfo, std::less<>> m_groups;
    std::map<std::string, std::string, std::less<>> m_values;
    std::vector<StatusEntry> m_statusTree;
    std::map<std::string, std::string, std::less<>> m_statusValues;
};

}  // namespace kt500::simulator
