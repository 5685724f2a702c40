#include "common/common.h"

#include "tests/support/capture.h"
#include "tests/support/cases.h"

namespace {

TEST(ErrorCodes, AreNamedByValueWithHolesBetween) {
    forEachCase("errors.cases", [](const Case &test) {
        EXPECT_EQ(appmngr_errStr(static_cast<int16_t>(test.number("code"))),
                  test.text("name", "ERROR NOT IN LIST"));
    });
}

TEST(Text, ComparesWithoutAsciiCase) {
    EXPECT_EQ(appmngr_string_safeCaseCmp("AppDBZ", "appdbz"), 0);
    EXPECT_EQ(appmngr_string_safeCaseCmp("app", "appList"), 0 - 'l');
    EXPECT_EQ(appmngr_string_safeCaseCmp("\xC4", "\xE4"), 0xC4 - 0xE4) << "only ASCII is folded";
    EXPECT_EQ(appmngr_string_safeCaseCmp("[", "{"), '[' - '{');
    EXPECT_EQ(appmngr_string_match("0", "00"), 0);
}

TEST(Text, SplitsAtSeparators) {
    forEachCase("split.cases", [](const Case &test) {
        std::string text = test.text("text");
        std::vector<char *> out(std::max<size_t>(test.size("room"), 1), text.data());
        int result = 0;
        EXPECT_EQ(outputOf([&] {
                      result = appmngr_string_makeSubStrByChar(text.data(), ' ', test.int32("room"),
                                                               out.data());
                  }),
                  test.lines("printed"));
        EXPECT_EQ(result, test.number("result"));
        std::string tokens;
        for (size_t i = 0; i < out.size() && out[i] != nullptr; ++i) {
            tokens += std::string(out[i]) + "|";
        }
        EXPECT_EQ(tokens, test.text("tokens"));
    });
}

TEST(Text, Escapes) {
    std::string escaped(8, '#');
    EXPECT_EQ(appmngr_string_escape(escaped.data(), "a b\"\\/"), 0);
    EXPECT_EQ(escaped, std::string("a\1b\2\3/\0#", 8));
}

TEST(HexDump, BreaksLinesAfterSixteenBytes) {
    const unsigned char bytes[17] = {0x00, 0xFF, 0x0A};
    char head[64];
    std::snprintf(head, sizeof head, "\r\nBuffer\r\n===\r\naddr:0x%x\r\nlen:17!\r\n",
                  static_cast<unsigned>(reinterpret_cast<uintptr_t>(bytes)));
    EXPECT_EQ(appmngr_utils_writeBuf(nullptr, bytes, 17), -1);
    EXPECT_EQ(outputOf([&] { EXPECT_EQ(appmngr_utils_writeBuf(stdout, bytes, 17), 0); }),
              outputOf([&] { appmngr_utils_dumpBuf(bytes, 17); }));
    EXPECT_EQ(outputOf([&] { appmngr_utils_dumpBuf(bytes, 17); }),
              head + std::string("00 ff 0a 00 00 00 00 00 00 00 00 00 00 00 00 00 \r\n00 \r\n"
                                 "===============\r\n"));
}

TEST(AppBitmap, HoldsIdentifiersBelow4096) {
    APPMNGR_APP_BITMAP set = {};
    EXPECT_EQ(appmngr_bitmap_isEmpty(set), 1);
    for (const uint32_t n : {0u, 31u, 32u, 4095u}) {
        appmngr_bitmap_set(set, n);
        EXPECT_EQ(appmngr_bitmap_test(set, n), 1) << n;
    }
    appmngr_bitmap_clear(set, 31);
    appmngr_bitmap_clear(set, 30);
    appmngr_bitmap_set(set, 4096);
    appmngr_bitmap_clear(set, UINT32_MAX);
    EXPECT_EQ(appmngr_bitmap_test(set, 4096), 0);
    APPMNGR_APP_BITMAP other = {1, 1};
    other[127] = 0x80000000;
    EXPECT_TRUE(std::equal(std::begin(set), std::end(set), other));
    other[0] = 2;
    appmngr_bitmap_or(set, other);
    EXPECT_EQ(set[0], 3u);
    appmngr_bitmap_and(set, other);
    EXPECT_TRUE(std::equal(std::begin(set), std::end(set), other));
    EXPECT_EQ(appmngr_bitmap_isEmpty(set), 0);
}

} // namespace
