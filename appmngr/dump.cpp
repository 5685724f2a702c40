// The database on the console.

#include "appmngr/records.h"

#include <arpa/inet.h>
#include <cstdio>

namespace {

constexpr char headingRule[] = "======================";
constexpr char sectionRule[] = "+++++++++++++++++++++++++++";
constexpr char listRule[] = "---------------";
constexpr char tableRule[] = "--------------";

// How the two dumps of rules differ.
enum class RuleForm { ofOneApp, ofAll };

void row(const char *label, const char *text) {
    std::printf("%-25s%s\n", label, text);
}

void row(const char *label, int32_t number) {
    std::printf("%-25s%d\n", label, number);
}

void row(const char *label, uint32_t count) {
    row(label, static_cast<int32_t>(count));
}

void dumpHeading(RuleForm form) {
    std::puts(headingRule);
    std::puts("Application Database");
    std::puts(headingRule);
    row("Version:", g_appmngr_appDb.ver);
    row("ProModel:", g_appmngr_appDb.proModel);
    row("Expired:", g_appmngr_appDb.expired);
    if (form == RuleForm::ofAll) {
        row("App count:", g_appmngr_appDb.appCount);
        row("Rule count:", g_appmngr_appDb.ruleCount);
    }
    std::puts(sectionRule);
}

void dumpName(int32_t appid, RuleForm form) {
    const APPMNGR_APP *app = _appmngr_getAppById(appid);
    if (app == nullptr) {
        std::puts("name: Not Found!!!");
    } else if (form == RuleForm::ofOneApp) {
        std::printf("name: %s\n", app->name);
    } else {
        std::printf("%-25s %s\n\n", "name:", app->name);
    }
}

// Dotted, or the number that lies in memory.
void dumpAddress(const char *label, uint32_t address, RuleForm form) {
    if (form == RuleForm::ofAll) {
        row(label, static_cast<int32_t>(address));
        return;
    }
    char dotted[INET_ADDRSTRLEN];
    row(label, inet_ntop(AF_INET, &address, dotted, sizeof dotted));
}

void dumpFeature(const char *title, const APPMNGR_FEATURE &feature) {
    std::puts(title);
    row("Enable:", feature.enable);
    row("pkt_start:", feature.start);
    row("pkt_end:", feature.end);
    row("pkt_length:", feature.minlength);
    row("DPI type:", feature.dpiType);
    row("DPI code:", feature.dpiCode);
}

void dumpRule(uint32_t index, RuleForm form) {
    const APPMNGR_RULE &rule = g_appmngr_appDb.rule[index];
    row("Rule index:", index);
    std::puts("--------");
    row("ID:", rule.appid);
    dumpName(rule.appid, form);
    row("Protocol:", appmngr_utils_proto2str(rule.proto));
    dumpAddress("Source IP:", rule.sip, form);
    row("Source Port:", int32_t{rule.sport});
    dumpAddress("Destination IP:", rule.dip, form);
    row("Destination Port:", int32_t{rule.dport});
    dumpFeature("\nORIGINAL:", rule.orig);
    dumpFeature("\nREPLY:", rule.reply);
    std::puts("");
}

int showXml(const char *title, const char *text) {
    std::puts(title);
    std::puts("--------------------------------");
    if (text != nullptr) {
        std::puts(text);
    }
    return 0;
}

} // namespace

int appmngr_showAppDbXml(void) {
    return showXml("Show APP DB in xml format!", g_appmngr_appDbXml);
}

int appmngr_showAppDescXml(void) {
    return showXml("Show APP Desc in xml format!", g_appmngr_appDescXml);
}

int appmngr_dumpAppRules(int32_t id) {
    dumpHeading(RuleForm::ofOneApp);
    std::printf("\nAppId %d rules:\n", id);
    std::puts(listRule);
    for (uint32_t i = 0; i < g_appmngr_appDb.ruleCount; ++i) {
        if (g_appmngr_appDb.rule[i].appid == id) {
            dumpRule(i, RuleForm::ofOneApp);
        }
    }
    return 0;
}

int appmngr_dumpAppDb(void) {
    dumpHeading(RuleForm::ofAll);
    std::puts("\nAll Rules:");
    std::puts(listRule);
    for (uint32_t i = 0; i < g_appmngr_appDb.ruleCount; ++i) {
        dumpRule(i, RuleForm::ofAll);
    }
    std::puts(sectionRule);
    std::puts("All Types:");
    row("Type count:", g_appmngr_appDb.appTypeCount);
    std::puts(listRule);
    return 0;
}

int appmngr_dumpAppList(void) {
    const auto apps = velda::appmngr::filledApplications();
    std::printf("%s\nAll application [cnt = %d]\n\n", tableRule, static_cast<int>(apps.size()));
    int index = 0;
    for (const APPMNGR_APP &app : apps) {
        std::printf("index = %5d, appid = %5d, visiable = [%d], name = [%s]\n", index++, app.id,
                    app.visible, app.name);
    }
    return std::puts(tableRule);
}

int appmngr_dumpAppTypeList(void) {
    const uint32_t count = g_appmngr_appDb.appTypeCount;
    std::printf("%s\nAll app type [cnt = %d]\n\n", tableRule, static_cast<int>(count));
    for (uint32_t i = 0; i < count; ++i) {
        const APPMNGR_APPTYPE &type = g_appmngr_appDb.appType[i];
        std::printf("index = %5d, id =  %5d, name = [%s]\n", static_cast<int>(i), type.id,
                    type.name);
        appmngr_utils_dumpBuf(reinterpret_cast<const unsigned char *>(type.appBitmap),
                              sizeof type.appBitmap);
        std::puts("");
    }
    return std::puts(tableRule);
}
