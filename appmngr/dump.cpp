// The database for people to read.

#include "appmngr/records.h"
#include "appmngr/written.h"

#include <arpa/inet.h>
#include <cstdio>

using velda::appmngr::written;

namespace {

constexpr char headingRule[] = "======================";
constexpr char sectionRule[] = "+++++++++++++++++++++++++++";
constexpr char listRule[] = "---------------";
constexpr char tableRule[] = "--------------";

// How the two dumps of rules differ.
enum class RuleForm { ofOneApp, ofAll };

void line(FILE *file, const char *text) {
    std::fprintf(file, "%s\n", text);
}

void row(FILE *file, const char *label, const char *text) {
    std::fprintf(file, "%-25s%s\n", label, text);
}

void row(FILE *file, const char *label, int32_t number) {
    std::fprintf(file, "%-25s%d\n", label, number);
}

void row(FILE *file, const char *label, uint32_t count) {
    row(file, label, static_cast<int32_t>(count));
}

void writeHeading(FILE *file, RuleForm form) {
    line(file, headingRule);
    line(file, "Application Database");
    line(file, headingRule);
    row(file, "Version:", g_appmngr_appDb.ver);
    row(file, "ProModel:", g_appmngr_appDb.proModel);
    row(file, "Expired:", g_appmngr_appDb.expired);
    if (form == RuleForm::ofAll) {
        row(file, "App count:", g_appmngr_appDb.appCount);
        row(file, "Rule count:", g_appmngr_appDb.ruleCount);
    }
    line(file, sectionRule);
}

void writeName(FILE *file, int32_t appid, RuleForm form) {
    const APPMNGR_APP *app = _appmngr_getAppById(appid);
    if (app == nullptr) {
        line(file, "name: Not Found!!!");
    } else if (form == RuleForm::ofOneApp) {
        std::fprintf(file, "name: %s\n", app->name);
    } else {
        std::fprintf(file, "%-25s %s\n\n", "name:", app->name);
    }
}

// Dotted, or the number that lies in memory.
void writeAddress(FILE *file, const char *label, uint32_t address, RuleForm form) {
    if (form == RuleForm::ofAll) {
        row(file, label, static_cast<int32_t>(address));
        return;
    }
    char dotted[INET_ADDRSTRLEN];
    row(file, label, inet_ntop(AF_INET, &address, dotted, sizeof dotted));
}

void writeFeature(FILE *file, const char *title, const APPMNGR_FEATURE &feature) {
    line(file, title);
    row(file, "Enable:", feature.enable);
    row(file, "pkt_start:", feature.start);
    row(file, "pkt_end:", feature.end);
    row(file, "pkt_length:", feature.minlength);
    row(file, "DPI type:", feature.dpiType);
    row(file, "DPI code:", feature.dpiCode);
}

void writeRule(FILE *file, uint32_t index, RuleForm form) {
    const APPMNGR_RULE &rule = g_appmngr_appDb.rule[index];
    row(file, "Rule index:", index);
    line(file, "--------");
    row(file, "ID:", rule.appid);
    writeName(file, rule.appid, form);
    row(file, "Protocol:", appmngr_utils_proto2str(rule.proto));
    writeAddress(file, "Source IP:", rule.sip, form);
    row(file, "Source Port:", int32_t{rule.sport});
    writeAddress(file, "Destination IP:", rule.dip, form);
    row(file, "Destination Port:", int32_t{rule.dport});
    writeFeature(file, "\nORIGINAL:", rule.orig);
    writeFeature(file, "\nREPLY:", rule.reply);
    line(file, "");
}

void writeRules(FILE *file, int32_t id) {
    writeHeading(file, RuleForm::ofOneApp);
    std::fprintf(file, "\nAppId %d rules:\n", id);
    line(file, listRule);
    for (uint32_t i = 0; i < g_appmngr_appDb.ruleCount; ++i) {
        if (g_appmngr_appDb.rule[i].appid == id) {
            writeRule(file, i, RuleForm::ofOneApp);
        }
    }
}

void writeAll(FILE *file) {
    writeHeading(file, RuleForm::ofAll);
    line(file, "\nAll Rules:");
    line(file, listRule);
    for (uint32_t i = 0; i < g_appmngr_appDb.ruleCount; ++i) {
        writeRule(file, i, RuleForm::ofAll);
    }
    line(file, sectionRule);
    line(file, "All Types:");
    row(file, "Type count:", g_appmngr_appDb.appTypeCount);
    line(file, listRule);
}

// The lists, but for the rule that ends each.

void writeApps(FILE *file) {
    const auto apps = velda::appmngr::populatedApplications();
    std::fprintf(file, "%s\nAll application [cnt = %d]\n\n", tableRule,
                 static_cast<int>(apps.size()));
    int index = 0;
    for (const APPMNGR_APP &app : apps) {
        std::fprintf(file, "index = %5d, appid = %5d, visiable = [%d], name = [%s]\n", index++,
                     app.id, app.visible, app.name);
    }
}

void writeTypes(FILE *file) {
    const uint32_t count = g_appmngr_appDb.appTypeCount;
    std::fprintf(file, "%s\nAll app type [cnt = %d]\n\n", tableRule, static_cast<int>(count));
    for (uint32_t i = 0; i < count; ++i) {
        const APPMNGR_APPTYPE &type = g_appmngr_appDb.appType[i];
        std::fprintf(file, "index = %5d, id =  %5d, name = [%s]\n", static_cast<int>(i), type.id,
                     type.name);
        appmngr_utils_writeBuf(file, reinterpret_cast<const unsigned char *>(type.appBitmap),
                               sizeof type.appBitmap);
        line(file, "");
    }
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
    writeRules(stdout, id);
    return 0;
}

int appmngr_dumpAppDb(void) {
    writeAll(stdout);
    return 0;
}

int appmngr_dumpAppList(void) {
    writeApps(stdout);
    return std::puts(tableRule);
}

int appmngr_dumpAppTypeList(void) {
    writeTypes(stdout);
    return std::puts(tableRule);
}

int appmngr_writeAppRules(FILE *file, int32_t id) {
    return written(file, [id](FILE *to) { writeRules(to, id); });
}

int appmngr_writeAppDb(FILE *file) {
    return written(file, writeAll);
}

int appmngr_writeAppList(FILE *file) {
    return written(file, [](FILE *to) {
        writeApps(to);
        line(to, tableRule);
    });
}

int appmngr_writeAppTypeList(FILE *file) {
    return written(file, [](FILE *to) {
        writeTypes(to);
        line(to, tableRule);
    });
}
