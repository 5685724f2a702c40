#include "crypto/quelm.h"

#include "tests/support/hex.h"

#include <climits>
#include <gtest/gtest.h>

namespace {

// Ciphers through min_do with exactly the room that it wants.
std::string ecb(const std::string &input, const std::string &key, bool isEncryption) {
    std::string output(input.size() + 8, '#');
    const int32_t size =
        quelm_des_min_do(input.data(), static_cast<int32_t>(input.size()), output.data(),
                         static_cast<int32_t>(output.size()), key.data(), isEncryption ? 1 : 0);
    EXPECT_EQ(output.find_first_not_of('#', static_cast<size_t>(size)), std::string::npos);
    output.resize(static_cast<size_t>(size));
    return output;
}

TEST(Des, KnowsPublishedAnswers) {
    const struct {
        const char *key;
        const char *plain;
        const char *cipher;
    } cases[] = {
        {"133457799BBCDFF1", "0123456789ABCDEF", "85E813540F0AB405"},
        {"0000000000000000", "0000000000000000", "8CA64DE9C1B123A7"},
        {"FFFFFFFFFFFFFFFF", "FFFFFFFFFFFFFFFF", "7359B2163E4EDC58"},
        {"3000000000000000", "1000000000000001", "958E6E627A05557B"},
        {"7CA110454A1A6E57", "01A1D6D039776742", "690F5B0D9A26939B"},
        {"0123456789ABCDEF", "4E6F772069732074", "3FA40E8A984D4815"},
        {"0123456789ABCDEF", "4E6F77206973207468652074696D6520666F7220616C6C20",
         "3FA40E8A984D48156A271787AB8883F9893D51EC4B563B53"},
        {"0101010101010101", "95F8A5E5DD31D900", "8000000000000000"},
        // Parity bits change nothing.
        {"0022446688AACCEE", "4E6F772069732074", "3FA40E8A984D4815"},
    };
    for (const auto &test : cases) {
        const std::string key = fromHex(test.key);
        EXPECT_EQ(toHex(ecb(fromHex(test.plain), key, true)), test.cipher) << test.key;
        EXPECT_EQ(toHex(ecb(fromHex(test.cipher), key, false)), test.plain) << test.key;

        std::string buffer = fromHex(test.plain);
        const auto size = static_cast<int32_t>(buffer.size());
        EXPECT_EQ(quelm_des_inplace_do(buffer.data(), size, key.data(), 1), size);
        EXPECT_EQ(toHex(buffer), test.cipher);
        EXPECT_EQ(quelm_des_inplace_do(buffer.data(), size, key.data(), 0), size);
        EXPECT_EQ(toHex(buffer), test.plain);
    }
}

TEST(Des, FillsAndCutsTheLastBlock) {
    const std::string key = "8bytekey";
    const std::string text = "0123456789ABCDEF!";
    for (size_t length = 0; length <= text.size(); ++length) {
        const std::string plain = text.substr(0, length);
        const std::string sealed = ecb(plain, key, true);
        EXPECT_EQ(sealed.size(), (length + 7) / 8 * 8);
        std::string filled = plain;
        filled.resize(sealed.size(), '\0');
        EXPECT_EQ(ecb(sealed, key, false), filled);
        const std::string cut = sealed + plain.substr(0, length % 8);
        EXPECT_EQ(ecb(cut, key, false), filled) << "what fills no block is left out";
    }
}

TEST(Des, RefusesWithoutRoom) {
    const char input[16] = {};
    char output[24];
    const char key[8] = {};
    const struct {
        int32_t length;
        int32_t capacity;
        int32_t result; // when enciphering
    } cases[] = {
        {1, 9, 8},
        {1, 8, 0},
        {8, 15, 0},
        {8, 16, 8},
        {9, 17, 16},
        {0, 8, 0},
        {-1, 8, 0},
        {INT_MIN, INT_MAX, 0},
        {16, INT_MIN, 0},
        {16, -1, 0},
        {INT_MAX, 24, 0},
        {INT_MIN, INT_MIN, 0},
        {INT_MAX, INT_MAX, 0},
    };
    for (const auto &test : cases) {
        std::fill(std::begin(output), std::end(output), '#');
        const auto untouched = static_cast<size_t>(test.result);
        EXPECT_EQ(quelm_des_min_do(input, test.length, output, test.capacity, key, 1), test.result)
            << test.length << " " << test.capacity;
        EXPECT_EQ(std::string_view(output + untouched, sizeof output - untouched),
                  std::string(sizeof output - untouched, '#'));
    }
    EXPECT_EQ(quelm_des_min_do(nullptr, 8, output, 24, key, 1), 0);
    EXPECT_EQ(quelm_des_min_do(input, 8, nullptr, 24, key, 1), 0);
    EXPECT_EQ(quelm_des_min_do(input, 8, output, 24, nullptr, 0), 0);

    EXPECT_EQ(quelm_des_inplace_do(output, 12, key, 1), 0);
    EXPECT_EQ(output[0], '#');
    EXPECT_EQ(quelm_des_inplace_do(output, 0, key, 1), 0);
    EXPECT_EQ(quelm_des_inplace_do(output, -8, key, 1), -8);
    EXPECT_EQ(output[0], '#');
    EXPECT_EQ(quelm_des_inplace_do(nullptr, 8, key, 1), 0);
}

// PCBC, written once more from single blocks.
std::string pcbcByBlocks(std::string text, const std::string &key, std::string chain) {
    text.resize((text.size() + 7) / 8 * 8, '\0');
    std::string result;
    for (size_t at = 0; at < text.size(); at += 8) {
        std::string mixed = text.substr(at, 8);
        for (size_t i = 0; i < 8; ++i) {
            mixed[i] = static_cast<char>(mixed[i] ^ chain[i]);
        }
        const std::string cipher = ecb(mixed, key, true);
        for (size_t i = 0; i < 8; ++i) {
            chain[i] = static_cast<char>(text[at + i] ^ cipher[i]);
        }
        result += cipher;
    }
    return result;
}

TEST(Des, ChainsInPcbcMode) {
    const std::string key = fromHex("0123456789ABCDEF");
    const std::string vector = fromHex("FEDCBA9876543210");
    const std::string text = "7654321 Now is the time for \0!";
    for (size_t length = 0; length <= text.size(); ++length) {
        const std::string plain = text.substr(0, length);
        const std::string expected = pcbcByBlocks(plain, key, vector);
        std::string output(expected.size(), '#');
        std::string usedVector = vector;
        EXPECT_EQ(quelm_des_pcbc_do(plain.data(), output.data(), static_cast<int32_t>(length),
                                    key.data(), usedVector.data(), 1),
                  1);
        EXPECT_EQ(toHex(output), toHex(expected));
        EXPECT_EQ(usedVector, vector);

        // Deciphering a copy of exact size that ends in a part of a block.
        const std::string cut = expected + plain.substr(0, length % 8);
        std::string back(cut.size(), '#');
        EXPECT_EQ(quelm_des_pcbc_do(cut.data(), back.data(), static_cast<int32_t>(cut.size()),
                                    key.data(), vector.data(), 0),
                  1);
        EXPECT_EQ(back.substr(0, length), plain);
        EXPECT_EQ(back.substr(expected.size()), std::string(length % 8, '#'));
    }
    EXPECT_EQ(quelm_des_pcbc_do("", nullptr, -9, key.data(), vector.data(), 1), 1);
}

} // namespace
