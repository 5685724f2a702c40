// The rules and the DNS keywords of a database.

#include "tools/rules.h"

#include "tools/database.h"
#include "tools/subcommands.h"
#include "tools/table.h"
#include "tools/text.h"

#include <arpa/inet.h>
#include <array>

namespace {

Cell featureCell(const APPMNGR_FEATURE &feature) {
    Cell cell = textCell(featureText(feature));
    cell.json = jsonObject({{"enable", std::to_string(feature.enable)},
                            {"start", std::to_string(feature.start)},
                            {"end", std::to_string(feature.end)},
                            {"minlength", std::to_string(feature.minlength)},
                            {"dpiType", jsonText(feature.dpiType)},
                            {"dpiCode", jsonText(feature.dpiCode)}});
    return cell;
}

} // namespace

std::string endpointText(uint32_t address, uint16_t port) {
    std::array<char, INET_ADDRSTRLEN> dotted = {'0'};
    if (address != 0) {
        inet_ntop(AF_INET, &address, dotted.data(), dotted.size());
    }
    return std::string(dotted.data()) + ":" + std::to_string(port);
}

std::string featureText(const APPMNGR_FEATURE &feature) {
    const bool hasBounds = feature.start != 0 || feature.end != 0 || feature.minlength != 0;
    const bool hasCode = feature.dpiType[0] != '\0' || feature.dpiCode[0] != '\0';
    std::string text = feature.enable == 1    ? "on"
                       : feature.enable != 0  ? std::to_string(feature.enable)
                       : hasBounds || hasCode ? "off"
                                              : "";
    if (hasBounds) {
        text += joined({" ", std::to_string(feature.start), "-", std::to_string(feature.end),
                        " min ", std::to_string(feature.minlength)});
    }
    if (hasCode) {
        text.append(" ").append(feature.dpiType).append(": ").append(feature.dpiCode);
    }
    return text;
}

int rulesCommand(const Arguments &arguments) {
    const auto database = loadDatabase(arguments);
    if (!database) {
        return 1;
    }
    const AppFilter filter(*database, arguments);
    Table table = {
        "rules", {"id", "name", "protocol", "source", "destination", "orig", "reply"}, {}};
    for (const APPMNGR_RULE &rule : database->rules()) {
        if (filter.passes(rule.appid)) {
            table.rows.push_back({numberCell(rule.appid), textCell(database->nameOf(rule.appid)),
                                  textCell(appmngr_utils_proto2str(rule.proto)),
                                  textCell(endpointText(rule.sip, rule.sport)),
                                  textCell(endpointText(rule.dip, rule.dport)),
                                  featureCell(rule.orig), featureCell(rule.reply)});
        }
    }
    if (filter.canPass()) {
        printTable(arguments, database->name(), table);
    }
    return filter.canPass() ? 0 : 1;
}

int dnsCommand(const Arguments &arguments) {
    const auto database = loadDatabase(arguments);
    if (!database) {
        return 1;
    }
    const AppFilter filter(*database, arguments);
    Table table = {"keywords", {"id", "name", "keyword"}, {}};
    for (const APPMNGR_DNS_RULE &keyword : database->keywords()) {
        if (filter.passes(keyword.appid)) {
            table.rows.push_back({numberCell(keyword.appid),
                                  textCell(database->nameOf(keyword.appid)),
                                  textCell(keyword.dnsKw)});
        }
    }
    if (filter.canPass()) {
        printTable(arguments, database->name(), table);
    }
    return filter.canPass() ? 0 : 1;
}
