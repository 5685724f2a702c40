#include "common/protocol.h"

#include "common/common.h"

using velda::Protocol;
using velda::protocols;

int appmngr_utils_str2proto(const char *name) {
    for (const Protocol &protocol : protocols) {
        if (appmngr_string_safeCaseCmp(name, protocol.name.data()) == 0) {
            return protocol.number;
        }
    }
    appmngr_notice("Unknown protocol!\r\n");
    return APPMNGR_PROTO_UNKNOWN;
}

const char *appmngr_utils_proto2str(int proto) {
    for (const Protocol &protocol : protocols) {
        if (protocol.number == proto) {
            return protocol.name.data();
        }
    }
    return "unknown";
}
