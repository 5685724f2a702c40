#include "common/common.h"
#include "tests/support/capture.h"

#include <climits>
#include <gtest/gtest.h>

namespace {

TEST(ErrorCodes, AreNamedByValue) {
    const struct {
        int16_t code;
        const char *name;
    } cases[] = {
        {0, "APPMNGR_SUCCESS"},
        {-9000, "APPMNGR_ERR_FAILED"},
        {-8999, "APPMNGR_ERR_INVALID_ARG"},
        {-8991, "APPMNGR_ERR_SIZE_LARGE"},
        {-8989, "APPMNGR_ERR_ALLOC_UKEY"},
        {-8988, "ERROR NOT IN LIST"},
        {-8987, "APPMNGR_ERR_REVISE"},
        {-8983, "APPMNGR_ERR_LOAD"},
        {-8982, "ERROR NOT IN LIST"},
        {-8981, "APPMNGR_ERR_FILE_INVALID_FORMAT"},
        {-8979, "APPMNGR_ERR_FILE_CHECK"},
        {-8976, "APPMNGR_ERR_FILE_UNKNOWN_ERROR"},
        {-8975, "ERROR NOT IN LIST"},
        {-9001, "ERROR NOT IN LIST"},
        {1, "ERROR NOT IN LIST"},
    };
    for (const auto &test : cases) {
        EXPECT_STREQ(appmngr_errStr(test.code), test.name) << test.code;
    }
}

TEST(Text, ComparesWithoutAsciiCase) {
    EXPECT_EQ(appmngr_string_safeCaseCmp("AppDB", "appdb"), 0);
    EXPECT_EQ(appmngr_string_safeCaseCmp("app", "appList"), 0 - 'l');
    EXPECT_EQ(appmngr_string_safeCaseCmp("appList", "app"), 'l');
    EXPECT_EQ(appmngr_string_safeCaseCmp("\xC4", "\xE4"), 0xC4 - 0xE4) << "only ASCII is folded";
    EXPECT_EQ(appmngr_string_safeCaseCmp("[", "{"), '[' - '{');
    EXPECT_EQ(appmngr_string_safeCaseCmp(nullptr, "a"), INT_MAX);
    EXPECT_EQ(appmngr_string_safeCaseCmp("a", nullptr), INT_MAX);
}

TEST(Text, MatchesExactly) {
    EXPECT_EQ(appmngr_string_match("0", "0"), 1);
    EXPECT_EQ(appmngr_string_match("0", "00"), 0);
    EXPECT_EQ(appmngr_string_match("a", "A"), 0);
    EXPECT_EQ(outputOf([] { EXPECT_EQ(appmngr_string_match(nullptr, "a"), 0); }),
              "[Error](appmngr_string_match) 470: Some parameter is null.\r\n");
}

TEST(Text, SplitsAtSeparators) {
    const std::string tooMany = "[Error](appmngr_string_makeSubStrByChar) 453: "
                                "Too many substrings to string provided \r\n";
    const struct {
        const char *text;
        int result;
        std::vector<std::string> tokens;
        std::string output;
    } cases[] = {
        {"tcp 1.2.3.4:80 5.6.7.8:0", 3, {"tcp", "1.2.3.4:80", "5.6.7.8:0"}, ""},
        {"a b c d", -1, {"a", "b", "c", "d"}, tooMany},
        {"  a\t b\r\n ", 2, {"a", "b"}, ""},
        {"", 0, {}, ""},
        {" \t\r\n", 0, {}, ""},
    };
    for (const auto &test : cases) {
        std::string text = test.text;
        char *out[4] = {};
        EXPECT_EQ(outputOf([&] {
                      EXPECT_EQ(appmngr_string_makeSubStrByChar(text.data(), ' ', 4, out),
                                test.result);
                  }),
                  test.output);
        for (size_t i = 0; i < test.tokens.size(); ++i) {
            EXPECT_EQ(out[i], test.tokens[i]) << test.text;
        }
        if (test.result >= 0) {
            EXPECT_EQ(out[test.result], nullptr) << test.text;
        }
    }
}

TEST(Text, RefusesToSplitWithoutArguments) {
    char text[] = "a";
    char *out[1];
    EXPECT_EQ(outputOf([&] {
                  EXPECT_EQ(appmngr_string_makeSubStrByChar(nullptr, ' ', 1, out), -1);
                  EXPECT_EQ(appmngr_string_makeSubStrByChar(text, ' ', 1, nullptr), -1);
                  EXPECT_EQ(appmngr_string_makeSubStrByChar(text, ' ', 0, out), -1);
              }),
              "[Error](appmngr_string_makeSubStrByChar) 428: Some parameter is null.\r\n"
              "[Error](appmngr_string_makeSubStrByChar) 428: Some parameter is null.\r\n"
              "[Error](appmngr_string_makeSubStrByChar) 434: "
              "Maximum number is invalid. maxNum = 0\r\n");
}

TEST(Text, Escapes) {
    char escaped[16];
    EXPECT_EQ(appmngr_string_escape(escaped, "a b\"c\\d"), 0);
    EXPECT_STREQ(escaped, "a\x01"
                          "b\x02"
                          "c\x03"
                          "d");
    EXPECT_EQ(appmngr_string_escape(nullptr, "a"), -1);
    EXPECT_EQ(appmngr_string_escape(escaped, nullptr), -1);
}

TEST(Protocols, AreNamedAndNumbered) {
    EXPECT_EQ(appmngr_utils_str2proto("tcp"), 6);
    EXPECT_EQ(appmngr_utils_str2proto("Udp"), 17);
    EXPECT_EQ(appmngr_utils_str2proto("ICMP"), 1);
    EXPECT_EQ(outputOf([] {
                  EXPECT_EQ(appmngr_utils_str2proto("gre"), 256);
                  EXPECT_EQ(appmngr_utils_str2proto(nullptr), 256);
              }),
              "Unknown protocol!\r\nUnknown protocol!\r\n");
    EXPECT_STREQ(appmngr_utils_proto2str(6), "tcp");
    EXPECT_STREQ(appmngr_utils_proto2str(17), "udp");
    EXPECT_STREQ(appmngr_utils_proto2str(1), "icmp");
    EXPECT_STREQ(appmngr_utils_proto2str(47), "unknown");
}

TEST(HexDump, BreaksLinesAfterSixteenBytes) {
    const unsigned char bytes[17] = {0x00, 0xFF, 0x0A};
    char head[64];
    std::snprintf(head, sizeof head, "\r\nBuffer\r\n===\r\naddr:0x%x\r\nlen:",
                  static_cast<unsigned>(reinterpret_cast<uintptr_t>(bytes)));
    const std::string end = "\r\n===============\r\n";
    EXPECT_EQ(outputOf([&] { appmngr_utils_dumpBuf(bytes, 17); }),
              std::string(head) + "17!\r\n" +
                  "00 ff 0a 00 00 00 00 00 00 00 00 00 00 00 00 00 \r\n00 " + end);
    EXPECT_EQ(outputOf([&] { appmngr_utils_dumpBuf(bytes, -1); }),
              std::string(head) + "-1!\r\n" + end);
    EXPECT_EQ(outputOf([] { appmngr_utils_dumpBuf(nullptr, 5); }), "===\r\nData is NULL!\r\n");
}

TEST(AppBitmap, HoldsIdentifiersBelow4096) {
    APPMNGR_APP_BITMAP set = {};
    EXPECT_EQ(appmngr_bitmap_isEmpty(set), 1);
    for (const uint32_t n : {0u, 31u, 32u, 4095u}) {
        appmngr_bitmap_set(set, n);
        EXPECT_EQ(appmngr_bitmap_test(set, n), 1) << n;
    }
    EXPECT_EQ(set[0], 0x80000001u);
    EXPECT_EQ(set[1], 1u);
    EXPECT_EQ(set[127], 0x80000000u);
    appmngr_bitmap_clear(set, 31);
    EXPECT_EQ(set[0], 1u);

    APPMNGR_APP_BITMAP before;
    std::copy(std::begin(set), std::end(set), before);
    appmngr_bitmap_set(set, 4096);
    appmngr_bitmap_clear(set, UINT32_MAX);
    EXPECT_EQ(appmngr_bitmap_test(set, 4096), 0);
    EXPECT_TRUE(std::equal(std::begin(set), std::end(set), before));

    APPMNGR_APP_BITMAP other = {};
    appmngr_bitmap_set(other, 32);
    appmngr_bitmap_set(other, 64);
    appmngr_bitmap_or(set, other);
    EXPECT_EQ(appmngr_bitmap_test(set, 64), 1);
    appmngr_bitmap_and(set, other);
    EXPECT_TRUE(std::equal(std::begin(set), std::end(set), other));
    EXPECT_EQ(appmngr_bitmap_isEmpty(set), 0);
}

} // namespace
