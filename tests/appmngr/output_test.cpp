// The JSON document and the dumps, as whole texts.

#include "tests/appmngr/model_fixture.h"
#include "tests/support/files.h"

#include <bit>
#include <filesystem>

namespace {

class Outputs : public Model {
protected:
    void SetUp() override {
        Model::SetUp();
        std::filesystem::create_directory(folder_.path("d"));
        std::filesystem::current_path(folder_.path("d"));
    }

    void TearDown() override {
        std::filesystem::current_path("/");
        Model::TearDown();
    }

    // Two applications, of which the second has a tcp rule with features and an icmp rule.
    void loadSample() {
        ASSERT_EQ(load("<AppDB><ver>3.1</ver><proModel>VX</proModel><expired>2030</expired>"
                       "<appList><app><id>1</id><name>one</name><visible>1</visible></app>"
                       "<app><id>-2</id><name>two</name><ruleList><rule><tupleList>"
                       "<tuple>tcp 192.168.1.1:80 1.2.3.200:65535</tuple></tupleList><ori>"
                       "<enable>1</enable><start>-2</start><end>3</end><minlength>4</minlength>"
                       "<dpiType>text</dpiType><dpiCode>\"GET\"</dpiCode></ori></rule><rule>"
                       "<tupleList><tuple>icmp 0:0 0:0</tuple></tupleList></rule></ruleList></app>"
                       "</appList><appTypeList><appType><id>7</id><name>web</name></appType>"
                       "</appTypeList></AppDB>"),
                  0);
    }

    // The number that an address of the sample is shown as.
    static std::string addressNumber(uint8_t a, uint8_t b, uint8_t c, uint8_t d) {
        return std::to_string(std::bit_cast<int32_t>(std::array<uint8_t, 4>{a, b, c, d}));
    }

    static std::string row(const std::string &label, const std::string &value) {
        return label + std::string(25 - label.size(), ' ') + value + "\n";
    }

    static std::string featureRows(const std::vector<std::string> &values) {
        const char *labels[] = {
            "Enable:", "pkt_start:", "pkt_end:", "pkt_length:", "DPI type:", "DPI code:"};
        std::string text;
        for (size_t i = 0; i < values.size(); ++i) {
            text += row(labels[i], values[i]);
        }
        return text;
    }

