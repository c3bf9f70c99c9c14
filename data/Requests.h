// Requests: turns a request group and an access word into the XML request
// of the wire format and hands it to the BL. Items and values travel
// between the two steps as separator-joined strings.
#pragma once

#include "data/HeldValues.h"
#include "devices/IUserControl.h"

#include <string>
#include <string_view>

namespace kt500::data {

// The one template that every request is built from.
inline constexpr const char* RequestTemplateText =
    "<?xml version='1.0'?><dtm xmlns='x-schema:QDLCommunicationSchema.xml'>"
    "<communicationRequest name='1' access='read'><item name='1' unit='noUnit'>"
    "<floatVal>1</floatVal></item></communicationRequest></dtm>";

// A request that starts a device action and is sent as it stands:
// "positionControlAutocalibration", "automaticPrestageTrim",
// "pneumaticsTest", "valveTest".
[[nodiscard]] std::string AutoActionRequest(std::string_view strName);

class Requests {
public:
    Requests(devices::IUserControl& control, HeldValues& held)
        : m_control(control), m_held(held) {}

    // Lists the group's parameters (and, for a write, the changed ones with
    // their page values) and sends them. str_accessType: "read", "write" or
    // "writeOffline".
    void SendRequest(const std::string& str_frame, const std::string& str_accessType);
    // Builds the XML from the item and value strings and sends it; an empty
    // strValues sets no value texts.
    void RequestTemplate(const std::string& strItems, const std::string& strValues);

private:
    // The copy's request group of that name, or nothing.
    // The unit of an item: "noUnit", or the device's unit of the page unit.
    [[nodiscard]] std::string unitField(const std::string& strName);
    // One value for each item of strItems, read from the page shown. With
    // blConfirmedOnly (a write of the user's changes) an item that no
    // checked row holds carries the device's own value (the data set's
    // offline), never what the page shows of it.
    [[nodiscard]] std::string valueString(const std::string& strItems, bool blConfirmedOnly);
    // The value the device (offline the data set) holds of strName as it
    // goes on the wire for an item of that unit; "" when it is not known.
    [[nodiscard]] std::string ownValue(const std::string& strName, const std::string& strUnit);
    // The data set's value of strName for an item of that unit.
    [[nodiscard]] std::string dataSetValue(const std::string& strName, const std::string& strUnit);
    // The device date with the page's day, month and year where a checked
    // row confirms them and the device's own parts elsewhere.
    [[nodiscard]] std::string confirmedDeviceDate();
    // Keeps the values of an online write until its reply: strItems are the
    // request's name, type and unit triples, strValues one value for each.
    void rememberWritten(const std::string& strGroup, const std::string& strItems,
                         const std::string& strValues);
    // The BL did not take the request: signs off, tools back.
    void refused();

    devices::IUserControl& m_control;
    HeldValues& m_held;
};

}  // namespace kt500::data
