// Integers as they lie in files, whatever the order of the host and wherever they begin.
#pragma once

#include <cstdint>

namespace velda {

inline uint32_t loadBigEndian(const uint8_t *bytes) {
    return uint32_t{bytes[0]} << 24 | uint32_t{bytes[1]} << 16 | uint32_t{bytes[2]} << 8 | bytes[3];
}

inline uint32_t loadLittleEndian(const uint8_t *bytes) {
    return uint32_t{bytes[3]} << 24 | uint32_t{bytes[2]} << 16 | uint32_t{bytes[1]} << 8 | bytes[0];
}

inline void storeBigEndian(uint8_t *bytes, uint32_t value) {
    for (int i = 0; i < 4; ++i) {
        bytes[i] = static_cast<uint8_t>(value >> (24 - 8 * i));
    }
}

inline void storeLittleEndian(uint8_t *bytes, uint64_t value) {
    for (int i = 0; i < 8; ++i) {
        bytes[i] = static_cast<uint8_t>(value >> (8 * i));
    }
}

} // namespace velda
