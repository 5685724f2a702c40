// The index of the string table against the search that it replaces.

#include "xmlp/base/string_table.h"

#include "xmlp/xmlp_internal.h"

#include <gtest/gtest.h>
#include <random>
#include <vector>

namespace {

using velda::xmlp::StringTable;

// Strings over a small alphabet, so that many are the tails of others.
std::string randomString(std::mt19937 &random) {
    std::string string(random() % 14, '\0');
    for (char &byte : string) {
        byte = "ab\xFF"[random() % 3];
    }
    return string;
}

TEST(StringTable, FindsWhatASearchFinds) {
    std::mt19937 random(20260101);
    for (int round = 0; round < 50; ++round) {
        StringTable table;
        ASSERT_TRUE(table.reserve(64)); // far too little, so that it grows
        std::vector<char> searched(1 << 16);
        const auto search = [&searched](const std::string &string) {
            return _findName(searched.data(), string.data(), static_cast<uint32_t>(string.size()));
        };
        std::vector<std::string> strings;
        for (int i = 0; i < 300; ++i) {
            const std::string &string = strings.emplace_back(randomString(random));
            ASSERT_TRUE(table.intern(string));
            char *place = search(string);
            if (std::string_view(place, 4) == std::string_view("\0\0\0\0", 4)) {
                velda::xmlp::writeEntry(place, string);
            }
        }
        ASSERT_EQ(std::string_view(table.bytes(), table.usedBytes() + 4),
                  std::string_view(searched.data(), table.usedBytes() + 4));
        for (const std::string &string : strings) {
            ASSERT_EQ(searched.data() + table.find(string), search(string)) << string;
        }
    }
}

TEST(StringTable, TellsRepeatedNamesOfATag) {
    StringTable table;
    ASSERT_TRUE(table.reserve(4096));
    for (const char *name : {"longer-a", "r-a", "b"}) {
        ASSERT_TRUE(table.intern(name));
    }
    const auto isRepeated = [&table](const char *name, uint32_t tag) {
        bool answer = false;
        EXPECT_EQ(table.findInTag(name, tag, answer), table.find(name));
        return answer;
    };
    EXPECT_FALSE(isRepeated("r-a", 1) || isRepeated("b", 1));
    EXPECT_TRUE(isRepeated("r-a", 1));
    EXPECT_FALSE(isRepeated("r-a", 2));
}

} // namespace
