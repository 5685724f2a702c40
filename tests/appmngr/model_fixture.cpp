#include "tests/appmngr/model_fixture.h"

#include <arpa/inet.h>
#include <cstring>
#include <span>
#include <sstream>

namespace {

// Nothing for a direction that says nothing.
std::string featureText(const char *direction, const APPMNGR_FEATURE &feature) {
    const APPMNGR_FEATURE nothing = {};
    if (std::memcmp(&feature, &nothing, sizeof feature) == 0) {
        return "";
    }
    std::ostringstream out;
    out << ", " << direction << " " << feature.enable << " " << feature.start << " " << feature.end
        << " " << feature.minlength << " '" << feature.dpiType << "' '" << feature.dpiCode << "'";
    return out.str();
}

} // namespace

std::string endpoints(const APPMNGR_RULE &rule) {
    char source[INET_ADDRSTRLEN];
    char destination[INET_ADDRSTRLEN];
    inet_ntop(AF_INET, &rule.sip, source, sizeof source);
    inet_ntop(AF_INET, &rule.dip, destination, sizeof destination);
    std::ostringstream out;
    out << int{rule.proto} << " " << source << ":" << rule.sport << " " << destination << ":"
        << rule.dport;
    return out.str();
}

std::string modelText() {
    std::ostringstream out;
    const APPMNGR_APPDB &db = g_appmngr_appDb;
    out << "ver '" << db.ver << "' model '" << db.proModel << "' expired '" << db.expired << "'\n";
    for (const APPMNGR_APP &app : std::span(g_appmngr_app, db.appCount)) {
        out << "app " << app.id << " '" << app.name << "' visible " << app.visible << "\n";
    }
    for (const APPMNGR_APPTYPE &type : std::span(db.appType, db.appTypeCount)) {
        out << "type " << type.id << " '" << type.name << "'";
        for (uint32_t id = 0; id < APPMNGR_APP_BITMAP_BITS; ++id) {
            if (appmngr_bitmap_test(type.appBitmap, id) != 0) {
                out << " has " << id;
            }
        }
        out << "\n";
    }
    for (const APPMNGR_RULE &rule : std::span(db.rule, db.ruleCount)) {
        out << "rule " << rule.appid << ": " << endpoints(rule) << featureText("ori", rule.orig)
            << featureText("rep", rule.reply) << "\n";
    }
    for (const APPMNGR_DNS_RULE &dns : std::span(g_appmngr_appDns.rule, g_appmngr_appDns.count)) {
        out << "keyword " << dns.appid << " '" << dns.dnsKw << "'\n";
    }
    return out.str();
}
