// The text of a "tuple" element, "proto ip:port ip:port", becomes the address fields of a rule
// record.

#include "appmngr/appmngr_internal.h"
#include "appmngr/context.h"
#include "appmngr/effects.h"
#include "appmngr/node_text.h"
#include "common/protocol.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cstring>
#include <string_view>

using namespace velda::appmngr;

namespace {

constexpr size_t tupleTextSize = infoOf(Element::tuple).field.size;
constexpr int fieldCount = 3;
constexpr int endpointFieldCount = 2;

// Null where the record lies beyond what was counted.
APPMNGR_RULE *ruleRecord(const uint32_t *tuples) {
    const uint64_t index = uint64_t{g_appmngr_counter.ruleIdx} + *tuples;
    return index < g_appmngr_appDb.ruleCount ? &g_appmngr_appDb.rule[index] : nullptr;
}

// An IPv4 address in network byte order; "0" stands for any and is 0.
bool readAddress(const char *text, uint32_t &address) {
    if (appmngr_string_match(text, "0") != 0) {
        address = 0;
        return true;
    }
    return inet_pton(AF_INET, text, &address) == 1;
}

uint16_t readPort(const char *text) {
    return static_cast<uint16_t>(parseInteger(text).value);
}

// Reads a tuple as nearly all are written, "tcp 0:0 10.0.0.5:80": small letters, single spaces, plain
// numbers. Splitting takes four times the instructions: without this, loading a large document takes 20 %
// more and a whole run of velda-db-parser 11 % more (12 % and 7 % with the splitting as fast as it can be).
//
// It accepts nothing that the general way does not store alike, so that it decides on time alone.
class PlainTuple {
public:
    explicit PlainTuple(std::string_view text) : at_(text.data()), end_(at_ + text.size()) {}

    // False, with nothing stored, for one that may still be a tuple in another form.
    bool read(APPMNGR_RULE &rule) {
        uint8_t protocol = 0;
        Endpoint source = {};
        Endpoint destination = {};
        if (!readProtocol(protocol) || !skip(' ') || !readEndpoint(source) || !skip(' ') ||
            !readEndpoint(destination) || at_ != end_) {
            return false;
        }
        rule.proto = protocol;
        rule.sip = source.address;
        rule.sport = source.port;
        rule.dip = destination.address;
        rule.dport = destination.port;
        return true;
    }

private:
    struct Endpoint {
        uint32_t address;
        uint16_t port;
    };

    bool skip(char c) {
        const bool isThere = at_ != end_ && *at_ == c;
        at_ += isThere ? 1 : 0;
        return isThere;
    }

    bool skip(std::string_view word) {
        const bool isThere = static_cast<size_t>(end_ - at_) >= word.size() &&
                             std::memcmp(at_, word.data(), word.size()) == 0;
        at_ += isThere ? word.size() : 0;
        return isThere;
    }

    bool readProtocol(uint8_t &protocol) {
        const auto is = [this, &protocol](const velda::Protocol &known) {
            protocol = known.number;
            return skip(known.name);
        };
        return is(velda::tcp) || is(velda::udp) || is(velda::icmp);
    }

    // Without zeros in front, so that it is the same number to everyone.
    bool readNumber(uint32_t largest, uint32_t &number) {
        const char *begin = at_;
        number = 0;
        for (; at_ != end_ && *at_ >= '0' && *at_ <= '9' && number <= largest; ++at_) {
            number = number * 10 + static_cast<uint32_t>(*at_ - '0');
        }
        const auto digits = at_ - begin;
        return number <= largest && (digits == 1 || (digits > 1 && *begin != '0'));
    }

    bool readEndpoint(Endpoint &endpoint) {
        uint32_t number = 0;
        if (!readNumber(UINT8_MAX, number)) {
            return false;
        }
        uint8_t bytes[sizeof endpoint.address] = {static_cast<uint8_t>(number)};
        const bool isAny = number == 0 && at_ != end_ && *at_ == ':';
        for (size_t i = 1; i < sizeof bytes && !isAny; ++i) {
            if (!skip('.') || !readNumber(UINT8_MAX, number)) {
                return false;
            }
            bytes[i] = static_cast<uint8_t>(number);
        }
        std::memcpy(&endpoint.address, bytes, sizeof bytes);
        if (!skip(':') || !readNumber(UINT16_MAX, number)) {
            return false;
        }
        endpoint.port = static_cast<uint16_t>(number);
        return true;
    }

