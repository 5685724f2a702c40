// DES, MD5 and the sealed form.

#include "crypto/quelm.h"

#include "tests/support/capture.h"
#include "tests/support/cases.h"
#include "tests/support/files.h"

#include <cerrno>
#include <climits>

namespace {

int32_t lengthOf(const std::string &bytes) {
    return static_cast<int32_t>(bytes.size());
}

// A text with the zero bytes that complete its last block.
std::string filled(std::string text) {
    text.resize((text.size() + 7) / 8 * 8, '\0');
    return text;
}

// Calls a cipher on a text and a buffer of `room` bytes, of which it may write what it tells. Gives
// these bytes; "refused" when it gives a negative number.
template <class Cipher>
std::string written(Cipher cipher, const std::string &input, size_t room, int encrypt) {
    std::string output(room, '#');
    const int32_t size =
        cipher(input.data(), lengthOf(input), output.data(), lengthOf(output), "8bytekey", encrypt);
    const auto end = static_cast<size_t>(std::max(size, 0));
    EXPECT_EQ(output.find_first_not_of('#', end), std::string::npos);
    return size < 0 ? "refused" : output.substr(0, end);
}

TEST(Des, KnowsPublishedAnswers) {
    forEachCase("des.cases", [](const Case &test) {
        const std::string key = fromHex(test.text("key"));
        const std::string plain = fromHex(test.text("plain"));
        const std::string cipher = fromHex(test.text("cipher"));
        std::string buffer = plain;
        const int32_t size = lengthOf(buffer);
        EXPECT_EQ(quelm_des_inplace_do(buffer.data(), size, key.data(), 1), size);
        EXPECT_EQ(buffer, cipher);
        EXPECT_EQ(quelm_des_inplace_do(buffer.data(), size, key.data(), 0), size);
        EXPECT_EQ(buffer, plain);
    });
}

TEST(Des, FillsAndCutsTheLastBlock) {
    const std::string text = "0123456789ABCDEF!";
    for (size_t length = 0; length <= text.size(); ++length) {
        const std::string plain = text.substr(0, length);
        const std::string cipher = written(quelm_des_min_do, plain, length + 8, 1);
        std::string block = filled(plain);
        quelm_des_inplace_do(block.data(), lengthOf(block), "8bytekey", 1);
        EXPECT_EQ(cipher, block);
        const std::string cut = cipher + plain.substr(0, length % 8); // what fills no block
        EXPECT_EQ(written(quelm_des_min_do, cut, cut.size() + 8, 0), filled(plain));
    }
}

TEST(Des, RefusesWithoutRoom) {
    const std::string input(16, '\0');
    std::string output;
    forEachCase("des-room.cases", [&](const Case &test) {
        const int32_t result = test.int32("result");
        output.assign(24, '#');
        EXPECT_EQ(quelm_des_min_do(input.data(), test.int32("length"), output.data(),
                                   test.int32("capacity"), "8bytekey", 1),
                  result);
        EXPECT_EQ(output.find_last_not_of('#') + 1, static_cast<size_t>(result));
    });
    EXPECT_EQ(quelm_des_inplace_do(output.data(), 12, "8bytekey", 1), 0);
    EXPECT_EQ(quelm_des_inplace_do(output.data(), -8, "8bytekey", 1), -8);
    EXPECT_EQ(output, std::string(24, '#'));
}

TEST(Des, ChainsInPcbcMode) {
    const std::string key = fromHex("0123456789ABCDEF");
    const std::string vector = fromHex("FEDCBA9876543210");
    const auto pcbc = [&](const std::string &input, size_t outputSize, int encrypt) {
        std::string output(outputSize, '#');
        std::string used = vector;
        EXPECT_EQ(quelm_des_pcbc_do(input.data(), output.data(), lengthOf(input), key.data(),
                                    used.data(), encrypt),
                  1);
        EXPECT_EQ(used, vector);
        return output;
    };
    forEachCase("pcbc.cases", [&](const Case &test) {
        const std::string plain = test.text("plain");
        const std::string cipher = fromHex(test.text("cipher"));
        EXPECT_EQ(pcbc(plain, cipher.size(), 1), cipher);
        const std::string rest(plain.size() % 8, '#'); // fills no block and is left out
        EXPECT_EQ(pcbc(cipher + rest, cipher.size() + rest.size(), 0), filled(plain) + rest);
    });
    EXPECT_EQ(quelm_des_pcbc_do("", nullptr, -9, key.data(), vector.data(), 1), 1);
}

std::string md5(const std::string &text) {
    std::string digest(16, '\0');
    quelm_md5_sum(digest.data(), text.data(), lengthOf(text));
    return digest;
}

std::string hmac(const std::string &key, const std::string &text) {
    std::string digest(16, '\0');
    quelm_hmac_md5(text.data(), lengthOf(text), key.data(), lengthOf(key), digest.data());
    return digest;
}

TEST(Md5, KnowsPublishedAnswers) {
    forEachCase("md5.cases", [](const Case &test) {
        EXPECT_EQ(md5(test.text("text")), fromHex(test.text("digest")));
    });
    std::string digest(16, '\0');
    quelm_md5_sum(digest.data(), "text", INT_MIN);
    EXPECT_EQ(digest, md5("")) << "a negative length means no bytes";
    EXPECT_EQ(quelm_md5_check(md5("message").data(), "message", 7), 1);
    EXPECT_EQ(quelm_md5_check(md5("message").data(), "message", 6), 0);
}

TEST(Hmac, KnowsPublishedAnswers) {
    forEachCase("hmac.cases", [](const Case &test) {
        EXPECT_EQ(hmac(test.text("key"), test.text("text")), fromHex(test.text("digest")));
    });
    for (const size_t size : {64u, 65u}) {
        const std::string key(size, 'k');
        EXPECT_EQ(hmac(key, "x") == hmac(md5(key), "x"), size > 64) << size;
    }
}

TEST(Sealed, HasDigestAndCiphertext) {
    for (const size_t length : {0u, 1u, 7u, 8u, 9u, 100u}) {
        const std::string text(length, 't');
        EXPECT_EQ(written(quelm_md5_des_do, text, length + 23, 1), "refused");
        const std::string sealed = written(quelm_md5_des_do, text, length + 24, 1);
        EXPECT_EQ(sealed, md5(text) + written(quelm_des_min_do, text, length + 8, 1));
        EXPECT_EQ(written(quelm_md5_des_do, sealed, sealed.size() - 9, 0), "refused");
        EXPECT_EQ(written(quelm_md5_des_do, sealed, sealed.size() - 8, 0), filled(text));
    }
}

TEST(Sealed, TakesNoMoreThanItIsGiven) {
    forEachCase("sealed-room.cases", [](const Case &test) {
        char few[4] = {};
        EXPECT_EQ(quelm_md5_des_do(few, test.int32("length"), few, test.int32("capacity"),
                                   "8bytekey", test.int32("encrypt")),
                  test.int32("result"));
    });
}

class SealedFile : public testing::Test {
protected:
    int seal(const std::string &text) {
        writeFile(plain_, text);
        return quelm_md5_des_file(plain_.c_str(), sealed_.c_str(), 1);
    }

