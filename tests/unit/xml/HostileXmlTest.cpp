// The attacks outside XML may carry, against the one entry every load goes
// through: each is refused quickly with the parser's reason, and no file is
// read nor the network reached. What stays allowed at the edges (a UTF-8
// byte order mark, a declared UTF-8 in any spelling, 200 levels, quotes in
// a namespace name) loads and is written as text that reads back.
#include "support/HostileXml.h"
#include "xml/Document.h"

#include "TestFiles.h"

#include <gtest/gtest.h>

#include <chrono>

namespace kt500::xml {
namespace {

constexpr std::string_view kSecret = "TOP-SECRET-5c1e0b";

TEST(HostileXml, EveryAttackIsRefusedWithItsReasonAndTouchesNothing) {
    const test::ScratchFolder folder;
    const kt500::test::LoopbackListener listener;
    ASSERT_TRUE(listener.ready());
    const kt500::test::AttackTargets targets{folder.write("secret.txt", kSecret).string(),
                                             listener.url};
    const kt500::test::Envelope envelope{"<r>", "</r>"};
    for (const kt500::test::HostileAttack& attack : kt500::test::HostileAttacks()) {
        const std::string text = attack.build(envelope, targets);
        const auto start = std::chrono::steady_clock::now();
        const LoadResult result = Document::parse(text);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1)) << attack.name;
        ASSERT_FALSE(result.ok()) << attack.name;
        EXPECT_NE(result.error.find(attack.reason), std::string::npos)
            << attack.name << ": " << result.error;
        EXPECT_EQ(result.error.find(kSecret), std::string::npos) << attack.name;
    }
    EXPECT_FALSE(listener.wasContacted());
}

TEST(HostileXml, TheReasonNamesTheLineOfTheFault) {
    EXPECT_EQ(test::parseError("<r>\n<a/>\n<b>\xFF</b></r>"),
              "line 3: byte 0xFF at offset 12 is not UTF-8; only UTF-8 is read");
    std::string deep = "<r>\n";
    for (int i = 0; i < 300; ++i) {
        deep += "<n>";
    }
    EXPECT_EQ(test::parseError(deep), "line 2: elements nest deeper than 200 levels");
    EXPECT_EQ(test::parseError("<r>\n<xi:include xmlns:xi='http://www.w3.org/2003/XInclude'/></r>"),
              "line 2: XInclude is not allowed");
    // libxml2 would write such a namespace name back unescaped, as text that
    // does not read back.
    EXPECT_EQ(test::parseError("<r>\n<a xmlns='urn:a&lt;b'/></r>"),
              "line 2: a namespace name holds '<' or '&'");
    EXPECT_EQ(test::parseError("<r xmlns:p='http://h/?a=1&amp;b=2'/>"),
              "line 1: a namespace name holds '<' or '&'");
    EXPECT_EQ(test::parseError("<?xml version='1.0'?>\n\n<!DOCTYPE r PUBLIC 'p' 'x.dtd'>\n<r/>"),
              "line 3: DOCTYPE is not allowed");
    EXPECT_EQ(test::parseError("<r/>", {.maxBytes = 3}),
              "the document has 4 bytes, more than the 3 allowed");
    // UTF-16 without a byte order mark is told by its zero bytes.
    EXPECT_NE(test::parseError(std::string("<\0r\0/\0>\0", 8)).find("UTF-16 or UTF-32"),
              std::string::npos);
}

TEST(HostileXml, WhatIsAllowedAtTheEdgesLoads) {
    std::string deepest = "<r>";
    for (int i = 1; i < 200; ++i) {
        deepest += "<n>";
    }
    for (int i = 1; i < 200; ++i) {
        deepest += "</n>";
    }
    deepest += "</r>";
    for (const std::string& text :
         {deepest, std::string("\xEF\xBB\xBF<r>Ventil \xC3\xA4 \xE2\x82\xAC</r>"),
          std::string("<?xml version='1.0' encoding='utf-8'?><r/>"),
          std::string("<?xml version='1.0' encoding='UTF8'?><r/>"),
          std::string("<r xmlns:x='http://www.w3.org/2001/XIncludeNot'><x:include/></r>"),
          std::string("<r xmlns:q='urn:\"q\"' xmlns:a=\"urn:'a'&quot;\"><q:s a:t='&lt;&amp;'/></r>")}) {
        const LoadResult result = Document::parse(text);
        ASSERT_TRUE(result.ok()) << result.error;
        const LoadResult again = Document::parse(result.document->toXml());
        EXPECT_TRUE(again.ok()) << again.error << "\n" << result.document->toXml();
    }
}

}  // namespace
}  // namespace kt500::xml
