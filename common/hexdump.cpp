#include "common/common.h"

#include <cstdio>

void appmngr_utils_dumpBuf(const unsigned char *buf, int len) {
    if (buf == nullptr) {
        std::puts("===\r\nData is NULL!\r");
        return;
    }
    // The address is shown in the 32 bits of the device, whatever the width of the host's.
    std::printf("\r\nBuffer\r\n===\r\naddr:0x%x\r\nlen:%d!\r\n",
                static_cast<unsigned>(reinterpret_cast<uintptr_t>(buf)), len);
    constexpr int bytesPerLine = 16;
    for (int i = 0; i < len; ++i) {
        std::printf("%02x ", static_cast<unsigned>(buf[i]));
        if (i % bytesPerLine == bytesPerLine - 1) {
            std::puts("\r");
        }
    }
    std::puts("\r\n===============\r");
}
