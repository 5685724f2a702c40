#include "xmlp/base/entities.h"

#include "xmlp/base/chars.h"
#include "xmlp/base/report.h"
#include "xmlp/xmlp.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace velda::xmlp {
namespace {

// The entity whose reference begins the text, or null.
const Entity *entityAt(std::string_view text) {
    for (const Entity &entity : entities) {
        if (startsWith(text, entity.reference)) {
            return &entity;
        }
    }
    return nullptr;
}

// Hands the decoded text to `sink` in runs of bytes; false when it holds an '&' that begins no
// reference. Measuring and writing are this one walk, so that they cannot disagree.
template <class Sink>
bool decode(std::string_view text, Sink sink) {
    while (!text.empty()) {
        const size_t plain = std::min(text.find('&'), text.size());
        sink(text.data(), plain);
        text.remove_prefix(plain);
        if (text.empty()) {
            break;
        }
        const Entity *entity = entityAt(text);
        if (entity == nullptr) {
            return false;
        }
        sink(&entity->byte, 1);
        text.remove_prefix(entity->reference.size());
    }
    return true;
}

} // namespace

const char *findBadReference(std::string_view text) {
    size_t place = text.find('&');
    while (entityAt(text.substr(place)) != nullptr) {
        place = text.find('&', place + 1);
    }
    return text.data() + place;
}

} // namespace velda::xmlp

using namespace velda::xmlp;

uint32_t xmlp_transStrLen(const char *str, uint32_t len) {
    if (str == nullptr) {
        XMLP_REPORT("str is null.");
        return 0;
    }
    uint64_t length = 0;
    escape({str, len}, [&length](std::string_view part) { length += part.size(); });
    return static_cast<uint32_t>(std::min<uint64_t>(length, UINT32_MAX));
}

char *xmlp_transStr(char *dst, const char *src, uint32_t len) {
    if (dst == nullptr || src == nullptr) {
        XMLP_REPORT("invalid params.");
        return nullptr;
    }
    escape({src, len}, [&dst](std::string_view part) {
        std::memmove(dst, part.data(), part.size());
        dst += part.size();
    });
    return dst;
}

uint32_t xmlp_unTransStrLen(const char *str, uint32_t len) {
    if (str == nullptr) {
        XMLP_REPORT("str is null.");
        return 0;
    }
    uint32_t length = 0;
    const auto measure = [&length](const char *, size_t bytes) {
        length += static_cast<uint32_t>(bytes);
    };
    return decode({str, len}, measure) ? length : 0;
}

char *xmlp_unTransStr(char *dst, const char *src, uint32_t len) {
    if (dst == nullptr || src == nullptr) {
        XMLP_REPORT("invalid params.");
        return nullptr;
    }
    // memmove, so that a text may be decoded in place.
    const auto write = [&dst](const char *bytes, size_t count) {
        std::memmove(dst, bytes, count);
        dst += count;
    };
    return decode({src, len}, write) ? dst : nullptr;
}
