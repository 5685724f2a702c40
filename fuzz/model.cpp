#include "fuzz/model.h"

#include "appmngr/appmngr_internal.h"

#include <algorithm>
#include <cstring>
#include <span>

namespace fuzz {
namespace {

// Texts end within their fields, and nothing stands behind the end.
template <size_t Size>
void requireText(const char (&text)[Size]) {
    const char *end = text + strnlen(text, Size);
    FUZZ_REQUIRE(end != text + Size);
    FUZZ_REQUIRE(std::all_of(end, text + Size, [](char byte) { return byte == '\0'; }));
}

void requireFeature(const APPMNGR_FEATURE &feature) {
    requireText(feature.dpiType);
    requireText(feature.dpiCode);
}

bool endsWith(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

} // namespace

void requireSoundModel(int result) {
    const APPMNGR_APPDB &db = g_appmngr_appDb;
    if (result != 0) {
        FUZZ_REQUIRE(result == -1 && !printed().empty());
        FUZZ_REQUIRE(db.rule == nullptr && db.appType == nullptr && g_appmngr_app == nullptr);
        FUZZ_REQUIRE(db.ruleCount + db.appTypeCount + db.appCount + g_appmngr_appDns.count == 0);
        return;
    }
    const APPMNGR_COUNTER &counter = g_appmngr_counter;
    FUZZ_REQUIRE(db.appCount <= counter.appCnt && db.ruleCount <= counter.tupleCnt);
    FUZZ_REQUIRE(db.appTypeCount <= APPMNGR_APP_TYPES_MAX);
    FUZZ_REQUIRE(counter.dnsKwIdx <= g_appmngr_appDns.count);
    requireText(db.ver);
    requireText(db.proModel);
    requireText(db.expired);
    for (const APPMNGR_APP &app : std::span(g_appmngr_app, db.appCount)) {
        requireText(app.name);
    }
    for (const APPMNGR_APPTYPE &type : std::span(db.appType, db.appTypeCount)) {
        requireText(type.name);
    }
    for (const APPMNGR_RULE &rule : std::span(db.rule, db.ruleCount)) {
        requireFeature(rule.orig);
        requireFeature(rule.reply);
    }
    for (const APPMNGR_DNS_RULE &dns : std::span(g_appmngr_appDns.rule, g_appmngr_appDns.count)) {
        requireText(dns.dnsKw);
    }
}

void writeModel() {
    FUZZ_REQUIRE(appmngr_saveIdAndName(pathToWrite) == 0);
    const std::string_view list = writtenFile();
    FUZZ_REQUIRE(list.substr(0, list.find('\n')) ==
                 std::string_view(g_appmngr_appDb.ver).substr(0, list.find('\n')));
    FUZZ_REQUIRE(std::count(list.begin(), list.end(), '\n') > int64_t{g_appmngr_appDb.appCount});
    appmngr_createJsonDb();
    FUZZ_REQUIRE(endsWith(writtenFile(), "]\n}\n"));
    FUZZ_REQUIRE(endsWith(printed(), "success!\n"));
    forgetPrinted();
    appmngr_dumpAppDb();
    appmngr_dumpAppList();
    appmngr_dumpAppTypeList();
    if (g_appmngr_appDb.appCount > 0) {
        appmngr_dumpAppRules(g_appmngr_app[0].id);
    }
    FUZZ_REQUIRE(!printed().empty());
}

} // namespace fuzz
