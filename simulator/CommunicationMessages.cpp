#include "simulator/CommunicationMessages.h"

#include "xml/Document.h"

#include <stdexcept>

namespace kt500::simulator {

namespace {

// Requests are small; anything beyond this is refused before parsing.
constexpr std::size_t kMaxRequestBytes = 1024U * 1024U;

}  // namespace

xml::SchemaCollection LoadCommunicationSchema(const std::filesystem::path& shareDir) {
    xml::SchemaCollection schema;
    const std::string error =
        schema.add(kCommunicationNamespace, shareDir / "schemas" / "QDLCommunicationSchema.xml");
    if (!error.empty()) {
        throw std::runtime_error("communication schema: " + error);
    }
    return schema;
}

std::optional<CommunicationRequest> ParseRequest(std::string_view bytes,
                                                 const xml::SchemaCollection& schema) {
    const xml::LoadResult loaded =
        xml::Document::parse(bytes, {.schemas = &schema, .maxBytes = kMaxRequestBytes});
    if (!loaded.ok()) {
        return std::nullopt;
    }
    const xml::Node request = loaded.document->root().firstChildElement("communicationRequest");
    if (!request) {
        return std::nullopt;
    }
    CommunicationRequest parsed;
    parsed.name = request.attribute("name");
    parsed.access = request.attribute("access");
    for (const xml::Node& item : request.childElements("item")) {
        const xml::Node value = item.firstChildElement();
        parsed.items.push_back(
            {item.attribute("name"), item.attribute("unit"), value.name(), value.text()});
    }
    return parsed;
}

std::string BuildReply(const CommunicationReply& reply, const std::vector<StatusEntry>& tree) {
    xml::Document document = xml::Document::create("dtm", kCommunicationNamespace);
    xml::Node response = document.root().appendElement("communicationResponse");
    response.setAttribute("name", reply.name);
    response.setAttribute("access", reply.access);
    response.setAttribute("responseStatus", reply.responseStatus);
    response.setAttribute("isFinal", reply.isFinal ? "1" : "0");
    response.setAttribute("errorCode", reply.errorCode);
    for (const MessageItem& item : reply.items) {
        xml::Node element = response.appendElement("item");
        element.setAttribute("name", item.name);
        element.setAttribute("unit", item.unit);
        if (!item.type.empty()) {
            element.appendElement(item.type).setText(item.value);
        }
    }
    if (!tree.empty()) {
        xml::Node status = document.root().appendElement("deviceStatus");
        xml::Node group;
        for (const StatusEntry& entry : tree) {
            if (!group || group.attribute("name") != entry.group) {
                group = status.appendElement("statusGroup");
                group.setAttribute("name", entry.group);
            }
            xml::Node leaf = group.appendElement("status");
            leaf.setAttribute("name", entry.name);
            if (!entry.statusClass.empty()) {
                leaf.setAttribute("class", entry.statusClass);
            }
            leaf.setAttribute("value", entry.value);
        }
    }
    return document.toXml();
}

}  // namespace kt500::simulator
