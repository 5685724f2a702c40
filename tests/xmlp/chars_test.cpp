#include "tests/support/bounds.h"
#include "tests/support/capture.h"
#include "tests/support/cases.h"
#include "xmlp/xmlp_internal.h"

#include <string_view>
#include <vector>

namespace {

using std::string_view_literals::operator""sv;

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
}

TEST(Bytes, OfWhiteSpaceAreSkipped) {
    for (const std::string space : {"", " ", "\t\r\n ", "    \n\n"}) {
        for (const std::string rest : {"", "x ", "\v "}) {
            const std::string text = space + rest;
            EXPECT_EQ(_skipWhiteSpace(text.c_str()), text.c_str() + space.size()) << text;
        }
    }
}

TEST(Bytes, ComparesNamesToTheEnd) {
    forEachCase("names.cases", [](const Case &test) {
        const std::string name = test.text("name");
        const std::string stored = test.text("stored");
        const Guarded guarded(name);
        const Guarded guardedStored(stored + '\0');
        EXPECT_EQ(xmlp_nameCmp(guarded.data(), lengthOf(name), guardedStored.data()),
                  name == stored ? 0 : -1);
    });
}

TEST(Entities, TranslateBothWays) {
    forEachCase("entities.cases", [](const Case &test) {
        const std::string raw = test.text("raw");
        const std::string escaped = test.text("escaped");
        std::string buffer(64, '#');
        EXPECT_EQ(xmlp_transStrLen(raw.data(), lengthOf(raw)), escaped.size());
        const char *end = xmlp_transStr(buffer.data(), raw.data(), lengthOf(raw));
        EXPECT_EQ(std::string_view(buffer.data(), end), escaped);
        EXPECT_EQ(*end, '#') << "no terminator is written";

        EXPECT_EQ(xmlp_unTransStrLen(escaped.data(), lengthOf(escaped)), raw.size());
        end = xmlp_unTransStr(buffer.data(), escaped.data(), lengthOf(escaped));
        EXPECT_EQ(std::string_view(buffer.data(), end), raw);
    });
}

TEST(Entities, EscapeEveryByteAtEveryPlace) {
    // Vectors of exact size, so that a sanitizer sees an access beside either text.
    const auto check = [](size_t size, size_t place, char byte) {
        std::vector<char> raw(size, 'x');
        raw[place] = byte;
        std::string escaped(raw.begin(), raw.end());
        escaped.replace(place, 1,
                        byte == '<'   ? "&lt;"
                        : byte == '>' ? "&gt;"
                        : byte == '&' ? "&amp;"
                                      : std::string(1, byte));
        ASSERT_EQ(xmlp_transStrLen(raw.data(), static_cast<uint32_t>(size)), escaped.size());
        std::vector<char> result(escaped.size());
        char *end = xmlp_transStr(result.data(), raw.data(), static_cast<uint32_t>(size));
        ASSERT_EQ(end, result.data() + result.size());
        ASSERT_EQ(std::string(result.begin(), result.end()), escaped);
    };
    for (size_t size = 1; size <= 20; ++size) {
        for (size_t place = 0; place < size; ++place) {
            for (int value = 0; value < 256; ++value) {
                check(size, place, static_cast<char>(value));
            }
        }
    }
}

TEST(Entities, RefuseOtherReferences) {
    for (const std::string_view text : {"&", "x&y", "&LT;", "&quot;", "&#60;", "&lt", "&amp", "&am",
                                        "&l", "a&lt;&gt", "&amp;&"}) {
        const Guarded exact(text);
        char buffer[16];
        EXPECT_EQ(xmlp_unTransStrLen(exact.data(), lengthOf(text)), 0u) << text;
        EXPECT_EQ(xmlp_unTransStr(buffer, exact.data(), lengthOf(text)), nullptr) << text;
    }
}

} // namespace
