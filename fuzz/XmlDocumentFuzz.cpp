// Feeds arbitrary bytes to the document parser, without and with a small
// schema collection, and exercises what the product does with a document that
// loads: serialising, XPath with prefixes, cloning and editing.
#include "xml/Document.h"
#include "xml/SchemaCollection.h"
#include "xml/XPath.h"

#include <unistd.h>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string_view>

namespace {

using namespace kt500::xml;

constexpr std::string_view kSchema = R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema"
    targetNamespace="x-schema:QDLCommunicationSchema.xml" elementFormDefault="qualified">
  <xs:element name="dtm">
    <xs:complexType>
      <xs:sequence>
        <xs:any processContents="lax" minOccurs="0" maxOccurs="unbounded"/>
      </xs:sequence>
      <xs:anyAttribute processContents="lax"/>
    </xs:complexType>
  </xs:element>
  <xs:element name="item">
    <xs:complexType>
      <xs:choice minOccurs="0">
        <xs:element name="floatVal" type="xs:float"/>
        <xs:element name="stringVal" type="xs:string"/>
      </xs:choice>
      <xs:attribute name="name" type="xs:string" use="required"/>
      <xs:attribute name="unit" type="xs:string"/>
    </xs:complexType>
  </xs:element>
</xs:schema>
)";

const SchemaCollection& schemas() {
    static const SchemaCollection collection = [] {
        const auto file = std::filesystem::temp_directory_path() /
                          ("kt500-fuzz-schema-" + std::to_string(::getpid()) + ".xsd");
        std::ofstream(file, std::ios::binary) << kSchema;
        SchemaCollection built;
        const std::string reason = built.add("x-schema:QDLCommunicationSchema.xml", file);
        std::filesystem::remove(file);
        if (!reason.empty()) {
            std::abort();  // the fuzz target's own schema must compile
        }
        return built;
    }();
    return collection;
}

void exercise(const Document& document) {
    (void)document.toXml();
    Document copy = document.clone();
    const XPath xpath(copy,
                      Namespaces::fromSelection("xmlns:c='x-schema:QDLCommunicationSchema.xml' "
                                                "xmlns:data='x-schema:QDLDatafileSchema.xml'"));
    for (Node item : xpath.select("//c:item | //data:parameter")) {
        (void)item.attribute("name");
        (void)item.text();
        for (Node attribute : xpath.select("@*", item)) {
            (void)attribute.text();
        }
    }
    Node root = copy.root();
    root.setAttribute("checked", "1 & <2>");
    root.appendElement("added").setText("x");
    if (Node first = root.firstChildElement()) {
        first.cloneInto(root);
    }
    const LoadResult again = Document::parse(copy.toXml());
    if (!again.ok()) {
        std::abort();  // what the product writes must read back
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    ParseOptions options;
    options.maxBytes = 1U << 20U;
    const LoadResult plain = Document::parse(bytes, options);
    if (plain.ok()) {
        exercise(*plain.document);
    }
    options.schemas = &schemas();
    const LoadResult validated = Document::parse(bytes, options);
    if (validated.ok()) {
        exercise(*validated.document);
    } else {
        (void)validated.message();
    }
    return 0;
}
