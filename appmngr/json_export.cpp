// The rules as a JSON document.

#include "appmngr/appmngr_internal.h"
#include "appmngr/written.h"
#include "common/protocol.h"

#include <cstdio>
#include <cstdlib>

namespace {

// Only these two have a name in the document.
const char *protocolName(uint8_t protocol) {
    const bool isNamed = protocol == velda::tcp.number || protocol == velda::udp.number;
    return isNamed ? appmngr_utils_proto2str(protocol) : "none";
}

void writeFeature(FILE *file, const APPMNGR_FEATURE &feature) {
    std::fprintf(file, "\"enable\":%d, \"start\":%d, \"end\":%d, \"len\":%d,\n", feature.enable,
                 feature.start, feature.end, feature.minlength);
    std::fprintf(file, "\"type\":\"%s\", \"rule\":\"%s\"\n", feature.dpiType, feature.dpiCode);
}

void writeRule(FILE *file, const APPMNGR_RULE &rule) {
    std::fprintf(file, "{\n\"appname\":\"\",\n\"appid\":%d,\n\"tuple\":{\n", rule.appid);
    // Addresses are the numbers that lie in memory, read as signed.
    std::fprintf(file, "\"sip\":%d, \"dip\":%d, \"sport\":%d, \"dport\":%d,\n",
                 static_cast<int32_t>(rule.sip), static_cast<int32_t>(rule.dip), rule.sport,
                 rule.dport);
    std::fprintf(file, "\"proto\":\"%s\"\n},\n\"feature\":{\n\"orig\":{\n",
                 protocolName(rule.proto));
    writeFeature(file, rule.orig);
    std::fputs("},\n\"reply\":{\n", file);
    writeFeature(file, rule.reply);
    std::fputs("}\n}\n}", file);
}

void writeDocument(FILE *file) {
    std::fputs("{\n\"dpi_rules\":[\n", file);
    for (uint32_t i = 0; i < g_appmngr_appDb.ruleCount; ++i) {
        writeRule(file, g_appmngr_appDb.rule[i]);
        std::fputs(i + 1 == g_appmngr_appDb.ruleCount ? "\n" : ",\n", file);
    }
    std::fputs("]\n}\n", file);
}

} // namespace

int appmngr_writeRulesJson(FILE *file) {
    return velda::appmngr::written(file, writeDocument);
}

int appmngr_createJsonDb(void) {
    FILE *file = std::fopen("database.json", "w");
    if (file == nullptr) {
        appmngr_systemError("open database.json failed!\n");
        std::exit(-1);
    }
    writeDocument(file);
    std::fclose(file);
    return std::puts("Create JSON-Format database success!");
}
