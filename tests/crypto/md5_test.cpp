// MD5, HMAC-MD5 and the sealed form.

#include "crypto/quelm.h"
#include "tests/support/files.h"
#include "tests/support/hex.h"

#include <climits>
#include <gtest/gtest.h>

namespace {

std::string md5(const std::string &text) {
    std::string digest(16, '\0');
    quelm_md5_sum(digest.data(), text.data(), static_cast<int32_t>(text.size()));
    return digest;
}

std::string hmac(const std::string &key, const std::string &text) {
    std::string digest(16, '\0');
    quelm_hmac_md5(text.data(), static_cast<int32_t>(text.size()), key.data(),
                   static_cast<int32_t>(key.size()), digest.data());
    return digest;
}

TEST(Md5, KnowsPublishedAnswers) { // RFC 1321, A.5
    EXPECT_EQ(toHex(md5("")), "D41D8CD98F00B204E9800998ECF8427E");
    EXPECT_EQ(toHex(md5("a")), "0CC175B9C0F1B6A831C399E269772661");
    EXPECT_EQ(toHex(md5("message digest")), "F96B697D7CB7938D525A2F31AAF161D0");
    EXPECT_EQ(toHex(md5("1234567890123456789012345678901234567890123456789012345678901234567890"
                        "1234567890")),
              "57EDF4A22BE3C955AC49DA2E2107B67A");
    std::string digest(16, '\0');
    quelm_md5_sum(digest.data(), "text", INT_MIN);
    EXPECT_EQ(digest, md5("")) << "a negative length means no bytes";

    std::string text = "message";
    EXPECT_EQ(quelm_md5_check(md5(text).data(), text.data(), 7), 1);
    EXPECT_EQ(quelm_md5_check(md5(text).data(), text.data(), 6), 0);
    text[0] = 'M';
    EXPECT_EQ(quelm_md5_check(md5("message").data(), text.data(), 7), 0);
}

TEST(Hmac, KnowsPublishedAnswers) { // RFC 2202, 2
    const std::string longKey(80, '\xAA');
    const struct {
        std::string key;
        std::string text;
        const char *digest;
    } cases[] = {
        {std::string(16, '\x0B'), "Hi There", "9294727A3638BB1C13F48EF8158BFC9D"},
        {"Jefe", "what do ya want for nothing?", "750C783E6AB0B503EAA86E310A5DB738"},
        {std::string(16, '\xAA'), std::string(50, '\xDD'), "56BE34521D144C88DBB8C733F0E8B3F6"},
        {longKey, "Test Using Larger Than Block-Size Key - Hash Key First",
         "6B1AB7FE4BD7BF8F0B62E6CE61B9D0CD"},
        {longKey, "Test Using Larger Than Block-Size Key and Larger Than One Block-Size Data",
         "6F630FAD67CDA0EE1FB1F562DB3AA53E"},
    };
    for (const auto &test : cases) {
        EXPECT_EQ(toHex(hmac(test.key, test.text)), test.digest) << test.text;
    }
    EXPECT_EQ(hmac(longKey, "x"), hmac(md5(longKey), "x"));
    EXPECT_NE(hmac(std::string(64, 'k'), "x"), hmac(md5(std::string(64, 'k')), "x"));
    EXPECT_EQ(hmac("", "x"), hmac(std::string(64, '\0'), "x"));
}

TEST(Sealed, BufferHasDigestAndCiphertext) {
    const std::string key = "8bytekey";
    for (const int32_t length : {0, 1, 7, 8, 9, 100}) {
        const std::string text(static_cast<size_t>(length), 't');
        const int32_t rounded = (length + 7) / 8 * 8;
        std::string sealed(static_cast<size_t>(length) + 24, '#');
        const auto capacity = static_cast<int32_t>(sealed.size());
        EXPECT_EQ(quelm_md5_des_do(text.data(), length, sealed.data(), capacity - 1, key.data(), 1),
                  -1);
        EXPECT_EQ(sealed.find_first_not_of('#'), std::string::npos);
        ASSERT_EQ(quelm_md5_des_do(text.data(), length, sealed.data(), capacity, key.data(), 1),
                  16 + rounded);
        EXPECT_EQ(sealed.substr(0, 16), md5(text));

        std::string back(static_cast<size_t>(rounded) + 8, '#');
        const int32_t room = rounded + 8;
        EXPECT_EQ(
            quelm_md5_des_do(sealed.data(), 16 + rounded, back.data(), room - 1, key.data(), 0),
            -1);
        EXPECT_EQ(quelm_md5_des_do(sealed.data(), 16 + rounded, back.data(), room, key.data(), 0),
                  rounded);
        std::string filled = text;
        filled.resize(static_cast<size_t>(rounded), '\0');
        EXPECT_EQ(back.substr(0, static_cast<size_t>(rounded)), filled);
    }
}

TEST(Sealed, BufferTakesNoMoreThanItIsGiven) {
    char few[4] = {};
    const char *key = "8bytekey";
    for (const int32_t length : {15, 0, -1, INT_MIN}) {
        EXPECT_EQ(quelm_md5_des_do(few, length, few, 100, key, 0), 0) << length;
    }
    EXPECT_EQ(quelm_md5_des_do(few, -20, few, 4, key, 1), -1) << "no room for the digest";
    EXPECT_EQ(quelm_md5_des_do(few, INT_MAX, few, INT_MAX, key, 1), -1);
    EXPECT_EQ(quelm_md5_des_do(few, 0, few, INT_MIN, key, 1), -1);
    EXPECT_EQ(quelm_md5_des_do(few, 16, few, INT_MIN, key, 0), -1);
    EXPECT_EQ(quelm_md5_des_do(nullptr, 1, few, 100, key, 1), -1);
    EXPECT_EQ(quelm_md5_des_do(few, 0, nullptr, 100, key, 1), -1);
    EXPECT_EQ(quelm_md5_des_do(nullptr, 20, few, 100, key, 0), 0);
}

class SealedFile : public testing::Test {
protected:
    int seal(const std::string &text) {
        writeFile(plain_, text);
        return quelm_md5_des_file(plain_.c_str(), sealed_.c_str(), 1);
    }

