// The reply text the built-in BL sends for one monitoring cycle of a KT520:
// what the monitoring benchmarks feed the control.
#pragma once

namespace kt500::bench {

inline constexpr const char* kMonitoringReply =
    "<?xml version=\"1.0\"?>\n<dtm xmlns=\"x-schema:QDLCommunicationSchema.xml\">"
    "<communicationResponse name=\"monitoringVariables\" access=\"read\" responseStatus=\"ok\" "
    "isFinal=\"1\" errorCode=\"\">"
    "<item name=\"travelSetpoint\" unit=\"%\"><floatVal>45.0</floatVal></item>"
    "<item name=\"valveTravel\" unit=\"%\"><floatVal>44.8</floatVal></item>"
    "<item name=\"inputSignal\" unit=\"mA\"><floatVal>11.20</floatVal></item>"
    "<item name=\"actuatorPressure\" unit=\"barG\"><floatVal>2.35</floatVal></item>"
    "<item name=\"pcbTemperature\" unit=\"degC\"><floatVal>34.5</floatVal></item>"
    "</communicationResponse></dtm>";

}  // namespace kt500::bench
