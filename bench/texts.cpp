#include "bench/texts.h"

#include "bench/random.h"
#include "bench/xml_maker.h"

#include <array>
#include <string_view>

namespace bench {

namespace {

using namespace std::string_literals;
using Choices = const std::string_view[];

constexpr uint64_t seed = 20'240'229;

// ---- Databases --------------------------------------------------------------------------------

constexpr size_t typeCount = 36;

std::string word(Random &random) {
    static constexpr std::array<std::string_view, 24> syllables = {
        "net", "tel", "ra", "mo", "vi",   "sync", "chat", "de", "lo", "ki",  "pro", "gra",
        "ser", "da",  "ta", "to", "cast", "ne",   "fi",   "xa", "zu", "ble", "or",  "pi"};
    std::string result;
    for (size_t left = 2 + random.below(3); left > 0; --left) {
        result += random.of(syllables);
    }
    return result;
}

std::string name(Random &random) {
    static constexpr std::array<std::string_view, 8> additions = {
        " server", " over TLS", " cluster", " Видео", " 音乐", " discovery", " (legacy)", " agent"};
    std::string result = word(random);
    result[0] = static_cast<char>(result[0] - 'a' + 'A');
    return random.chance(40) ? result.append(random.of(additions)) : result;
}

std::string hexDigits(Random &random) {
    std::string result;
    for (size_t left = 4 + 2 * random.below(6); left > 0; --left) {
        result += "0123456789abcdef"[random.below(16)];
    }
    return result;
}

std::string tuple(Random &random) {
    const std::string address = random.chance(85) ? "0"s
                                                  : "10." + std::to_string(random.below(256)) +
                                                        ".0." + std::to_string(random.below(256));
    return (random.chance(65) ? "tcp 0:0 " : "udp 0:0 ") + address + ":" +
           std::to_string(random.below(65'536));
}

void direction(XmlMaker &xml, Random &random, std::string_view element) {
    static constexpr std::array<std::string_view, 6> texts = {
        "^(GET|POST|HEAD) /", "SSH-2.0-", "&lt;stream", "^[*][0-9]+", "220 ", "HELLO &amp; HI"};
    xml.open(element);
    xml.leaf("enable", "1");
    const bool grouped = random.chance(85);
    if (grouped) {
        xml.open("segment");
    }
    xml.leaf("start", std::to_string(random.below(4)));
    xml.leaf("end", std::to_string(4 + random.below(60)));
    xml.leaf("minlength", std::to_string(4 + random.below(1200)));
    if (grouped) {
        xml.close();
    }
    const bool asHex = random.chance(50);
    xml.leaf("dpiType", asHex ? "hex" : "regex");
    xml.leaf("dpiCode", asHex ? hexDigits(random) : std::string(random.of(texts)));
    xml.close();
}

template <class MakeMember>
void list(XmlMaker &xml, std::string_view element, size_t members, MakeMember makeMember) {
    xml.open(element);
    for (; members > 0; --members) {
        makeMember();
    }
    xml.close();
}

// Shares of the parts as in the full sample.
void application(XmlMaker &xml, Random &random, size_t id) {
    xml.open("app");
    xml.leaf("id", std::to_string(id));
    xml.leaf("name", name(random));
    xml.leaf("visible", random.chance(80) ? "1" : "0");
    list(xml, "typeIdList", 1 + random.below(2),
         [&] { xml.leaf("typeId", std::to_string(1 + random.below(typeCount))); });
    list(xml, "ruleList", 1, [&] {
        xml.open("rule");
        list(xml, "tupleList", 1 + random.below(3), [&] { xml.leaf("tuple", tuple(random)); });
        if (random.chance(53)) {
            direction(xml, random, "ori");
        }
        if (random.chance(23)) {
            direction(xml, random, "rep");
        }
        xml.close();
    });
    if (random.chance(22)) {
        list(xml, "dnsKwList", 1 + random.below(2), [&] { xml.leaf("dnsKw", word(random)); });
    }
    xml.close();
}

// ---- Other texts ------------------------------------------------------------------------------

Text finished(const std::string &name, const XmlMaker &xml) {
    return {name, xml.text(), xml.elements()};
}

// Rows of a configuration: several attributes each, with values that come again.
Text attributeText(const std::string &name, size_t size) {
    static constexpr std::array<std::string_view, 4> actions = {"permit", "deny", "log", "limit"};
    static constexpr std::array<std::string_view, 5> zones = {"inside", "outside", "dmz", "guest",
                                                              "management"};
    Random random(seed);
    XmlMaker xml(false);
    xml.open("config");
    xml.open("policyList");
    size_t id = 0;
    xml.fill(size, "item", [&](XmlMaker &member) {
        const auto attribute = [](std::string_view key, std::string_view value) {
            return " "s.append(key).append("=\"").append(value).append("\"");
        };
        member.empty("item", attribute("id", std::to_string(++id)) +
                                 attribute("enable", random.chance(90) ? "1" : "0") +
                                 attribute("from", random.of(zones)) +
                                 attribute("to", random.of(zones)) +
                                 attribute("address", "10.0." + std::to_string(random.below(32)) +
                                                          ".0 255.255.255.0") +
                                 attribute("port", std::to_string(8'000 + random.below(200))) +
                                 attribute("action", random.of(actions)));
    });
    return finished(name, xml);
}

// Hardly two elements of one name.
Text namesText(const std::string &name, size_t size) {
    Random random(seed);
    XmlMaker xml(false);
    xml.open("config");
    size_t id = 0;
    xml.fill(size, "rest", [&](XmlMaker &member) {
        member.open(word(random) + std::to_string(++id));
        member.leaf(word(random) + "." + std::to_string(id), std::to_string(random.below(1000)));
        member.close();
    });
    return finished(name, xml);
}

// Prose with references and characters of two to four bytes.
Text entitiesText(const std::string &name, size_t size) {
    static constexpr std::array<std::string_view, 16> words = {
        "&lt;",   "&gt;",   "&amp;", "größer", "straße", "данные", "узел", "сеть",
        "服务器", "データ", "naïve", "and",    "the",    "link",   "😀",    "a &lt; b"};
    Random random(seed);
    XmlMaker xml(false);
    xml.open("remarks");
    xml.fill(size, "rest", [&](XmlMaker &member) {
        std::string remark = word(random);
        for (size_t left = 6 + random.below(20); left > 0; --left) {
            remark.append(" ").append(random.of(words));
        }
        member.leaf("remark", remark);
    });
    return finished(name, xml);
}

} // namespace

Text databaseText(const std::string &name, size_t size, bool compact) {
    Random random(seed);
    XmlMaker xml(compact);
    xml.open("AppDB");
    xml.leaf("ver", "1.0.7");
    xml.leaf("proModel", "VX-1000");
    xml.leaf("expired", "2027-04-30");
    size_t id = 0;
    list(xml, "appTypeList", typeCount, [&] {
        xml.open("appType");
        xml.leaf("id", std::to_string(++id));
        xml.leaf("name", bench::name(random));
        xml.close();
    });
    xml.open("appList");
    xml.fill(size, "remark", [&](XmlMaker &member) { application(member, random, ++id); });
    return finished(name, xml);
}

std::vector<TextGroup> allTexts(bool quick) {
    struct Size {
        std::string name;
        size_t bytes;
    };
    std::vector<Size> sizes = {{"20 KB", 20'000}, {"204,799 B", textSizeMax}};
    if (!quick) {
        sizes.insert(sizes.end(), {{"2 MB", 2'000'000}, {"20 MB", 20'000'000}});
    }
    TextGroup indented{"Database, indented", {}};
    TextGroup compact{"Database, compact", {}};
    for (const Size &size : sizes) {
        indented.texts.push_back(databaseText("indented " + size.name, size.bytes, false));
        compact.texts.push_back(databaseText("compact " + size.name, size.bytes, true));
    }
    TextGroup others{"Other texts", {attributeText("attributes 204,799 B", textSizeMax)}};
    if (!quick) {
        others.texts.push_back(attributeText("attributes 2 MB", 2'000'000));
    }
    others.texts.push_back(namesText("names 204,799 B", textSizeMax));
    others.texts.push_back(entitiesText("entities 204,799 B", textSizeMax));
    return {indented, compact, others};
}

} // namespace bench
