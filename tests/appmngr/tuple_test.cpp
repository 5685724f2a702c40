#include "tests/appmngr/model_fixture.h"

namespace {

class Tuple : public Model {
protected:
    // Gives one text to the handler, with a rule record and counter of its own.
    int parse(std::string text) {
        rule = {};
        tuples = 0;
        g_appmngr_appDb.rule = &rule;
        g_appmngr_appDb.ruleCount = 1;
        XMLP_NODE node = {};
        node.type = XMLP_TYPE_LEAF;
        node.value = text.data();
        node.valueSize = static_cast<uint32_t>(text.size());
        int result = -1;
        printed = outputOf([&] { result = _appmngr_xmlnode_handler_tuple(&node, &tuples); });
        g_appmngr_appDb.rule = nullptr;
        g_appmngr_appDb.ruleCount = 0;
        return result;
    }

    std::string endpoints() const {
        const auto *sip = reinterpret_cast<const uint8_t *>(&rule.sip);
        const auto *dip = reinterpret_cast<const uint8_t *>(&rule.dip);
        char text[96];
        std::snprintf(text, sizeof text, "%d %d.%d.%d.%d:%d %d.%d.%d.%d:%d", rule.proto, sip[0],
                      sip[1], sip[2], sip[3], rule.sport, dip[0], dip[1], dip[2], dip[3],
                      rule.dport);
        return text;
    }

    APPMNGR_RULE rule = {};
    uint32_t tuples = 0;
};

TEST_F(Tuple, IsStoredAsAddressFields) {
    const struct {
        std::string text;
        const char *stored;
    } cases[] = {
        {"tcp 192.168.1.1:80 0:0", "6 192.168.1.1:80 0.0.0.0:0"},
        {"UDP 0:1 10.20.30.200:65535", "17 0.0.0.0:1 10.20.30.200:65535"},
        {"\n Icmp\t0.0.0.0:0\r\n0:0 \n", "1 0.0.0.0:0 0.0.0.0:0"},
        {"tcp 0:70000 0:-1", "6 0.0.0.0:4464 0.0.0.0:65535"},
        {"tcp 0:http 0:8x", "6 0.0.0.0:0 0.0.0.0:8"},
        {"tcp :0:80 0:99999999999999999999", "6 0.0.0.0:80 0.0.0.0:65535"},
        // 63 characters are looked at; here the last of them is the port's first digit.
        {"tcp 0:0" + std::string(53, ' ') + "0:8765", "6 0.0.0.0:0 0.0.0.0:8"},
    };
    for (const auto &test : cases) {
        EXPECT_EQ(parse(test.text), 0) << test.text;
        EXPECT_EQ(printed, "") << test.text;
        EXPECT_EQ(endpoints(), test.stored) << test.text;
        EXPECT_EQ(tuples, 1u);
    }
}

TEST_F(Tuple, IsRefusedWithALine) {
    const std::string tooMany = "[Error](appmngr_string_makeSubStrByChar) 453: "
                                "Too many substrings to string provided \r\n";
    const auto line = [](int number, const std::string &message) {
        return "[Error](_appmngr_xmlnode_handler_tuple) " + std::to_string(number) + ": " +
               message + "\n";
    };
    const std::string form = line(1268, "Not match [proto ip:port ip:port] format!");
    const std::string source = line(1295, "ucm_string_makeSubStrByChar failed!");
    const std::string destination = line(1343, "Analyze the dest pair ip failed!");
    const struct {
        std::string text;
        std::string output;
        const char *stored; // the fields before the fault stay
    } cases[] = {
        {std::string(512, ' '), line(1247, "Not tuple string found!"), "0 0.0.0.0:0 0.0.0.0:0"},
        {"", form, "0 0.0.0.0:0 0.0.0.0:0"},
        {"tcp 0:0", form, "0 0.0.0.0:0 0.0.0.0:0"},
        {"tcp 0:0 0:0 x", tooMany + form, "0 0.0.0.0:0 0.0.0.0:0"},
        {"gre 0:0 0:0", "Unknown protocol!\r\n" + line(1280, "appmngr_utils_str2proto failed!"),
         "0 0.0.0.0:0 0.0.0.0:0"},
        {"tcp 1.2.3.4 0:0", source, "6 0.0.0.0:0 0.0.0.0:0"},
        {"tcp 1.2.3.4:5:6 0:0", tooMany + source, "6 0.0.0.0:0 0.0.0.0:0"},
        {"tcp 1.2.3:5 0:0", line(1318, "inet_pton failed! str = [1.2.3]"), "6 0.0.0.0:0 0.0.0.0:0"},
        {"tcp 1.2.3.4:5 00", destination, "6 1.2.3.4:5 0.0.0.0:0"},
        {"tcp 1.2.3.4:5 00:1", line(1362, "inet_pton failed, str = [00]!"),
         "6 1.2.3.4:5 0.0.0.0:0"},
    };
    for (const auto &test : cases) {
        EXPECT_EQ(parse(test.text), -1) << test.text;
        EXPECT_EQ(printed, test.output) << test.text;
        EXPECT_EQ(endpoints(), test.stored) << test.text;
        EXPECT_EQ(tuples, 0u);
    }
}

TEST_F(Tuple, NeedsACounterAndARecord) {
    XMLP_NODE node = {};
    EXPECT_EQ(_appmngr_xmlnode_handler_tuple(nullptr, &tuples), -1);
    EXPECT_EQ(_appmngr_xmlnode_handler_tuple(&node, nullptr), -1);
    EXPECT_EQ(_appmngr_xmlnode_handler_tuple(&node, reinterpret_cast<void *>(1)), -1);
    tuples = UINT32_MAX;
    EXPECT_EQ(_appmngr_xmlnode_handler_tuple(&node, &tuples), -1);
}

} // namespace