    int unseal() { return quelm_md5_des_file(sealed_.c_str(), back_.c_str(), 0); }

    TemporaryFolder folder_;
    std::string plain_ = folder_.path("plain");
    std::string sealed_ = folder_.path("sealed");
    std::string back_ = folder_.path("back");
};

TEST_F(SealedFile, ComesBackWithItsZeroFill) {
    for (const size_t size : {0u, 5u, 8u, 9u, 16'382u}) {
        const std::string text(size, 'x');
        const size_t rounded = (size + 7) / 8 * 8;
        ASSERT_EQ(seal(text), 0);
        ASSERT_EQ(readFile(sealed_)->size(), 16 + rounded);
        EXPECT_EQ(readFile(sealed_)->substr(0, 16), md5(text));
        if (16 + rounded >= 16'383) {
            continue; // sealed, it is too large to come back through a file
        }
        ASSERT_EQ(unseal(), 0);
        std::string filled = text;
        filled.resize(rounded, '\0');
        EXPECT_EQ(readFile(back_), filled);
    }
    ASSERT_EQ(seal(""), 0);
    EXPECT_EQ(toHex(*readFile(sealed_)), "D41D8CD98F00B204E9800998ECF8427E");
    ASSERT_EQ(seal("12345678"), 0);
    // The library's key, and the block that it makes of these eight bytes.
    std::string block = "12345678";
    quelm_des_inplace_do(block.data(), 8, fromHex("5C1E93A7026BD8F4").data(), 1);
    EXPECT_EQ(readFile(sealed_)->substr(16), block);
}

TEST_F(SealedFile, TakesShortAndSpoiledInput) {
    writeFile(sealed_, std::string(15, 's'));
    EXPECT_EQ(unseal(), 0);
    EXPECT_EQ(readFile(back_), "");
    ASSERT_EQ(seal("0123456789"), 0);
    std::string spoiled = *readFile(sealed_);
    spoiled[0] = static_cast<char>(spoiled[0] ^ 1);
    writeFile(sealed_, spoiled + "tail");
    EXPECT_EQ(unseal(), 0) << "the digest decides nothing";
    EXPECT_EQ(readFile(back_), std::string("0123456789\0\0\0\0\0\0", 16));
}

TEST_F(SealedFile, RefusesLargeInputInSilence) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(seal(std::string(16'383, 'x')), -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(readFile(sealed_), std::nullopt);
}

TEST_F(SealedFile, TellsWhatItCannotOpenReadOrWrite) {
    const std::string none = folder_.path("none/file");
    writeFile(plain_, "text");
    testing::internal::CaptureStderr();
    EXPECT_EQ(quelm_md5_des_file(none.c_str(), sealed_.c_str(), 1), -1);
    EXPECT_EQ(quelm_md5_des_file("/", sealed_.c_str(), 1), -1);
    EXPECT_EQ(quelm_md5_des_file(plain_.c_str(), none.c_str(), 1), -1);
    EXPECT_EQ(quelm_md5_des_file(plain_.c_str(), "/dev/full", 1), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "open input file: No such file or directory\n"
              "read: Is a directory\n"
              "open output file: No such file or directory\n"
              "write: No space left on device\n");
}

} // namespace
