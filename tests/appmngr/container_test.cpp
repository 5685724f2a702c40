// Encrypted containers, good ones and ones with one thing wrong.

#include "crypto/quelm.h"
#include "tests/appmngr/model_fixture.h"
#include "tests/support/files.h"

namespace {

uint32_t lengthOf(const std::string &bytes) {
    return static_cast<uint32_t>(bytes.size());
}

// Header and data, as the test in a file of cases wants them.
std::string plainContainer(const Case &test) {
    const std::string data = test.text("data");
    const auto length = static_cast<uint32_t>(test.number("length", lengthOf(data)));
    return bigEndian(length) + fromHex(test.text("version", "09010200")) +
           fromHex(test.text("magic", "04000001")) + fromHex(test.text("reserved", "00000000")) +
           data;
}

// Digest, header and data under the container's key.
std::string sealed(const std::string &plain) {
    std::string bytes(16, '\0');
    quelm_md5_sum(bytes.data(), plain.data(), static_cast<int32_t>(plain.size()));
    bytes += plain;
    bytes.resize((bytes.size() + 7) / 8 * 8, '\0');
    quelm_des_inplace_do(bytes.data(), static_cast<int32_t>(bytes.size()),
                         fromHex("5C1E93A7026BD8F4").data(), 1);
    return bytes;
}

TEST(Container, IsValidatedFieldByField) {
    forEachCase("container.cases", [](const Case &test) {
        const std::string bytes =
            test.text("bytes", sealed(plainContainer(test)) + test.text("tail"));
        const APPMNGR_CONTAINER container = {0xDEADBEEF, lengthOf(bytes), bytes.data()};
        std::string versionOut = "#####";
        int32_t result = 0;
        EXPECT_EQ(outputOf([&] {
                      result = appmngr_db_writeAppDbFromDatabase(container, versionOut.data());
                  }),
                  test.lines("printed"));
        EXPECT_EQ(result, test.number("result"));
        EXPECT_EQ(versionOut, test.text("out", "#####"));
        if (result == 0) { // from the reserved word on it has become an image
            const std::string image = bigEndian(lengthOf(test.text("data"))) + test.text("data");
            EXPECT_EQ(
                std::string_view(reinterpret_cast<char *>(g_appmngr_decryptBuf) + 12, image.size()),
                image);
        }
    });
}

TEST(Container, IsMadeOfAnImage) {
    for (const size_t size : std::vector<size_t>{0, 14, 15, 16, 23, 65532}) {
        const std::string data(size, 'd');
        const std::string image = bigEndian(lengthOf(data)) + data;
        std::string container(image.size() + 64, '#');
        uint32_t length = lengthOf(container);
        const std::string behind = image + "more";
        ASSERT_EQ(appmngr_db_sealAppDb(container.data(), &length, behind.data(), lengthOf(behind)),
                  0);
        Case plain;
        plain.add("data", data);
        plain.add("version", "00010200");
        EXPECT_EQ(container.substr(0, length), sealed(plainContainer(plain))) << size;
        char version[APPMNGR_VERSION_SIZE];
        EXPECT_EQ(appmngr_db_writeAppDbFromDatabase({0, length, container.data()}, version), 0);
    }
    const auto seal = [](const std::string &image, uint32_t room) {
        std::string container(room, '#');
        return appmngr_db_sealAppDb(container.data(), &room, image.data(), lengthOf(image));
    };
    EXPECT_EQ(seal(bigEndian(24) + std::string(24, 'd'), 55), APPMNGR_ERR_SIZE_SMALL);
    EXPECT_EQ(seal(bigEndian(24) + std::string(23, 'd'), 99), APPMNGR_ERR_FILE_INVALID_FORMAT);
    EXPECT_EQ(seal("abc", 99), APPMNGR_ERR_FILE_INVALID_FORMAT);
    EXPECT_EQ(seal(bigEndian(65533), 99), APPMNGR_ERR_SIZE_LARGE);
    EXPECT_EQ(appmngr_db_sealAppDb(nullptr, nullptr, "", 0), APPMNGR_ERR_INVALID_ARG);
}

TEST(Container, IsDecipheredIntoLargerRoom) {
    Case good;
    good.add("data", std::string(24, 'd'));
    const std::string plain = plainContainer(good);
    std::string bytes = sealed(plain);
    std::string output;
    uint32_t length = 0;
    const auto callWith = [&](auto call, size_t size, size_t capacity) {
        output.assign(capacity, '#');
        length = static_cast<uint32_t>(capacity);
        const std::vector<char> exact(bytes.begin(), bytes.begin() + static_cast<long>(size));
        return call(output.data(), &length, exact.data(), static_cast<uint32_t>(size));
    };
    const auto decrypt = [&](size_t size, size_t capacity) {
        return callWith(appmngr_decrypt, size, capacity);
    };
    const auto open = [&](size_t size, size_t capacity) {
        return callWith(appmngr_db_openContainer, size, capacity);
    };
    forEachCase("decrypt.cases", [&](const Case &test) {
        int32_t result = 0;
        EXPECT_EQ(outputOf([&] { result = decrypt(test.size("length"), test.size("capacity")); }),
                  test.lines("printed"));
        EXPECT_EQ(result, test.number("result"));
        EXPECT_EQ(outputOf([&] { result = open(test.size("length"), test.size("capacity")); }), "");
        EXPECT_EQ(appmngr_errStr(static_cast<int16_t>(result)),
                  test.text("opened", "APPMNGR_SUCCESS"));
        EXPECT_EQ(length, result == 0 ? plain.size() : test.size("capacity"));
    });
    EXPECT_EQ(decrypt(56, 64), 1);
    EXPECT_EQ(output.substr(0, length), plain);
    EXPECT_EQ(open(56, 64), 0);
    EXPECT_EQ(output.substr(0, length), plain);
    bytes[33] = static_cast<char>(bytes[33] ^ 1); // in the data
    EXPECT_EQ(outputOf([&] { EXPECT_EQ(decrypt(56, 64), -4); }), "");
    EXPECT_EQ(length, plain.size());
    EXPECT_EQ(open(56, 64), APPMNGR_ERR_FILE_CHECK);
    EXPECT_EQ(length, 64u);
}

} // namespace
