// Encrypted containers, good ones and ones with one thing wrong.

#include "crypto/quelm.h"
#include "tests/appmngr/model_fixture.h"
#include "tests/support/hex.h"

namespace {

struct Header {
    int64_t length = -1; // the data's own where it is negative
    std::string version = std::string("\x09\x01\x02\x00", 4);
    std::string magic = std::string("\x04\x00\x00\x01", 4);
    std::string reserved = std::string(4, '\0');
};

std::string bigEndian(uint32_t value) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes += static_cast<char>(value >> shift);
    }
    return bytes;
}

std::string encipher(std::string plain) {
    plain.resize((plain.size() + 7) / 8 * 8, '\0');
    quelm_des_inplace_do(plain.data(), static_cast<int32_t>(plain.size()),
                         fromHex("5c1e93a7026bd8f4").data(), 1);
    return plain;
}

std::string sealedBytes(const std::string &data, const Header &header) {
    const auto length = static_cast<uint32_t>(header.length < 0 ? static_cast<int64_t>(data.size())
                                                                : header.length);
    return bigEndian(length) + header.version + header.magic + header.reserved + data;
}

std::string container(const std::string &data, const Header &header = {}) {
    const std::string sealed = sealedBytes(data, header);
    std::string digest(16, '\0');
    quelm_md5_sum(digest.data(), sealed.data(), static_cast<int32_t>(sealed.size()));
    return encipher(digest + sealed);
}

class Container : public testing::Test {
protected:
    int32_t validate(const std::string &bytes) {
        int32_t result = 0;
        std::copy_n("#####", 6, versionOut_);
        printed = outputOf([&] {
            const APPMNGR_CONTAINER record = {0xDEADBEEF, static_cast<uint32_t>(bytes.size()),
                                              bytes.data()};
            result = appmngr_db_writeAppDbFromDatabase(record, versionOut_);
        });
        return result;
    }

    static std::string line(const char *function, int number, const std::string &message) {
        return std::string("[Error](") + function + ") " + std::to_string(number) + ": " + message +
               "\n";
    }

    static std::string validation(int number, const std::string &message) {
        return line("appmngr_db_writeAppDbFromDatabase", number, message);
    }

    char versionOut_[6];
    std::string printed;
};

TEST_F(Container, DeciphersAndChecksItsDigest) {
    const std::string data = "the data";
    const std::string bytes = container(data);
    std::string output(bytes.size() + 8, '#');
    auto length = static_cast<uint32_t>(output.size());
    const auto size = static_cast<uint32_t>(bytes.size());
    EXPECT_EQ(appmngr_decrypt(output.data(), &length, bytes.data(), size), 1);
    EXPECT_EQ(length, 16 + data.size());
    EXPECT_EQ(output.substr(0, length), sealedBytes(data, {}));

    std::string spoiled = bytes;
    spoiled[33] = static_cast<char>(spoiled[33] ^ 1); // the data's block
    length = static_cast<uint32_t>(output.size());
    EXPECT_EQ(outputOf([&] {
                  EXPECT_EQ(appmngr_decrypt(output.data(), &length, spoiled.data(), size), -4);
              }),
              "");
    EXPECT_EQ(length, 16 + data.size());
}

TEST_F(Container, DecipheringIsRefused) {
    const std::string bytes = container(std::string(24, 'd')); // 56 bytes
    std::string output(128, '#');
    const auto decrypt = [&](uint32_t size, uint32_t capacity) {
        return appmngr_decrypt(output.data(), &capacity, bytes.data(), size);
    };
    EXPECT_EQ(
        outputOf([&] {
            EXPECT_EQ(decrypt(16, 128), -2);
            EXPECT_EQ(decrypt(56, 56), -2);
            EXPECT_EQ(decrypt(56, 60), -3);
            EXPECT_EQ(decrypt(23, 128), -3);
            EXPECT_EQ(decrypt(24, 128), -2);
            uint32_t length = 128;
            EXPECT_EQ(appmngr_decrypt(nullptr, &length, bytes.data(), 56), -1);
            EXPECT_EQ(appmngr_decrypt(output.data(), nullptr, bytes.data(), 56), -1);
            EXPECT_EQ(appmngr_decrypt(output.data(), &length, nullptr, 56), -1);
        }),
        line("appmngr_decrypt", 2654, "invalid length: srcLen = [16] *pDstlen = [128]") +
            line("appmngr_decrypt", 2654, "invalid length: srcLen = [56] *pDstlen = [56]") +
            line("appmngr_decrypt", 2676, "quelm_des_min_do failed: length = [0]") +
            line("appmngr_decrypt", 2676, "quelm_des_min_do failed: length = [16]") +
            line("appmngr_decrypt", 2684, "length field [24] exceeds the [24] bytes deciphered") +
            line("appmngr_decrypt", 2647, "Invalid param!") +
            line("appmngr_decrypt", 2647, "Invalid param!") +
            line("appmngr_decrypt", 2647, "Invalid param!"));
    EXPECT_EQ(decrypt(56, 64), 1);
}