    const char *at_;
    const char *end_;
};

bool isSeparator(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

void notifyPort(const XMLP_NODE *node, std::string_view port) {
    const Integer number = parseInteger(port);
    if (!port.empty() && (!number.isExact || number.value < 0 || number.value > UINT16_MAX)) {
        notify({APPMNGR_EFFECT_PORT, node, 0, port.data(), static_cast<uint32_t>(port.size())});
    }
}

// Tells of the ports in what is read of the text that are stored as other numbers, of a tuple that is
// refused too.
void notifyPorts(const XMLP_NODE *node) {
    const char *at = node->value;
    const size_t size = node->value != nullptr ? node->valueSize : 0;
    const char *end = at + std::min(size, tupleTextSize - 1);
    while (at != end) {
        const char *fieldEnd = std::find_if(at, end, isSeparator);
        const char *colon = std::find(at, fieldEnd, ':');
        if (colon != fieldEnd) {
            notifyPort(node, {colon + 1, static_cast<size_t>(fieldEnd - (colon + 1))});
        }
        at = std::find_if_not(fieldEnd, end, isSeparator);
    }
}

} // namespace

int _appmngr_xmlnode_handler_tuple(XMLP_NODE *node, void *param) {
    if (node == nullptr || isTag(param) || !inCountedPath(node)) {
        return -1;
    }
    if (hasListener(node) && notifyLeaf(node, Element::tuple)) {
        notifyPorts(node);
    }
    auto *tuples = static_cast<uint32_t *>(param);
    APPMNGR_RULE *rule = ruleRecord(tuples);
    if (rule == nullptr) {
        return -1;
    }

    const bool fits = node->value != nullptr && node->valueSize < tupleTextSize;
    if (fits && PlainTuple({node->value, node->valueSize}).read(*rule)) {
        ++*tuples;
        return 0;
    }
    char text[tupleTextSize];
    if (_appmngr_getNodeStr(node, text, sizeof text) != 0) {
        appmngr_report(__func__, 1247, "Not tuple string found!\n");
        return -1;
    }
    char *fields[fieldCount + 1];
    if (appmngr_string_makeSubStrByChar(text, ' ', fieldCount + 1, fields) != fieldCount) {
        appmngr_report(__func__, 1268, "Not match [proto ip:port ip:port] format!\n");
        return -1;
    }
    const int protocol = appmngr_utils_str2proto(fields[0]);
    if (protocol == APPMNGR_PROTO_UNKNOWN) {
        appmngr_report(__func__, 1280, "appmngr_utils_str2proto failed!\n");
        return -1;
    }
    rule->proto = static_cast<uint8_t>(protocol);

    char *endpoint[endpointFieldCount + 1];
    uint32_t address = 0;
    if (appmngr_string_makeSubStrByChar(fields[1], ':', endpointFieldCount + 1, endpoint) !=
        endpointFieldCount) {
        appmngr_report(__func__, 1295, "ucm_string_makeSubStrByChar failed!\n");
        return -1;
    }
    if (!readAddress(endpoint[0], address)) {
        appmngr_report(__func__, 1318, "inet_pton failed! str = [%s]\n", endpoint[0]);
        return -1;
    }
    rule->sip = address;
    rule->sport = readPort(endpoint[1]);

    if (appmngr_string_makeSubStrByChar(fields[2], ':', endpointFieldCount + 1, endpoint) !=
        endpointFieldCount) {
        appmngr_report(__func__, 1343, "Analyze the dest pair ip failed!\n");
        return -1;
    }
    if (!readAddress(endpoint[0], address)) {
        appmngr_report(__func__, 1362, "inet_pton failed, str = [%s]!\n", endpoint[0]);
        return -1;
    }
    rule->dip = address;
    rule->dport = readPort(endpoint[1]);
    ++*tuples;
    return 0;
}
