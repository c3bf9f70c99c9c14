// The messages of the built-in BL's connection, kept free of timing and
// device state so that they can be tested and fuzzed alone: a request
// document read into plain values (after validation against the
// communication schema), and reply documents written from plain values.
#pragma once

#include "xml/SchemaCollection.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kt500::simulator {

inline constexpr const char* kCommunicationNamespace = "x-schema:QDLCommunicationSchema.xml";

// One item of a request or a reply: the value element is named by type
// ("floatVal", "integerVal", "stringVal"); an empty type writes an item
// without a value element.
struct MessageItem {
    std::string name;
    std::string unit = "noUnit";
    std::string type;
    std::string value;

    friend bool operator==(const MessageItem&, const MessageItem&) = default;
};

struct CommunicationRequest {
    std::string name;
    std::string access;  // "read", "write" or "writeOffline"
    std::vector<MessageItem> items;
};

struct CommunicationReply {
    std::string name;
    std::string access = "read";
    std::string responseStatus = "ok";  // "ok", "local" or an error word
    bool isFinal = true;
    std::string errorCode;  // "", "missingItems" or another translation key
    std::vector<MessageItem> items;
};

// A status of the tree that a status push may carry after its reply.
struct StatusEntry {
    std::string group;
    std::string name;
    std::string statusClass;  // "alarm" or "warning"
    std::string value;
};

// The communication schema of a share folder (share/schemas); throws
// std::runtime_error when it does not compile.
[[nodiscard]] xml::SchemaCollection LoadCommunicationSchema(const std::filesystem::path& shareDir);

// The request of a document, or nothing when the bytes are not a well-formed
// request that the schema accepts (a reply document is no request either).
[[nodiscard]] std::optional<CommunicationRequest> ParseRequest(std::string_view bytes,
                                                               const xml::SchemaCollection& schema);

// A reply document holding one communicationResponse and, when tree is not
// empty, the status tree behind it.
[[nodiscard]] std::string BuildReply(const CommunicationReply& reply,
                                     const std::vector<StatusEntry>& tree = {});

}  // namespace kt500::simulator
