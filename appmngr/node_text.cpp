// Texts of elements, taken through one shared scratch.

#include "appmngr/appmngr_internal.h"

#include <cstdlib>
#include <cstring>

char g_appmngr_nodeValue[APPMNGR_NODE_TEXT_SIZE];

char *_appmngr_getNodeValue(const XMLP_NODE *node) {
    if (node == nullptr || node->valueSize >= sizeof g_appmngr_nodeValue) {
        return nullptr;
    }
    std::memset(g_appmngr_nodeValue, 0, sizeof g_appmngr_nodeValue);
    if (node->value != nullptr) {
        std::memcpy(g_appmngr_nodeValue, node->value, strnlen(node->value, node->valueSize));
    }
    return g_appmngr_nodeValue;
}

void _appmngr_putNodeValue(const char *) {}

int _appmngr_getNodeInt(const XMLP_NODE *node, int32_t *out) {
    const char *text = _appmngr_getNodeValue(node);
    if (text == nullptr) {
        return -1;
    }
    // What atoi gives, also where the number does not fit and atoi is undefined.
    *out = static_cast<int32_t>(std::strtol(text, nullptr, 10));
    _appmngr_putNodeValue(text);
    return 0;
}

int _appmngr_getNodeStr(const XMLP_NODE *node, char *dst, uint32_t size) {
    const char *text = _appmngr_getNodeValue(node);
    if (dst == nullptr || text == nullptr) {
        return -1;
    }
    if (size > 0) {
        std::strncpy(dst, text, size - 1);
        dst[size - 1] = '\0';
    }
    _appmngr_putNodeValue(text);
    return 0;
}