    const std::string emptyFeatures_ = featureRows({"0", "0", "0", "0", "", ""});
    TemporaryFolder folder_;
};

TEST_F(Outputs, JsonHasEveryRule) {
    loadSample();
    EXPECT_EQ(outputOf([] { appmngr_createJsonDb(); }), "Create JSON-Format database success!\n");
    const std::string empty = "\"enable\":0, \"start\":0, \"end\":0, \"len\":0,\n"
                              "\"type\":\"\", \"rule\":\"\"\n";
    EXPECT_EQ(readFile("database.json"),
              "{\n\"dpi_rules\":[\n"
              "{\n\"appname\":\"\",\n\"appid\":-2,\n\"tuple\":{\n\"sip\":" +
                  addressNumber(192, 168, 1, 1) + ", \"dip\":" + addressNumber(1, 2, 3, 200) +
                  ", \"sport\":80, \"dport\":65535,\n\"proto\":\"tcp\"\n},\n"
                  "\"feature\":{\n\"orig\":{\n\"enable\":1, \"start\":-2, \"end\":3, \"len\":4,\n"
                  "\"type\":\"text\", \"rule\":\"\"GET\"\"\n},\n\"reply\":{\n" +
                  empty + "}\n}\n},\n" +
                  "{\n\"appname\":\"\",\n\"appid\":-2,\n\"tuple\":{\n\"sip\":0, \"dip\":0, "
                  "\"sport\":0, \"dport\":0,\n\"proto\":\"none\"\n},\n\"feature\":{\n\"orig\":{\n" +
                  empty + "},\n\"reply\":{\n" + empty + "}\n}\n}\n]\n}\n");
}

TEST_F(Outputs, JsonOfNothingIsAnEmptyList) {
    writeFile("database.json", "something old and long, to be truncated");
    outputOf([] { appmngr_createJsonDb(); });
    EXPECT_EQ(readFile("database.json"), "{\n\"dpi_rules\":[\n]\n}\n");
    std::filesystem::remove_all(folder_.path("d"));
    EXPECT_EXIT(appmngr_createJsonDb(), testing::ExitedWithCode(255),
                "^open database.json failed!\n: No such file or directory\n$");
}

TEST_F(Outputs, DumpsOfTheSample) {
    loadSample();
    const std::string equals(22, '=');
    const std::string pluses(27, '+');
    const std::string hyphens(15, '-');
    const std::string heading = equals + "\nApplication Database\n" + equals + "\n" +
                                row("Version:", "3.1") + row("ProModel:", "VX") +
                                row("Expired:", "2030");
    const auto rule = [&](int index, const std::string &name, const std::string &protocol,
                          const std::string &sip, const std::string &sport, const std::string &dip,
                          const std::string &dport, const std::string &features) {
        return row("Rule index:", std::to_string(index)) + "--------\n" + row("ID:", "-2") + name +
               row("Protocol:", protocol) + row("Source IP:", sip) + row("Source Port:", sport) +
               row("Destination IP:", dip) + row("Destination Port:", dport) + "\nORIGINAL:\n" +
               features + "\nREPLY:\n" + emptyFeatures_ + "\n";
    };
    const std::string features = featureRows({"1", "-2", "3", "4", "text", "\"GET\""});
    EXPECT_EQ(
        outputOf([] { EXPECT_EQ(appmngr_dumpAppRules(-2), 0); }),
        heading + pluses + "\n\nAppId -2 rules:\n" + hyphens + "\n" +
            rule(0, "name: two\n", "tcp", "192.168.1.1", "80", "1.2.3.200", "65535", features) +
            rule(1, "name: two\n", "icmp", "0.0.0.0", "0", "0.0.0.0", "0", emptyFeatures_));
    EXPECT_EQ(outputOf([] { appmngr_dumpAppRules(1); }),
              heading + pluses + "\n\nAppId 1 rules:\n" + hyphens + "\n");

    g_appmngr_appDb.rule[1].proto = 47;
    g_appmngr_app[1].id = 3;
    const std::string notFound = "name: Not Found!!!\n";
    EXPECT_EQ(outputOf([] { EXPECT_EQ(appmngr_dumpAppDb(), 0); }),
              heading + row("App count:", "2") + row("Rule count:", "2") + pluses +
                  "\n\nAll Rules:\n" + hyphens + "\n" +
                  rule(0, notFound, "tcp", addressNumber(192, 168, 1, 1), "80",
                       addressNumber(1, 2, 3, 200), "65535", features) +
                  rule(1, notFound, "unknown", "0", "0", "0", "0", emptyFeatures_) + pluses +
                  "\nAll Types:\n" + row("Type count:", "1") + hyphens + "\n");
    g_appmngr_app[1].id = -2;
    const std::string padded = row("name:", " two") + "\n";
    EXPECT_NE(outputOf([] { appmngr_dumpAppDb(); }).find(row("ID:", "-2") + padded),
              std::string::npos);
}

TEST_F(Outputs, DumpsOfTheLists) {
    loadSample();
    EXPECT_EQ(outputOf([] { EXPECT_GE(appmngr_dumpAppList(), 0); }),
              "--------------\nAll application [cnt = 2]\n\n"
              "index =     0, appid =     1, visiable = [1], name = [one]\n"
              "index =     1, appid =    -2, visiable = [0], name = [two]\n"
              "--------------\n");
    const std::string bitmap = outputOf([] {
        appmngr_utils_dumpBuf(
            reinterpret_cast<const unsigned char *>(g_appmngr_appDb.appType[0].appBitmap), 512);
    });
    EXPECT_EQ(outputOf([] { EXPECT_GE(appmngr_dumpAppTypeList(), 0); }),
              "--------------\nAll app type [cnt = 1]\n\n"
              "index =     0, id =      7, name = [web]\n" +
                  bitmap + "\n--------------\n");
}

TEST_F(Outputs, DumpsOfNothing) {
    EXPECT_EQ(outputOf([] { appmngr_dumpAppDb(); }),
              "======================\nApplication Database\n======================\n" +
                  row("Version:", "") + row("ProModel:", "") + row("Expired:", "") +
                  row("App count:", "0") + row("Rule count:", "0") +
                  "+++++++++++++++++++++++++++\n\nAll Rules:\n---------------\n"
                  "+++++++++++++++++++++++++++\nAll Types:\n" +
                  row("Type count:", "0") + "---------------\n");
    EXPECT_EQ(outputOf([] { appmngr_dumpAppList(); }),
              "--------------\nAll application [cnt = 0]\n\n--------------\n");
    EXPECT_EQ(outputOf([] { appmngr_dumpAppTypeList(); }),
              "--------------\nAll app type [cnt = 0]\n\n--------------\n");
}

TEST_F(Outputs, ShowsTheTextsOfALoad) {
    const std::string line(32, '-');
    EXPECT_EQ(outputOf([] {
                  EXPECT_EQ(appmngr_showAppDbXml(), 0);
                  EXPECT_EQ(appmngr_showAppDescXml(), 0);
              }),
              "Show APP DB in xml format!\n" + line + "\nShow APP Desc in xml format!\n" + line +
                  "\n");
    ASSERT_EQ(appmngr_file_alloc(), 0);
    std::strcpy(g_appmngr_appDbXml, "<a/>");
    EXPECT_EQ(outputOf([] { appmngr_showAppDbXml(); }),
              "Show APP DB in xml format!\n" + line + "\n<a/>\n");
    EXPECT_EQ(outputOf([] { appmngr_showAppDescXml(); }),
              "Show APP Desc in xml format!\n" + line + "\n\n");
    appmngr_file_free();
}

} // namespace
