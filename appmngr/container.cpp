// The encrypted container: a database image behind a header, sealed by a digest and encrypted.

#include "appmngr/appmngr_internal.h"
#include "common/byte_order.h"
#include "crypto/quelm.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

using velda::loadBigEndian;
using velda::storeBigEndian;

namespace {

constexpr uint8_t deviceKey[QUELM_DES_KEY_SIZE] = QUELM_DEVICE_KEY;

// The decrypted container: digest, header, data. The digest covers all that follows it.
constexpr uint32_t digestSize = QUELM_MD5_SIZE;
constexpr uint32_t headerSize = APPMNGR_CONTAINER_HEADER_SIZE;

// Offsets in the header.
constexpr size_t versionOffset = 4; // of four bytes, the first one unused
constexpr size_t magicOffset = 8;
constexpr size_t reservedOffset = 12;

constexpr uint32_t magicCode = 0x04000001;

constexpr char currentVersion[] = "1.2.0";
constexpr uint8_t sealedVersion[] = {0, 1, 2, 0};
constexpr size_t comparedVersionSize = 4; // any patch level will do

// The length is held against what was decrypted before anything trusts it.
bool reaches(uint32_t decryptedSize, uint32_t dataLength) {
    return uint64_t{digestSize} + headerSize + dataLength <= decryptedSize;
}

enum class Opened { done, withoutArgument, tooShort, noCapacity, nothing, cutShort, wrongDigest };

struct Opening {
    Opened outcome;
    uint32_t decryptedSize; // bytes, digest included
    uint32_t dataLength;    // as the header tells, once that much is decrypted
};

// Puts header and data at the beginning of `dst` and their length in *dstLen. For a wrong digest the
// length is set too, and `dst` has that digest before them.
Opening openContainer(void *dst, uint32_t *dstLen, const void *src, uint32_t srcLen) {
    if (src == nullptr || dst == nullptr || dstLen == nullptr) {
        return {Opened::withoutArgument, 0, 0};
    }
    const uint32_t capacity = *dstLen;
    if (srcLen <= digestSize) {
        return {Opened::tooShort, 0, 0};
    }
    if (capacity <= srcLen) {
        return {Opened::noCapacity, 0, 0};
    }
    auto *text = static_cast<uint8_t *>(dst);
    std::memset(text, 0, capacity);
    const auto decryptedSize = static_cast<uint32_t>(quelm_des_min_do(
        src, static_cast<int32_t>(srcLen), text, static_cast<int32_t>(capacity), deviceKey, 0));
    if (decryptedSize <= digestSize) {
        return {Opened::nothing, decryptedSize, 0};
    }
    const uint32_t dataLength = loadBigEndian(text + digestSize);
    if (!reaches(decryptedSize, dataLength)) {
        return {Opened::cutShort, decryptedSize, dataLength};
    }
    const uint32_t sealedSize = headerSize + dataLength;
    *dstLen = sealedSize;
    if (quelm_md5_check(text, text + digestSize, static_cast<int32_t>(sealedSize)) == 0) {
        return {Opened::wrongDigest, decryptedSize, dataLength};
    }
    std::memmove(text, text + digestSize, sealedSize);
    return {Opened::done, decryptedSize, dataLength};
}

} // namespace

int32_t appmngr_decrypt(void *dst, uint32_t *dstLen, const void *src, uint32_t srcLen) {
    const Opening opening = openContainer(dst, dstLen, src, srcLen);
    switch (opening.outcome) {
    case Opened::done:
        return 1;
    case Opened::withoutArgument:
        appmngr_report(__func__, 2647, "Invalid param!\n");
        return -1;
    case Opened::tooShort:
    case Opened::noCapacity:
        appmngr_report(__func__, 2654, "invalid length: srcLen = [%d] *pDstlen = [%d]\n",
                       static_cast<int>(srcLen), static_cast<int>(*dstLen));
        return -2;
    case Opened::nothing:
        appmngr_report(__func__, 2676, "quelm_des_min_do failed: length = [%d]\n",
                       static_cast<int>(opening.decryptedSize));
        return -3;
    case Opened::cutShort:
        appmngr_report(__func__, 2684, "length field [%u] exceeds the [%u] bytes deciphered\n",
                       opening.dataLength, opening.decryptedSize);
        return -2;
    case Opened::wrongDigest:
        break;
    }
    return -4;
}

int32_t appmngr_db_openContainer(void *dst, uint32_t *dstLen, const void *src, uint32_t srcLen) {
    uint32_t length = dstLen != nullptr ? *dstLen : 0;
    // What the cipher asks for. It refuses a smaller capacity as it refuses too short a text.
    const bool hasCapacity = uint64_t{length} >= uint64_t{srcLen} + QUELM_DES_BLOCK_SIZE;
    switch (openContainer(dst, dstLen != nullptr ? &length : nullptr, src, srcLen).outcome) {
    case Opened::done:
        *dstLen = length;
        return APPMNGR_SUCCESS;
    case Opened::withoutArgument:
        return APPMNGR_ERR_INVALID_ARG;
    case Opened::noCapacity:
        return APPMNGR_ERR_SIZE_SMALL;
    case Opened::nothing:
        return hasCapacity ? APPMNGR_ERR_FILE_INVALID_LEN : APPMNGR_ERR_SIZE_SMALL;
    case Opened::tooShort:
    case Opened::cutShort:
        return APPMNGR_ERR_FILE_INVALID_LEN;
    case Opened::wrongDigest:
        break;
    }
    return APPMNGR_ERR_FILE_CHECK;
}

