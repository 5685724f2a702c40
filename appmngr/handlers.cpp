// What each element of the database document does to the model.
//
// Containers walk their children and pass them a tag or user data; leaves write into the record under
// the current cursor; cursors advance when a container ends. So the order of the document matters.

#include "appmngr/effects.h"
#include "appmngr/records.h"
#include "appmngr/walk.h"

#include <algorithm>

using namespace velda::appmngr;

namespace {

// ---- Tags and current records --------------------------------------------------------------------

void *tag(uintptr_t value) {
    return reinterpret_cast<void *>(value);
}

// Null where the cursor has reached what was counted.

APPMNGR_APP *currentApp() {
    const auto apps = countedApplications();
    const uint32_t index = g_appmngr_counter.appIdx;
    return index < apps.size() ? &apps[index] : nullptr;
}

APPMNGR_APPTYPE *currentAppType() {
    const uint32_t index = g_appmngr_counter.appTypeIdx;
    return index < g_appmngr_appDb.appTypeCount ? &g_appmngr_appDb.appType[index] : nullptr;
}

APPMNGR_RULE *currentRule() {
    const uint32_t index = g_appmngr_counter.ruleIdx;
    return index < g_appmngr_appDb.ruleCount ? &g_appmngr_appDb.rule[index] : nullptr;
}

APPMNGR_FEATURE *currentFeature(const void *param) {
    APPMNGR_RULE *rule = currentRule();
    if (rule == nullptr) {
        return nullptr;
    }
    if (param == tag(0)) {
        return &rule->orig;
    }
    return param == tag(1) ? &rule->reply : nullptr;
}

// Stores a leaf in its field of the record. -1 without record and for a text that counts as missing.
template <Element element>
int store(const XMLP_NODE *node, void *record, size_t which = 0) {
    constexpr ElementInfo info = infoOf(element);
    if (hasListener(node)) {
        notifyLeaf(node, element);
    }
    if (record == nullptr) {
        return -1;
    }
    void *field = static_cast<char *>(record) + info.field.offsets[which];
    if constexpr (info.kind == Kind::integer) {
        return _appmngr_getNodeInt(node, static_cast<int32_t *>(field));
    } else {
        return _appmngr_getNodeStr(node, static_cast<char *>(field), info.field.size);
    }
}

// For an element that both an application and a type have.
template <Element element>
int storeInAppOrType(const XMLP_NODE *node, const void *param) {
    return param == tag(0) ? store<element>(node, currentApp(), 0)
                           : store<element>(node, currentAppType(), 1);
}

template <Element element>
int storeFeature(const XMLP_NODE *node, const void *param) {
    if (!inDirection(node, param)) {
        return -1;
    }
    APPMNGR_FEATURE *feature = currentFeature(param);
    const int result = store<element>(node, feature);
    // A text that counts as missing is no failure here.
    return infoOf(element).kind == Kind::string && feature != nullptr ? 0 : result;
}

// ---- Containers ---------------------------------------------------------------------------------

// All ask whether the element stands where it is counted: the walk relies on that below it.
bool takes(const XMLP_NODE *node) {
    if (!inCountedPath(node)) {
        return false;
    }
    if (hasListener(node)) {
        notifyContainer(node, elementOf(node));
    }
    return true;
}

bool enterPass(const XMLP_NODE *node, void *, Descent &) {
    return takes(node);
}

template <uintptr_t Tag>
bool enterList(const XMLP_NODE *node, void *, Descent &descent) {
    descent.param = tag(Tag);
    descent.scope = Scope::database;
    return takes(node);
}

template <uintptr_t Tag>
bool enterDirection(const XMLP_NODE *node, void *, Descent &descent) {
    descent.param = tag(Tag);
    return takes(node);
}

bool enterApp(const XMLP_NODE *node, void *, Descent &descent) {
    descent.scope = Scope::app;
    descent.leave = [](const XMLP_NODE *, uint32_t) {
        ++g_appmngr_counter.appIdx;
        return 0;
    };
    if (!takes(node)) {
        return false;
    }
    if (hasListener(node)) {
        notifyMissingId(node);
    }
    return currentApp() != nullptr;
}

bool enterAppType(const XMLP_NODE *node, void *, Descent &descent) {
    descent.scope = Scope::appType;
    descent.leave = [](const XMLP_NODE *, uint32_t) {
        ++g_appmngr_counter.appTypeIdx;
        return 0;
    };
    if (!takes(node)) {
        return false;
    }
    const bool hasRecord = currentAppType() != nullptr;
    if (hasListener(node)) {
        if (!hasRecord) {
            notify(node, APPMNGR_EFFECT_NO_RECORD);
        }
        notifyMissingId(node);
    }
    return hasRecord;
}

// Each tuple has filled a record of its own; the rest of the rule is the same in all of them.
int completeRule(const XMLP_NODE *node, uint32_t tuples) {
    if (tuples == 0 && hasListener(node)) {
        notify(node, APPMNGR_EFFECT_NO_TUPLE);
    }
    APPMNGR_RULE *rule = currentRule();
    const APPMNGR_APP *app = currentApp();
    if (rule == nullptr || app == nullptr) {
        return -1;
    }
    rule->appid = app->id;
    std::for_each(rule + 1, rule + std::max(tuples, uint32_t{1}), [rule](APPMNGR_RULE &further) {
        further.appid = rule->appid;
        further.orig = rule->orig;
        further.reply = rule->reply;
    });
    g_appmngr_counter.ruleIdx += tuples;
    return 0;
}

bool enterRule(const XMLP_NODE *node, void *, Descent &descent) {
    descent.hasCounter = true;
    descent.leave = completeRule;
    return takes(node);
}

// Picked by the function itself: whether two addresses of functions are the same is no constant to
// every compiler, and with -fsanitize=undefined to none of g++.
template <int (*handler)(XMLP_NODE *node, void *param)>
constexpr Enter enterBy = nullptr;
template <>
constexpr Enter enterBy<_appmngr_xmlnode_handler_pass> = enterPass;
template <>
constexpr Enter enterBy<_appmngr_xmlnode_handler_rule> = enterRule;
template <>
constexpr Enter enterBy<_appmngr_xmlnode_handler_app> = enterApp;
template <>
constexpr Enter enterBy<_appmngr_xmlnode_handler_ori> = enterDirection<0>;
template <>
constexpr Enter enterBy<_appmngr_xmlnode_handler_rep> = enterDirection<1>;
template <>
constexpr Enter enterBy<_appmngr_xmlnode_handler_appType> = enterAppType;
template <>
constexpr Enter enterBy<_appmngr_xmlnode_handler_appList> = enterList<0>;
template <>
constexpr Enter enterBy<_appmngr_xmlnode_handler_appTypeList> = enterList<1>;

#define ENTER_OF_ROW(name, handler, ...) enterBy<_appmngr_xmlnode_handler_##handler>,
constexpr Enter entersOfRows[] = {DATABASE_ELEMENTS(ENTER_OF_ROW) nullptr};
#undef ENTER_OF_ROW

} // namespace

