// The text of a "tuple" element, "proto ip:port ip:port", becomes the address fields of a rule
// record.

#include "appmngr/appmngr_internal.h"
#include "appmngr/node_text.h"

#include <arpa/inet.h>
#include <cstddef>

namespace {

constexpr size_t tupleTextSize = 64;

struct Field {
    char *begin;
    char *end;
};

bool isSeparator(char c, char separator) {
    return c == separator || (c <= '\r' && (c == '\t' || c == '\r' || c == '\n'));
}

// The first field from `at` on, empty when there is none.
Field nextField(char *at, char separator) {
    while (isSeparator(*at, separator)) {
        ++at;
    }
    Field field = {at, at};
    while (*field.end != '\0' && !isSeparator(*field.end, separator)) {
        ++field.end;
    }
    return field;
}

// Splits a text that has as many fields as there is room for. appmngr_string_makeSubStrByChar would do
// the same, but takes longer than the rest of a tuple; here it tells what is wrong with other texts.
template <size_t Count>
bool split(char *text, char separator, char *(&out)[Count]) {
    Field fields[Count];
    char *rest = text;
    for (Field &field : fields) {
        field = nextField(rest, separator);
        rest = field.end;
    }
    const bool isComplete = *fields[Count - 1].begin != '\0';
    if (!isComplete || *nextField(rest, separator).begin != '\0') {
        char *found[Count + 1];
        appmngr_string_makeSubStrByChar(text, separator, Count + 1, found);
        return false;
    }
    for (size_t i = 0; i < Count; ++i) {
        out[i] = fields[i].begin;
        *fields[i].end = '\0';
    }
    return true;
}

// Null where `param` is no rule's counter or the record lies beyond what was counted.
APPMNGR_RULE *ruleRecord(const uint32_t *tuples) {
    const uint64_t index = uint64_t{g_appmngr_counter.ruleIdx} + *tuples;
    return index < g_appmngr_appDb.ruleCount ? &g_appmngr_appDb.rule[index] : nullptr;
}

bool isTupleCounter(const void *param) {
    constexpr uintptr_t largestSelector = 1;
    return reinterpret_cast<uintptr_t>(param) > largestSelector;
}

// An IPv4 address in network byte order; "0" stands for any and is 0.
bool readAddress(const char *text, uint32_t &address) {
    if (text[0] == '0' && text[1] == '\0') {
        address = 0;
        return true;
    }
    return inet_pton(AF_INET, text, &address) == 1;
}

uint16_t readPort(const char *text) {
    return static_cast<uint16_t>(velda::appmngr::integerOf(text));
}

} // namespace

int _appmngr_xmlnode_handler_tuple(XMLP_NODE *node, void *param) {
    if (node == nullptr || !isTupleCounter(param)) {
        return -1;
    }
    auto *tuples = static_cast<uint32_t *>(param);
    APPMNGR_RULE *rule = ruleRecord(tuples);
    if (rule == nullptr) {
        return -1;
    }

    char text[tupleTextSize];
    if (_appmngr_getNodeStr(node, text, sizeof text) != 0) {
        appmngr_report(__func__, 1247, "Not tuple string found!\n");
        return -1;
    }
    char *fields[3];
    if (!split(text, ' ', fields)) {
        appmngr_report(__func__, 1268, "Not match [proto ip:port ip:port] format!\n");
        return -1;
    }
    const int protocol = appmngr_utils_str2proto(fields[0]);
    if (protocol == APPMNGR_PROTO_UNKNOWN) {
        appmngr_report(__func__, 1280, "appmngr_utils_str2proto failed!\n");
        return -1;
    }
    rule->proto = static_cast<uint8_t>(protocol);

    char *endpoint[2];
    uint32_t address = 0;
    if (!split(fields[1], ':', endpoint)) {
        appmngr_report(__func__, 1295, "ucm_string_makeSubStrByChar failed!\n");
        return -1;
    }
    if (!readAddress(endpoint[0], address)) {
        appmngr_report(__func__, 1318, "inet_pton failed! str = [%s]\n", endpoint[0]);
        return -1;
    }
    rule->sip = address;
    rule->sport = readPort(endpoint[1]);

    if (!split(fields[2], ':', endpoint)) {
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
