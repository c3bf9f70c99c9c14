// Outside input must never make the parser read a file, reach the network or
// expand entities: every DOCTYPE is refused before its declarations are read,
// and the entity loader denies every URL even to a parser asked to load them.
#include "support/HostileXml.h"
#include "xml/Document.h"
#include "xml/XPath.h"

#include "TestFiles.h"

#include <gtest/gtest.h>
#include <libxml/xmlmemory.h>

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace kt500::xml {
namespace {

using test::parseError;
using test::ScratchFolder;

constexpr std::string_view kSecret = "TOP-SECRET-7f3a9c";

// The peak of the bytes libxml2 holds while the meter lives; libxml2's
// allocator hooks are process-wide, so the former ones come back at the end.
class AllocationMeter {
public:
    AllocationMeter() {
        xmlGcMemGet(&m_free, &m_malloc, &m_mallocAtomic, &m_realloc, &m_strdup);
        s_current = s_peak = 0;
        xmlGcMemSetup(&release, &allocate, &allocate, &reallocate, &duplicate);
    }
    ~AllocationMeter() { xmlGcMemSetup(m_free, m_malloc, m_mallocAtomic, m_realloc, m_strdup); }
    AllocationMeter(const AllocationMeter&) = delete;
    AllocationMeter& operator=(const AllocationMeter&) = delete;
    static long long peakBytes() { return s_peak; }

private:
    static long long size(void* p) {
        return p != nullptr ? static_cast<long long>(malloc_usable_size(p)) : 0;
    }
    static void count(long long bytes) { s_peak = std::max(s_peak, s_current += bytes); }
    static void* allocate(std::size_t bytes) {
        void* p = std::malloc(bytes);
        count(size(p));
        return p;
    }
    static void* reallocate(void* p, std::size_t bytes) {
        const long long before = size(p);
        void* q = std::realloc(p, bytes);
        count(q != nullptr ? size(q) - before : 0);
        return q;
    }
    static void release(void* p) {
        count(-size(p));
        std::free(p);
    }
    static char* duplicate(const char* text) {
        return std::strcpy(static_cast<char*>(allocate(std::strlen(text) + 1)), text);
    }

    static inline long long s_current = 0;
    static inline long long s_peak = 0;
    xmlFreeFunc m_free = nullptr;
    xmlMallocFunc m_malloc = nullptr;
    xmlMallocFunc m_mallocAtomic = nullptr;
    xmlReallocFunc m_realloc = nullptr;
    xmlStrdupFunc m_strdup = nullptr;
};

// Documents that refer to reference as an external entity, a parameter
// entity and an external DTD.
std::vector<std::string> referringTo(const std::string& reference) {
    return {"<!DOCTYPE r [<!ENTITY s SYSTEM '" + reference + "'>]><r>&s;</r>",
            "<!DOCTYPE r [<!ENTITY s SYSTEM '" + reference + "'>]><r a='&s;'/>",
            "<!DOCTYPE r [<!ENTITY % p SYSTEM '" + reference + "'> %p;]><r/>",
            "<!DOCTYPE r SYSTEM '" + reference + "'><r/>"};
}

class XmlSecurityTest : public ::testing::Test {
protected:
    ScratchFolder m_folder;
    const std::filesystem::path m_secretFile = m_folder.write("secret.txt", kSecret);
    const kt500::test::LoopbackListener m_listener;
    const std::vector<std::string> m_references = {"file://" + m_secretFile.string(),
                                                   m_secretFile.string(), m_listener.url};
};

TEST_F(XmlSecurityTest, EntityLoaderDeniesEvenAParserThatAsksForEntities) {
    initialiseLibrary();
    ::testing::internal::CaptureStderr();
    for (const auto& reference : m_references) {
        for (const std::string& text : referringTo(reference)) {
            // Options the product never uses: substitute entities and load the DTD.
            XmlDocPtr doc(xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr,
                                        nullptr,
                                        XML_PARSE_NOENT | XML_PARSE_DTDLOAD | XML_PARSE_RECOVER));
            ASSERT_TRUE(doc) << text;
            xmlChar* bytes = nullptr;
            int size = 0;
            xmlDocDumpMemory(doc.get(), &bytes, &size);
            const XmlCharPtr owned(bytes);
            EXPECT_EQ(std::string_view(reinterpret_cast<char*>(bytes)).find(kSecret),
                      std::string_view::npos)
                << text;
        }
    }
    EXPECT_FALSE(m_listener.wasContacted());
    // Nor does libxml2 print its complaints: its default handlers are silenced.
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

// The refusal comes before the declarations are expanded: little memory.
TEST(XmlSecurity, EntityExpansionIsRefusedInLittleMemory) {
    const kt500::test::Envelope envelope{"<r>", "</r>"};
    for (const kt500::test::HostileAttack& attack : kt500::test::HostileAttacks()) {
        if (attack.name != "billion laughs" && attack.name != "quadratic blowup") {
            continue;
        }
        const std::string text = attack.build(envelope, {});
        const AllocationMeter meter;
        EXPECT_NE(parseError(text).find("DOCTYPE is not allowed"), std::string::npos);
        EXPECT_LT(AllocationMeter::peakBytes(), 2 * static_cast<long long>(text.size()) + 65536)
            << attack.name;
    }
}

}  // namespace
}  // namespace kt500::xml
