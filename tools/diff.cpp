// What is different in two databases.

#include "tools/database.h"
#include "tools/messages.h"
#include "tools/rules.h"
#include "tools/subcommands.h"
#include "tools/table.h"
#include "tools/text.h"

#include <iterator>
#include <map>
#include <tuple>

namespace {

enum class Kind { version, model, expires, application, type, rule, keyword };

constexpr std::string_view kindNames[] = {"version", "model", "expires", "application",
                                          "type",    "rule",  "keyword"};

// What makes two records of two databases the same.
struct Key {
    Kind kind;
    int32_t id;
    std::string contents; // of a rule or keyword
    uint32_t number = 0;  // among those that are equal in all that

    auto parts() const { return std::tie(kind, id, contents, number); }
    bool operator<(const Key &other) const { return parts() < other.parts(); }
};

// What may be different in them.
using Records = std::map<Key, std::string>;

void add(Records &records, Key key, const std::string &text) {
    key.number = UINT32_MAX;
    const auto successor = records.lower_bound(key);
    key.number = 0;
    if (successor != records.begin()) {
        const Key &last = std::prev(successor)->first;
        const bool isEqual =
            std::tie(last.kind, last.id, last.contents) == std::tie(key.kind, key.id, key.contents);
        key.number = isEqual ? last.number + 1 : 0;
    }
    records.emplace_hint(successor, std::move(key), text);
}

std::string membersOf(const APPMNGR_APPTYPE &type) {
    std::string members;
    for (uint32_t id = 0; id < APPMNGR_APP_BITMAP_BITS; ++id) {
        if (appmngr_bitmap_test(type.appBitmap, id) != 0) {
            members.append(members.empty() ? "" : ",").append(std::to_string(id));
        }
    }
    return members;
}

std::string ruleText(const APPMNGR_RULE &rule) {
    std::string text = appmngr_utils_proto2str(rule.proto);
    text +=
        joined({" ", endpointText(rule.sip, rule.sport), " ", endpointText(rule.dip, rule.dport)});
    const std::string orig = featureText(rule.orig);
    const std::string reply = featureText(rule.reply);
    text += orig.empty() ? "" : " orig " + orig;
    text += reply.empty() ? "" : " reply " + reply;
    return text;
}

Records recordsOf(const Database &database) {
    Records records;
    add(records, {Kind::version, 0, ""}, database.header().ver);
    add(records, {Kind::model, 0, ""}, database.header().proModel);
    add(records, {Kind::expires, 0, ""}, database.header().expired);
    for (const APPMNGR_APP &app : database.apps()) {
        add(records, {Kind::application, app.id, ""},
            std::string(app.name) + " (visible " + std::to_string(app.visible) + ")");
    }
    for (const APPMNGR_APPTYPE &type : database.types()) {
        add(records, {Kind::type, type.id, ""},
            std::string(type.name) + " (members " + membersOf(type) + ")");
    }
    for (const APPMNGR_RULE &rule : database.rules()) {
        add(records, {Kind::rule, rule.appid, ruleText(rule)}, ruleText(rule));
    }
    for (const APPMNGR_DNS_RULE &keyword : database.keywords()) {
        add(records, {Kind::keyword, keyword.appid, keyword.dnsKw}, keyword.dnsKw);
    }
    return records;
}

Cell textOrNull(const std::string *text) {
    return text != nullptr ? textCell(*text) : Cell{"", "null", false};
}

void addChange(Table &table, const Key &key, const std::string *before, const std::string *after) {
    const std::string_view change = before == nullptr  ? "added"
                                    : after == nullptr ? "removed"
                                                       : "changed";
    const bool hasId = key.kind >= Kind::application;
    table.rows.push_back({textCell(change), textCell(kindNames[static_cast<size_t>(key.kind)]),
                          hasId ? numberCell(key.id) : Cell{"", "null", true}, textOrNull(before),
                          textOrNull(after)});
}

Table changesOf(const Records &before, const Records &after) {
    Table table = {"changes", {"change", "kind", "id", "old", "new"}, {}};
    auto old = before.begin();
    auto now = after.begin();
    while (old != before.end() || now != after.end()) {
        if (now == after.end() || (old != before.end() && old->first < now->first)) {
            addChange(table, old->first, &old->second, nullptr);
            ++old;
        } else if (old == before.end() || now->first < old->first) {
            addChange(table, now->first, nullptr, &now->second);
            ++now;
        } else {
            if (old->second != now->second) {
                addChange(table, old->first, &old->second, &now->second);
            }
            ++old;
            ++now;
        }
    }
    return table;
}

void printChange(const std::vector<Cell> &row) {
    const auto &[change, kind, id, before, after] =
        std::tie(row[0].shown, row[1].shown, row[2].shown, row[3].shown, row[4].shown);
    const std::string what = kind + (id.empty() ? "" : " " + id) + ": ";
    if (change == "added") {
        printLine(Style::added, "+ " + what + after);
    } else if (change == "removed") {
        printLine(Style::removed, "- " + what + before);
    } else {
        printLine(Style::changed, "~ " + what + before + " -> " + after);
    }
}

} // namespace

int diffCommand(const Arguments &arguments) {
    constexpr int unusable = 2;
    if (isStandardStream(arguments.files[0]) && isStandardStream(arguments.files[1])) {
        printError("standard input", "can be only one of the two");
        return unusable;
    }
    const auto oldImage = readImage(arguments.files[0]);
    const auto before = oldImage ? loadDatabase(*oldImage) : std::nullopt;
    const auto newImage = before ? readImage(arguments.files[1]) : std::nullopt;
    const auto after = newImage ? loadDatabase(*newImage) : std::nullopt;
    if (!after) {
        return unusable;
    }
    const Table changes = changesOf(recordsOf(*before), recordsOf(*after));
    if (arguments.wantsJson) {
        printJson(arguments, {{"old", jsonText(before->name())}, {"new", jsonText(after->name())}},
                  changes);
    } else {
        for (const auto &row : changes.rows) {
            printChange(row);
        }
    }
    return changes.rows.empty() ? 0 : 1;
}
