#include "tests/support/capture.h"
#include "xmlp/xmlp_internal.h"

#include <gtest/gtest.h>
#include <string_view>

using std::string_view_literals::operator""sv;

namespace {

uint32_t lengthOf(std::string_view text) {
    return static_cast<uint32_t>(text.size());
}

TEST(Bytes, BelongToTheirClasses) {
    const auto forbids = [](std::string_view bytes, char byte) {
        return bytes.find(byte) != std::string_view::npos ? 1 : 0;
    };
    for (int value = 0; value < 256; ++value) {
        const char byte = static_cast<char>(value);
        EXPECT_EQ(_isWhiteSpace(byte), forbids(" \t\n\r"sv, byte)) << value;
        EXPECT_EQ(xmlp_isValidName(&byte, 1), 1 - forbids("\0\t\n\r \"&/<=>"sv, byte)) << value;
        EXPECT_EQ(xmlp_isValidAttrValue(&byte, 1), 1 - forbids("\0\"&<>"sv, byte)) << value;
        EXPECT_EQ(xmlp_isValidChar(&byte, 1), 1 - forbids("&/<>"sv, byte)) << value;
        const int step = value < 0xC2 || value > 0xF4 ? 1 : value < 0xE0 ? 2 : value < 0xF0 ? 3 : 4;
        EXPECT_EQ(_utf8CharLen[value], step) << value;
    }
    EXPECT_EQ(xmlp_isValidName("ab c", 4), 0);
    EXPECT_EQ(xmlp_isValidName("ab c", 2), 1);
    EXPECT_EQ(xmlp_isValidName("", 0), 1);
    EXPECT_STREQ(_skipWhiteSpace(" \t\r\nx "), "x ");
}

TEST(Bytes, ComparesNamesToTheEnd) {
    const struct {
        std::string_view name;
        const char *stored;
        int result;
    } cases[] = {
        {"abcd", "abcd", 0},
        {"abcdefgh", "abcdefgh", 0},
        {"abcde", "abcde", 0},
        {"", "", 0},
        {"abc", "abcd", -1},
        {"abcd", "abc", -1},
        {"abcdefgh", "abcd", -1},
        {"abcdx", "abcdy", -1},
        {"", "a", -1},
        {"a\0b"sv, "a", -1},
    };
    for (const auto &test : cases) {
        EXPECT_EQ(xmlp_nameCmp(test.name.data(), lengthOf(test.name), test.stored), test.result)
            << test.name << " " << test.stored;
    }
}

TEST(Entities, TranslateBothWays) {
    const struct {
        std::string_view raw;
        std::string_view escaped;
    } cases[] = {
        {"", ""},
        {"plain \"text'", "plain \"text'"},
        {"a<b>&\"", "a&lt;b&gt;&amp;\""},
        {"&lt;", "&amp;lt;"},
        {"<<<", "&lt;&lt;&lt;"},
        {"\xC3\xA4\0&"sv, "\xC3\xA4\0&amp;"sv},
    };
    for (const auto &test : cases) {
        std::string buffer(64, '#');
        EXPECT_EQ(xmlp_transStrLen(test.raw.data(), lengthOf(test.raw)), test.escaped.size());
        char *end = xmlp_transStr(buffer.data(), test.raw.data(), lengthOf(test.raw));
        EXPECT_EQ(std::string_view(buffer.data(), end), test.escaped);
        EXPECT_EQ(*end, '#') << "no terminator is written";

        EXPECT_EQ(xmlp_unTransStrLen(test.escaped.data(), lengthOf(test.escaped)), test.raw.size());
        end = xmlp_unTransStr(buffer.data(), test.escaped.data(), lengthOf(test.escaped));
        EXPECT_EQ(std::string_view(buffer.data(), end), test.raw);
    }
}

TEST(Entities, RefuseOtherReferences) {
    for (const std::string_view text : {"&", "x&y", "&LT;", "&quot;", "&#60;", "&lt", "&amp", "&am",
                                        "&l", "a&lt;&gt", "&amp;&"}) {
        // A copy of exact size, so that a sanitizer sees a read past the range.
        const std::vector<char> exact(text.begin(), text.end());
        char buffer[16];
        EXPECT_EQ(xmlp_unTransStrLen(exact.data(), lengthOf(text)), 0u) << text;
        EXPECT_EQ(xmlp_unTransStr(buffer, exact.data(), lengthOf(text)), nullptr) << text;
    }
}

TEST(Bytes, ReportNullArguments) {
    char buffer[1] = {};
    EXPECT_EQ(linesOf([&] {
                  EXPECT_EQ(xmlp_nameCmp(nullptr, 0, ""), -1);
                  EXPECT_EQ(xmlp_nameCmp("", 0, nullptr), -1);
                  EXPECT_EQ(xmlp_isValidName(nullptr, 0), 0);
                  EXPECT_EQ(xmlp_isValidAttrValue(nullptr, 0), 0);
                  EXPECT_EQ(xmlp_isValidChar(nullptr, 0), 0);
                  EXPECT_EQ(xmlp_transStrLen(nullptr, 0), 0u);
                  EXPECT_EQ(xmlp_transStr(buffer, nullptr, 0), nullptr);
                  EXPECT_EQ(xmlp_unTransStrLen(nullptr, 0), 0u);
                  EXPECT_EQ(xmlp_unTransStr(nullptr, buffer, 0), nullptr);
                  EXPECT_EQ(_skipWhiteSpace(nullptr), nullptr);
              }),
              (Lines{"xmlp_nameCmp: invalid params.", "xmlp_nameCmp: invalid params.",
                     "xmlp_isValidName: buf is null.", "xmlp_isValidAttrValue: buf is null.",
                     "xmlp_isValidChar: buf is null.", "xmlp_transStrLen: str is null.",
                     "xmlp_transStr: invalid params.", "xmlp_unTransStrLen: str is null.",
                     "xmlp_unTransStr: invalid params.", "_skipWhiteSpace: buf is null."}));
}

} // namespace