int appmngr_db_checkVersion(const char *versionText, char *versionOut) {
    if (versionText == nullptr || versionOut == nullptr) {
        return 0;
    }
    if (std::strncmp(versionText, currentVersion, comparedVersionSize) == 0) {
        return 1;
    }
    std::memcpy(versionOut, currentVersion, comparedVersionSize);
    versionOut[comparedVersionSize] = 'x';
    return 0;
}

int32_t appmngr_db_writeAppDbFromDatabase(APPMNGR_CONTAINER container, char *versionOut) {
    if (g_appmngr_decryptBuf == nullptr) {
        g_appmngr_decryptBuf =
            static_cast<unsigned char *>(std::malloc(g_appmngr_dbLayout.appDbXmlSize));
    }
    if (g_appmngr_decryptBuf == nullptr) {
        appmngr_report(__func__, 2754, "alloc memory fail\n");
        return -1;
    }
    uint8_t *work = g_appmngr_decryptBuf;
    uint32_t workLength = g_appmngr_dbLayout.appDbXmlSize;
    if (appmngr_decrypt(work, &workLength, container.data, container.length) <= 0) {
        appmngr_report(__func__, 2761, "appmngr_decrypt failed\n");
        return APPMNGR_ERR_FILE_CHECK;
    }
    const uint32_t dataLength = loadBigEndian(work);
    if (workLength - headerSize != dataLength) {
        appmngr_report(__func__, 2771,
                       "LEN ERROR AFTER appmngr_decrypt! lenBigEndian = %d, dstLen = %d\n",
                       static_cast<int>(dataLength), static_cast<int>(workLength));
        return APPMNGR_ERR_FILE_INVALID_LEN;
    }
    const uint8_t *version = work + versionOffset;
    char versionText[APPMNGR_VERSION_SIZE];
    std::snprintf(versionText, sizeof versionText, "%u.%u.%u", unsigned{version[1]},
                  unsigned{version[2]}, unsigned{version[3]});
    if (appmngr_db_checkVersion(versionText, versionOut) == 0) {
        appmngr_report(__func__, 2784, "AppDesc Invalid version: [%s]!\n", versionText);
        return APPMNGR_ERR_FILE_INVALID_VERSION;
    }
    const uint32_t magic = loadBigEndian(work + magicOffset);
    if (magic != magicCode && magic != 0) {
        appmngr_report(__func__, 2807, "Magic code error!\n");
        return APPMNGR_ERR_FILE_CHECK;
    }
    int32_t reserved = 0;
    std::memcpy(&reserved, work + reservedOffset, sizeof reserved);
    if (reserved != 0) {
        // Its place in the container, then what stands there.
        appmngr_report(__func__, 2816, "Reserved value error: %d, %d\n",
                       static_cast<int>(digestSize + reservedOffset), reserved);
        return APPMNGR_ERR_FILE_CHECK;
    }
    // From the reserved word on, the buffer becomes an image: the length, then the data.
    storeBigEndian(work + reservedOffset, dataLength);
    const uint32_t imageSize = dataLength + APPMNGR_IMAGE_LENGTH_SIZE;
    if (imageSize > g_appmngr_dbLayout.appDbEndOffset - g_appmngr_dbLayout.appDbOffset) {
        appmngr_report(__func__, 2828, "the app db file is too long:%u\n", imageSize);
        return APPMNGR_ERR_SIZE_LARGE;
    }
    return APPMNGR_SUCCESS;
}

int32_t appmngr_db_sealAppDb(void *dst, uint32_t *dstLen, const void *image, uint32_t imageLen) {
    if (dst == nullptr || dstLen == nullptr || image == nullptr) {
        return APPMNGR_ERR_INVALID_ARG;
    }
    const auto *bytes = static_cast<const uint8_t *>(image);
    if (imageLen < APPMNGR_IMAGE_LENGTH_SIZE) {
        return APPMNGR_ERR_FILE_INVALID_FORMAT;
    }
    const uint32_t dataLength = loadBigEndian(bytes);
    if (dataLength > APPMNGR_BLOCK_SIZE_MAX) {
        return APPMNGR_ERR_SIZE_LARGE;
    }
    if (dataLength > imageLen - APPMNGR_IMAGE_LENGTH_SIZE) {
        return APPMNGR_ERR_FILE_INVALID_FORMAT;
    }
    constexpr uint32_t block = QUELM_DES_BLOCK_SIZE;
    const uint32_t plainSize = digestSize + headerSize + dataLength;
    const uint32_t sealedSize = (plainSize + block - 1) / block * block;
    if (*dstLen < sealedSize) {
        return APPMNGR_ERR_SIZE_SMALL;
    }
    auto *plain = static_cast<uint8_t *>(dst);
    std::memset(plain, 0, sealedSize);
    uint8_t *header = plain + digestSize;
    storeBigEndian(header, dataLength);
    std::memcpy(header + versionOffset, sealedVersion, sizeof sealedVersion);
    storeBigEndian(header + magicOffset, magicCode);
    std::memcpy(header + headerSize, bytes + APPMNGR_IMAGE_LENGTH_SIZE, dataLength);
    quelm_md5_sum(plain, header, static_cast<int32_t>(headerSize + dataLength));
    quelm_des_inplace_do(plain, static_cast<int32_t>(sealedSize), deviceKey, 1);
    *dstLen = sealedSize;
    return APPMNGR_SUCCESS;
}
