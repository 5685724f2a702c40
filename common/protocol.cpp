#include "common/common.h"

namespace {

struct Protocol {
    const char *name;
    int number;
};

constexpr Protocol protocols[] = {{"tcp", 6}, {"udp", 17}, {"icmp", 1}};

} // namespace

int appmngr_utils_str2proto(const char *name) {
    for (const Protocol &protocol : protocols) {
        if (appmngr_string_safeCaseCmp(name, protocol.name) == 0) {
            return protocol.number;
        }
    }
    appmngr_notice("Unknown protocol!\r\n");
    return APPMNGR_PROTO_UNKNOWN;
}

const char *appmngr_utils_proto2str(int proto) {
    for (const Protocol &protocol : protocols) {
        if (protocol.number == proto) {
            return protocol.name;
        }
    }
    return "unknown";
}
