#include "common/common.h"

#include <cstdio>

namespace {

void write(FILE *file, const unsigned char *buf, int len) {
    if (buf == nullptr) {
        std::fputs("===\r\nData is NULL!\r\n", file);
        return;
    }
    // The address is shown in the 32 bits of the device, whatever the width of the host's.
    std::fprintf(file, "\r\nBuffer\r\n===\r\naddr:0x%x\r\nlen:%d!\r\n",
                 static_cast<unsigned>(reinterpret_cast<uintptr_t>(buf)), len);
    constexpr int bytesPerLine = 16;
    for (int i = 0; i < len; ++i) {
        std::fprintf(file, "%02x ", static_cast<unsigned>(buf[i]));
        if (i % bytesPerLine == bytesPerLine - 1) {
            std::fputs("\r\n", file);
        }
    }
    std::fputs("\r\n===============\r\n", file);
}

} // namespace

void appmngr_utils_dumpBuf(const unsigned char *buf, int len) {
    write(stdout, buf, len);
}

int appmngr_utils_writeBuf(FILE *file, const unsigned char *buf, int len) {
    if (file == nullptr) {
        return -1;
    }
    write(file, buf, len);
    return std::ferror(file) == 0 ? 0 : -1;
}
