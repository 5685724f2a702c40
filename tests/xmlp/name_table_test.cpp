// The index of the name table against the search that it replaces.

#include "xmlp/name_table.h"

#include "xmlp/xmlp_internal.h"

#include <gtest/gtest.h>
#include <random>
#include <vector>

namespace {

using velda::xmlp::NameTable;

size_t searchedPlace(const std::vector<char> &table, std::string_view string) {
    return static_cast<size_t>(
        _findName(table.data(), string.data(), static_cast<uint32_t>(string.size())) -
        table.data());
}

// Strings over a small alphabet, so that many are the tails of others.
std::string randomString(std::mt19937 &random) {
    std::string string(random() % 14, '\0');
    for (char &byte : string) {
        byte = "ab\xFF"[random() % 3];
    }
    return string;
}

TEST(NameTable, FindsWhatASearchFinds) {
    std::mt19937 random(20260101);
    for (int round = 0; round < 50; ++round) {
        NameTable table;
        ASSERT_TRUE(table.reserve(64)); // far too little, so that it grows
        std::vector<char> searched(1 << 16);
        std::vector<std::string> strings;
        for (int i = 0; i < 300; ++i) {
            strings.push_back(randomString(random));
            const std::string &string = strings.back();
            ASSERT_TRUE(table.intern(string));
            const size_t place = searchedPlace(searched, string);
            if (std::string_view(&searched[place], 4) == std::string_view("\0\0\0\0", 4)) {
                velda::xmlp::writeEntry(&searched[place], string);
            }
        }
        ASSERT_EQ(std::string_view(table.bytes(), table.usedBytes() + 4),
                  std::string_view(searched.data(), table.usedBytes() + 4));
        for (const std::string &string : strings) {
            ASSERT_EQ(table.find(string), searchedPlace(searched, string)) << string;
        }
    }
}

TEST(NameTable, TellsRepeatedNamesOfATag) {
    NameTable table;
    ASSERT_TRUE(table.reserve(4096));
    for (const char *name : {"longer-a", "r-a", "b"}) {
        ASSERT_TRUE(table.intern(name));
    }
    bool isRepeated = true;
    const size_t first = table.findInTag("r-a", 1, isRepeated);
    EXPECT_FALSE(isRepeated);
    table.findInTag("b", 1, isRepeated);
    EXPECT_FALSE(isRepeated);
    EXPECT_EQ(table.findInTag("r-a", 1, isRepeated), first);
    EXPECT_TRUE(isRepeated);
    table.findInTag("r-a", 2, isRepeated);
    EXPECT_FALSE(isRepeated);
}

} // namespace
