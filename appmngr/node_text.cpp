// Texts of elements. Fields of the model take them straight from the tree, callers through one shared
// scratch.

#include "appmngr/node_text.h"
#include "appmngr/appmngr_internal.h"

#include <algorithm>
#include <cstring>

namespace {

bool hasText(const XMLP_NODE *node) {
    return node != nullptr && node->valueSize < sizeof g_appmngr_nodeValue;
}

// The first bytes of a text, as far as they go before a NUL.
std::string_view startOfText(const XMLP_NODE *node, size_t limit) {
    const size_t size = std::min(size_t{node->valueSize}, limit);
    return {node->value, node->value != nullptr ? strnlen(node->value, size) : 0};
}

bool isSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

} // namespace

velda::appmngr::Integer velda::appmngr::parseInteger(std::string_view text) {
    constexpr uint64_t largest = INT64_MAX;
    const char *at = text.data();
    const char *end = at + text.size();
    while (at != end && isSpace(*at)) {
        ++at;
    }
    const bool isNegative = at != end && *at == '-';
    if (at != end && (*at == '-' || *at == '+')) {
        ++at;
    }
    const char *digits = at;
    uint64_t magnitude = 0;
    for (; at != end && isDigit(*at); ++at) {
        magnitude = magnitude <= largest / 10 ? magnitude * 10 + static_cast<uint64_t>(*at - '0')
                                              : UINT64_MAX;
    }
    const bool hasDigits = at != digits;
    while (at != end && isSpace(*at)) {
        ++at;
    }
    magnitude = std::min(magnitude, isNegative ? largest + 1 : largest);
    constexpr uint64_t largest32 = INT32_MAX;
    const bool fits = isNegative ? magnitude <= largest32 + 1 : magnitude <= largest32;
    return {static_cast<int32_t>(isNegative ? 0 - magnitude : magnitude),
            hasDigits && at == end && fits};
}

char *_appmngr_getNodeValue(const XMLP_NODE *node) {
    if (!hasText(node)) {
        return nullptr;
    }
    const std::string_view text = startOfText(node, sizeof g_appmngr_nodeValue);
    std::memset(g_appmngr_nodeValue, 0, sizeof g_appmngr_nodeValue);
    std::copy(text.begin(), text.end(), g_appmngr_nodeValue);
    return g_appmngr_nodeValue;
}

void _appmngr_putNodeValue(const char *) {}

int _appmngr_getNodeInt(const XMLP_NODE *node, int32_t *out) {
    if (!hasText(node)) {
        return -1;
    }
    // Reading a number ends at a NUL by itself.
    *out = velda::appmngr::parseInteger({node->value, node->value != nullptr ? node->valueSize : 0})
               .value;
    return 0;
}

int _appmngr_getNodeStr(const XMLP_NODE *node, char *dst, uint32_t size) {
    if (dst == nullptr || !hasText(node)) {
        return -1;
    }
    if (size > 0) {
        const std::string_view text = startOfText(node, size - 1);
        std::fill(std::copy(text.begin(), text.end(), dst), dst + size, '\0');
    }
    return 0;
}
