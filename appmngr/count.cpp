// The counting pass: how many records of each kind the document will fill.

#include "appmngr/appmngr_internal.h"

#include <cstdio>

namespace {

struct CountedPath {
    const char *path;
    uint32_t APPMNGR_COUNTER::*count;
};

constexpr CountedPath countedPaths[] = {
    {"root.appdb.applist.app.rulelist.rule.tuplelist.tuple", &APPMNGR_COUNTER::tupleCnt},
    {"root.appdb.applist.app.dnsKwList.dnsKw", &APPMNGR_COUNTER::dnsKwCnt},
    {"root.appdb.applist.app", &APPMNGR_COUNTER::appCnt},
    {"root.appdesc.applist.app", &APPMNGR_COUNTER::descAppCnt},
    {"root.appdesc.apptypelist.apptype", &APPMNGR_COUNTER::descAppTypeCnt},
};

// Types are counted by their identifiers, which the walk needs before it starts.
constexpr char appTypeIdPath[] = "root.appdb.apptypelist.apptype.id";
constexpr char languageCountPath[] = "root.appdesc.langcnt";

// Room for any path that is compared, and with it a bound on the recursion: every level adds at
// least its dot.
constexpr int pathSize = 128;

bool isPath(const char *path, const char *known) {
    return appmngr_string_safeCaseCmp(path, known) == 0;
}

bool keepAppTypeId(const XMLP_NODE *node) {
    int32_t id = 0;
    if (_appmngr_getNodeInt(node, &id) != 0) {
        return false;
    }
    if (g_appmngr_counter.appTypeCnt < APPMNGR_APP_TYPES_MAX) {
        g_appmngr_appTypeId[g_appmngr_counter.appTypeCnt++] = id;
    } else {
        appmngr_report("_appmngr_parseNode", 743, "More than %d app types, type %d is skipped\n",
                       static_cast<int>(APPMNGR_APP_TYPES_MAX), id);
    }
    return true;
}

// False when the text of a type's identifier can't be taken.
bool count(const XMLP_NODE *node, const char *path) {
    for (const CountedPath &counted : countedPaths) {
        if (isPath(path, counted.path)) {
            ++(g_appmngr_counter.*counted.count);
            return true;
        }
    }
    if (isPath(path, appTypeIdPath)) {
        return keepAppTypeId(node);
    }
    int32_t languages = 0;
    if (isPath(path, languageCountPath) && _appmngr_getNodeInt(node, &languages) == 0) {
        g_appmngr_counter.langCnt = static_cast<uint32_t>(languages);
    }
    return true;
}

} // namespace

int _appmngr_parseNode(XMLP_NODE *node, const char *parentPath) {
    if (node == nullptr || node->type == XMLP_TYPE_NONE || node->name == nullptr) {
        return 0;
    }
    char path[pathSize];
    const int length = std::snprintf(path, sizeof path, "%s.%s", parentPath, node->name);
    if (length < 0 || length >= pathSize) {
        return 0;
    }
    if (!count(node, path)) {
        return -1;
    }
    return appmngr_parseThroughXML(path, node);
}

int appmngr_parseThroughXML(const char *parentPath, XMLP_NODE *node) {
    for (XMLP_NODE *child = xmlp_getChildNode(node, 0); child != nullptr; child = child->next) {
        if (_appmngr_parseNode(child, parentPath) != 0) {
            break;
        }
    }
    return 0;
}