TEST_F(Container, LengthFieldMustStayWithinWhatWasDeciphered) {
    const std::string data(24, 'd');
    for (const int64_t length : {25l, 0x7FFFFFFFl, 0xFFFFFFF0l, 0xFFFFFFFFl}) {
        Header header;
        header.length = length;
        EXPECT_EQ(validate(container(data, header)), APPMNGR_ERR_FILE_CHECK);
        EXPECT_EQ(printed, line("appmngr_decrypt", 2684,
                                "length field [" + std::to_string(length) +
                                    "] exceeds the [56] bytes deciphered") +
                               validation(2761, "appmngr_decrypt failed"));
    }
}

TEST_F(Container, BecomesAnImage) {
    const std::string data = packImage(smallDocument()).substr(4);
    EXPECT_EQ(validate(container(data)), APPMNGR_SUCCESS);
    EXPECT_EQ(printed, "");
    const std::string image(reinterpret_cast<const char *>(g_appmngr_decryptBuf) + 12,
                            data.size() + 4);
    EXPECT_EQ(image, packImage(smallDocument()));
    EXPECT_STREQ(versionOut_, "#####");
}

TEST_F(Container, HeaderIsValidatedFieldByField) {
    const auto with = [](const std::string &version, const std::string &magic,
                         const std::string &reserved) {
        Header header;
        header.version = version;
        header.magic = magic;
        header.reserved = reserved;
        return header;
    };
    const std::string version = std::string("\xFF\x01\x02\x07", 4);
    const std::string magic = std::string("\x04\x00\x00\x01", 4);
    const std::string none(4, '\0');
    const std::string wrongMagic = std::string("\x01\x00\x00\x04", 4);
    int32_t one = 0;
    std::memcpy(&one, "\0\0\1\0", 4);
    const std::string reservedLine =
        validation(2816, "Reserved value error: 28, " + std::to_string(one));
    const auto versionLine = [](const std::string &text) {
        return validation(2784, "AppDesc Invalid version: [" + text + "]!");
    };
    const struct {
        Header header;
        int32_t result;
        std::string output;
    } cases[] = {
        {with(version, magic, none), APPMNGR_SUCCESS, ""},
        {with(version, none, none), APPMNGR_SUCCESS, ""},
        {with(std::string("\0\x01\x02\xFF", 4), magic, none), APPMNGR_SUCCESS, ""},
        {with(std::string("\0\x01\x03\0", 4), wrongMagic, none), APPMNGR_ERR_FILE_INVALID_VERSION,
         versionLine("1.3.0")},
        {with(std::string("\0\x01\x14\0", 4), magic, none), APPMNGR_ERR_FILE_INVALID_VERSION,
         versionLine("1.20.0")},
        {with("\xFF\xFF\xFF\xFF", magic, none), APPMNGR_ERR_FILE_INVALID_VERSION,
         versionLine("255.255.255")},
        {with(version, wrongMagic, "\1\1\1\1"), APPMNGR_ERR_FILE_CHECK,
         validation(2807, "Magic code error!")},
        {with(version, magic, std::string("\0\0\1\0", 4)), APPMNGR_ERR_FILE_CHECK, reservedLine},
    };
    for (const auto &test : cases) {
        EXPECT_EQ(validate(container("data", test.header)), test.result) << test.output;
        EXPECT_EQ(printed, test.output);
        const bool isRefused = test.result == APPMNGR_ERR_FILE_INVALID_VERSION;
        EXPECT_STREQ(versionOut_, isRefused ? "1.2.x" : "#####");
    }
}

TEST_F(Container, ImageMustFitItsRegion) {
    EXPECT_EQ(validate(container(std::string(65'532, 'd'))), APPMNGR_SUCCESS);
    EXPECT_EQ(validate(container(std::string(65'533, 'd'))), APPMNGR_ERR_SIZE_LARGE);
    EXPECT_EQ(printed, validation(2828, "the app db file is too long:65537"));
    EXPECT_EQ(validate(container(std::string(204'792 - 32, 'd'))), APPMNGR_ERR_SIZE_LARGE);
    EXPECT_EQ(validate(container(std::string(204'792 - 32, 'd')) + "x"), APPMNGR_ERR_FILE_CHECK);
    EXPECT_EQ(printed, line("appmngr_decrypt", 2676, "quelm_des_min_do failed: length = [0]") +
                           validation(2761, "appmngr_decrypt failed"));
    EXPECT_EQ(validate(std::string(204'800, 'c')), APPMNGR_ERR_FILE_CHECK);
    EXPECT_EQ(printed, line("appmngr_decrypt", 2654,
                            "invalid length: srcLen = [204800] *pDstlen = [204800]") +
                           validation(2761, "appmngr_decrypt failed"));
}

TEST_F(Container, VersionsAreComparedToTheMinorNumber) {
    char out[6] = "#####";
    EXPECT_EQ(appmngr_db_checkVersion("1.2.9", out), 1);
    EXPECT_STREQ(out, "#####");
    EXPECT_EQ(appmngr_db_checkVersion("1.2", out), 0);
    EXPECT_STREQ(out, "1.2.x");
    EXPECT_EQ(appmngr_db_checkVersion("1.2.0", nullptr), 0);
    EXPECT_EQ(appmngr_db_checkVersion(nullptr, out), 0);
}

} // namespace