Enter velda::appmngr::enterOf(int (*handler)(XMLP_NODE *node, void *param)) {
    const auto *row = g_appmngr_nodeHandlers;
    while (row->handler != nullptr && row->handler != handler) {
        ++row;
    }
    return entersOfRows[row - g_appmngr_nodeHandlers];
}

Enter velda::appmngr::enterOf(Element element) {
    return entersOfRows[static_cast<uint32_t>(element)];
}

// ---- The header ---------------------------------------------------------------------------------

int _appmngr_xmlnode_handler_pass(XMLP_NODE *node, void *param) {
    return walkContainer(enterPass, node, param);
}

int _appmngr_xmlnode_handler_ver(XMLP_NODE *node, void *) {
    return store<Element::ver>(node, &g_appmngr_appDb);
}

int _appmngr_xmlnode_handler_proModel(XMLP_NODE *node, void *) {
    return store<Element::proModel>(node, &g_appmngr_appDb);
}

int _appmngr_xmlnode_handler_expired(XMLP_NODE *node, void *) {
    return store<Element::expired>(node, &g_appmngr_appDb);
}

// ---- Applications and types ---------------------------------------------------------------------

int _appmngr_xmlnode_handler_appList(XMLP_NODE *node, void *param) {
    return walkContainer(enterList<0>, node, param);
}

