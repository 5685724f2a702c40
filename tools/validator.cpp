#include "tools/validator.h"

#include "tools/text.h"

#include <string_view>

namespace {

std::string number(uint32_t count) {
    return std::to_string(count);
}

std::string bytes(uint32_t count) {
    return number(count) + " bytes";
}

std::string_view textOf(const XMLP_NODE *node) {
    return node->value != nullptr ? std::string_view(node->value, node->valueSize)
                                  : std::string_view();
}

std::string quoted(const APPMNGR_EFFECT &effect) {
    const auto text =
        effect.text != nullptr ? std::string_view(effect.text, effect.size) : std::string_view();
    return joined({"\"", escapeForTerminal(text), "\""});
}

void examineText(const APPMNGR_EFFECT &effect, const Validator::Report &report) {
    const XMLP_NODE *node = effect.node;
    const std::string_view text = textOf(node);
    if (effect.size < text.size()) {
        report("cut from " + bytes(node->valueSize) + " to " + bytes(effect.size));
    }
    if (!isUtf8(text)) {
        report("not UTF-8");
    }
    const bool isAppName = isNamed(node, "name") && isNamed(node->parent, "app");
    if ((isAppName || isNamed(node, "ver")) &&
        text.find_first_of("\r\n") != std::string_view::npos) {
        report("a line break, which the list can't carry");
    }
    if (isAppName && text.find(':') != std::string_view::npos) {
        report("a colon, which the list can't carry");
    }
}

} // namespace

void Validator::taken(const XMLP_NODE *node) {
    if (isNamed(node, "appType")) {
        ++typeCount_;
    }
}

void Validator::examine(const APPMNGR_EFFECT &effect, const ElementPath &path,
                        const Report &report) {
    switch (effect.code) {
    case APPMNGR_EFFECT_ELSEWHERE:
        report("not where it belongs, but read there too");
        break;
    case APPMNGR_EFFECT_TOO_DEEP:
        report("skipped: nested deeper than " + number(APPMNGR_LEVELS_MAX) + " levels");
        break;
    case APPMNGR_EFFECT_NO_ELEMENTS:
        report("a text where elements belong");
        break;
    case APPMNGR_EFFECT_NO_RECORD:
        report(typeCount_ > APPMNGR_APP_TYPES_MAX
                   ? "skipped: more than " + number(APPMNGR_APP_TYPES_MAX) + " types"
                   : "skipped: types without identifier have taken its place");
        break;
    case APPMNGR_EFFECT_NO_ID:
        report(isNamed(effect.node, "app")
                   ? "no identifier: it is 0"
                   : "no identifier: the type is not counted, and the last type finds no place");
        break;
    case APPMNGR_EFFECT_NO_TUPLE:
        report("no tuple is taken: no record, and its features pass on to the next rule");
        break;
    case APPMNGR_EFFECT_REPEATED:
        report("repeated: the last one holds");
        break;
    case APPMNGR_EFFECT_NO_TEXT:
        report("elements where a text belongs");
        break;
    case APPMNGR_EFFECT_TOO_LONG:
        report("a text of " + bytes(effect.size) + ": from " + bytes(APPMNGR_NODE_TEXT_SIZE) +
               " on it counts as missing");
        break;
    case APPMNGR_EFFECT_TEXT:
        examineText(effect, report);
        break;
    case APPMNGR_EFFECT_PORT:
        report("port " + quoted(effect) + " is no number from 0 to 65535");
        break;
    case APPMNGR_EFFECT_NOT_NUMBER:
        report(quoted(effect) + " is no number of 32 bits");
        break;
    case APPMNGR_EFFECT_IDENTIFIER:
    case APPMNGR_EFFECT_LATE_IDENTIFIER:
        examineId(effect, path, report);
        break;
    }
}

void Validator::examineId(const APPMNGR_EFFECT &effect, const ElementPath &path,
                          const Report &report) {
    const int32_t id = effect.number;
    const XMLP_NODE *record = effect.node->parent;
    const bool isApp = isNamed(record, "app");
    if (isApp && (id < 0 || id >= APPMNGR_APP_BITMAP_BITS)) {
        report("identifier " + std::to_string(id) + " is outside 0 to " +
               number(APPMNGR_APP_BITMAP_BITS - 1));
    }
    if (effect.code == APPMNGR_EFFECT_LATE_IDENTIFIER) {
        report("comes behind lists, which are then filed under another identifier");
    }
    auto &owners = isApp ? apps_ : types_;
    const auto [known, isNew] = owners.emplace(id, Owner{record, path.text(record)});
    if (!isNew && known->second.node != record) {
        report("identifier " + std::to_string(id) + " is that of " + known->second.path + " too");
    }
}