    // What a file with these bytes unseals to.
    std::optional<std::string> unseal(const std::string &bytes) {
        writeFile(sealed_, bytes);
        EXPECT_EQ(quelm_md5_des_file(sealed_.c_str(), plain_.c_str(), 0), 0);
        return readFile(plain_);
    }

    ~SealedFile() override { EXPECT_EQ(nextDescriptor(), descriptor_) << "all files are closed"; }

    TemporaryFolder folder_;
    const int descriptor_ = nextDescriptor();
    std::string plain_ = folder_.path("plain");
    std::string sealed_ = folder_.path("sealed");
};

TEST_F(SealedFile, ComesBackWithItsZeroFill) {
    ASSERT_EQ(seal("12345678"), 0);
    EXPECT_EQ(readFile(sealed_), fromHex("25D55AD283AA400AF464C76D713C07AD2552F1618F74D701"));
    for (const size_t size : {0u, 5u, 8u, 9u, 16'360u}) {
        const std::string text(size, 'x');
        ASSERT_EQ(seal(text), 0);
        EXPECT_EQ(unseal(*readFile(sealed_)), filled(text));
    }
    ASSERT_EQ(seal("0123456789"), 0);
    std::string spoiled = *readFile(sealed_) + "tail";
    spoiled[0] = 'X';
    EXPECT_EQ(unseal(spoiled), filled("0123456789")) << "the digest decides nothing";
    EXPECT_EQ(unseal(std::string(15, 's')), "");
}

TEST_F(SealedFile, HasASizeLimit) {
    EXPECT_EQ(seal(std::string(16'382, 'x')), 0);
    const auto largest = readFile(sealed_);
    EXPECT_EQ(largest->size(), 16u + 16'384);
    EXPECT_EQ(errorsOf([this] { EXPECT_EQ(seal(std::string(16'383, 'x')), -1); }), "");
    EXPECT_EQ(readFile(sealed_), largest);
}

TEST_F(SealedFile, TellsInParts) {
    std::string collected;
    quelm_setReport([](const char *text, void *) { FAIL() << text; }, nullptr);
    quelm_setReportRecord(
        [](const QUELM_REPORT_RECORD *record, void *context) {
            *static_cast<std::string *>(context) = std::string(record->function) + "|" +
                                                   std::to_string(record->number) + "|" +
                                                   record->message + "|" + record->text;
        },
        &collected);
    quelm_md5_des_file("/", sealed_.c_str(), 1);
    EXPECT_EQ(collected, "quelm_md5_des_file|" + std::to_string(EISDIR) +
                             "|read: Is a directory|read: Is a directory\n");
    quelm_setReportRecord(nullptr, nullptr);
    EXPECT_EQ(errorsOf([this] { quelm_md5_des_file("/", sealed_.c_str(), 1); }),
              "read: Is a directory\n");
}

TEST_F(SealedFile, TellsWhatItCannotOpenReadOrWrite) {
    writeFile(plain_, "text");
    const auto seal = [](const std::string &from, const std::string &to) {
        int result = 0;
        const std::string error =
            errorsOf([&] { result = quelm_md5_des_file(from.c_str(), to.c_str(), 1); });
        return error + std::to_string(result);
    };
    const std::string none = folder_.path("none/file");
    EXPECT_EQ(seal(none, sealed_), "open input file: No such file or directory\n-1");
    errorsOf([] { EXPECT_EQ(quelm_md5_des_file(nullptr, nullptr, 1), -1); });
    EXPECT_EQ(seal("/", sealed_), "read: Is a directory\n-1");
    EXPECT_EQ(seal(plain_, none), "open output file: No such file or directory\n-1");
    EXPECT_EQ(seal(plain_, "/dev/full"), "write: No space left on device\n0");
}

} // namespace