int _appmngr_xmlnode_handler_app(XMLP_NODE *node, void *param) {
    return walkContainer(enterApp, node, param);
}

int _appmngr_xmlnode_handler_appTypeList(XMLP_NODE *node, void *param) {
    return walkContainer(enterList<1>, node, param);
}

int _appmngr_xmlnode_handler_appType(XMLP_NODE *node, void *param) {
    return walkContainer(enterAppType, node, param);
}

int _appmngr_xmlnode_handler_id(XMLP_NODE *node, void *param) {
    return inCountedPath(node) && isTag(param) ? storeInAppOrType<Element::id>(node, param) : -1;
}

int _appmngr_xmlnode_handler_name(XMLP_NODE *node, void *param) {
    return inRecord(node, param) ? storeInAppOrType<Element::name>(node, param) : -1;
}

int _appmngr_xmlnode_handler_visible(XMLP_NODE *node, void *) {
    return inApp(node) ? store<Element::visible>(node, currentApp()) : -1;
}

int _appmngr_xmlnode_handler_typeid(XMLP_NODE *node, void *) {
    const APPMNGR_APP *app = currentApp();
    if (app == nullptr || !inApp(node)) {
        return -1;
    }
    if (hasListener(node)) {
        notifyLeaf(node, Element::typeId);
    }
    int32_t id = 0;
    if (_appmngr_getNodeInt(node, &id) != 0) {
        return -1;
    }
    APPMNGR_APPTYPE *type = _appmngr_getAppTypeBydId(id);
    if (type == nullptr) {
        appmngr_report(__func__, 1102, "_appmngr_getAppTypeBydId FAILED\n");
        return -1;
    }
    if (app->id < 0 || app->id >= APPMNGR_APP_BITMAP_BITS) {
        appmngr_report(__func__, 1109, "App id %d can not be a member of type %d\n", app->id, id);
        return -1;
    }
    appmngr_bitmap_set(type->appBitmap, static_cast<uint32_t>(app->id));
    return 0;
}

int _appmngr_xmlnode_handler_dnsKw(XMLP_NODE *node, void *) {
    const APPMNGR_APP *app = currentApp();
    if (app == nullptr || g_appmngr_counter.dnsKwIdx >= g_appmngr_appDns.count ||
        !inCountedPath(node)) {
        return -1;
    }
    APPMNGR_DNS_RULE &keyword = g_appmngr_appDns.rule[g_appmngr_counter.dnsKwIdx];
    keyword.appid = app->id;
    ++g_appmngr_counter.dnsKwIdx;
    return store<Element::dnsKw>(node, &keyword);
}

// ---- Rules --------------------------------------------------------------------------------------

int _appmngr_xmlnode_handler_rule(XMLP_NODE *node, void *param) {
    return walkContainer(enterRule, node, param);
}

int _appmngr_xmlnode_handler_ori(XMLP_NODE *node, void *param) {
    return walkContainer(enterDirection<0>, node, param);
}

int _appmngr_xmlnode_handler_rep(XMLP_NODE *node, void *param) {
    return walkContainer(enterDirection<1>, node, param);
}

int _appmngr_xmlnode_handler_enable(XMLP_NODE *node, void *param) {
    return storeFeature<Element::enable>(node, param);
}

int _appmngr_xmlnode_handler_start(XMLP_NODE *node, void *param) {
    return storeFeature<Element::start>(node, param);
}

int _appmngr_xmlnode_handler_end(XMLP_NODE *node, void *param) {
    return storeFeature<Element::end>(node, param);
}

int _appmngr_xmlnode_handler_minlength(XMLP_NODE *node, void *param) {
    return storeFeature<Element::minlength>(node, param);
}

int _appmngr_xmlnode_handler_dpiType(XMLP_NODE *node, void *param) {
    return storeFeature<Element::dpiType>(node, param);
}

int _appmngr_xmlnode_handler_dpiCode(XMLP_NODE *node, void *param) {
    return storeFeature<Element::dpiCode>(node, param);
}
