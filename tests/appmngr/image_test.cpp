// Loading from image files, good and spoiled.

#include "tests/appmngr/model_fixture.h"
#include "tests/support/files.h"

namespace {

const std::string tooSmall =
    "[Error](_appmngr_readAppDb) 2167: Size of buffer \"204800\" is too small.\n"
    "[Error](_appmngr_readFromDatabase) 2570: _appmngr_readAppDb failed\n";
const std::string noText = "[ERROR][_checkXml()";
const std::string notAnalyzed =
    "[Error](_appmngr_readFromDatabase) 2586: Analyze database failed\n";

class Image : public Model {
protected:
    int loadImage(const std::string &image) {
        writeFile(path_, image);
        return loadFile(path_);
    }

    int loadFile(const std::string &path) {
        int result = -1;
        printed = outputOf([&] {
            EXPECT_EQ(appmngr_checkDbPath(path.c_str()), 0);
            result = appmngr_load_database();
        });
        EXPECT_EQ(g_appmngr_flashBuf, nullptr);
        EXPECT_EQ(g_appmngr_appDbXml, nullptr);
        EXPECT_EQ(g_appmngr_appDescXml, nullptr);
        return result;
    }

    // The document of `size` bytes: a small one and white space.
    static std::string documentOf(size_t size) {
        std::string document = smallDocument();
        document.resize(size, ' ');
        return document;
    }

    TemporaryFolder folder_;
    std::string path_ = folder_.path("image");
};

TEST_F(Image, LoadsAgainAndAgain) {
    EXPECT_EQ(loadImage(packImage(smallDocument())), 0);
    EXPECT_STREQ(g_appmngr_app[0].name, "one");
    EXPECT_EQ(loadImage(packImage(smallDocument(appElement(2, "two")))), 0);
    EXPECT_STREQ(g_appmngr_app[0].name, "two");
    EXPECT_EQ(g_appmngr_appDb.appCount, 1u);
    EXPECT_EQ(printed, "");
}

TEST_F(Image, TakesTextsBelow204800Bytes) {
    EXPECT_EQ(loadImage(packImage(documentOf(204'799))), 0);
    EXPECT_EQ(loadImage(packImage(documentOf(204'800))), -1);
    EXPECT_EQ(printed, tooSmall);
    EXPECT_EQ(loadImage(packImage(smallDocument(), 0xFFFFFFFF)), -1);
    EXPECT_EQ(printed, tooSmall);
}

TEST_F(Image, BelievesTheDeclaredSize) {
    const std::string document = smallDocument();
    EXPECT_EQ(loadImage(packImage(document, document.size() + 1000)), 0);
    EXPECT_EQ(loadImage(packImage(document + "<x/>", document.size())), 0)
        << "what follows is not seen";
    EXPECT_EQ(loadImage(packImage(document, document.size() | uint64_t{1} << 40)), 0)
        << "the high half is not read";
    EXPECT_EQ(loadImage(packImage(document, 0)), -1);
    EXPECT_EQ(printed.substr(0, noText.size()), noText);
}

TEST_F(Image, LengthFieldIsHeldAgainstTheBlock) {
    const std::string block = packImage(smallDocument()).substr(4);
    for (const uint32_t length : {0u, 13u}) {
        EXPECT_EQ(loadImage(imageOf(length, block)), -1) << length;
        EXPECT_EQ(printed, tooSmall) << length;
    }
    for (const uint32_t length : {14u, 18u}) {
        EXPECT_EQ(loadImage(imageOf(length, block)), -1) << length;
        EXPECT_EQ(printed.substr(0, noText.size()), noText) << length;
        EXPECT_EQ(printed.substr(printed.size() - notAnalyzed.size()), notAnalyzed) << length;
    }
    EXPECT_EQ(loadImage(imageOf(19, block)), -1);
    EXPECT_NE(printed.find("_appmngr_alloc_for_appdb failed"), std::string::npos)
        << "five coded bytes give a text that begins with '<'";
    EXPECT_EQ(loadImage(imageOf(65'532, block)), 0) << "the file's missing bytes read as zero";
    for (const uint32_t length : {65'533u, 0xFFFFFFFFu}) {
        EXPECT_EQ(loadImage(imageOf(length, block)), -1) << length;
        EXPECT_EQ(printed, "[Error](_appmngr_readAppDb) 2158: Block length \"" +
                               std::to_string(length) +
                               "\" is beyond the image.\n"
                               "[Error](_appmngr_readFromDatabase) 2570: "
                               "_appmngr_readAppDb failed\n");
    }
}

TEST_F(Image, BlockHeaderIsReadWhereItMatters) {
    const struct {
        size_t offset;
        std::vector<int> values;
        bool loads;
    } cases[] = {
        {0, {1, 255}, true},    // the flag byte
        {1, {225, 255}, false}, // no such properties
        {1, {44, 224}, false},  // lc + lp above four: decodes to nothing here
        {3, {0}, true},         // a dictionary of 0 is one of 4096
        {5, {0x7F, 255}, true}, // one of gigabytes is not obtained
        {10, {255}, true},      // the high half of the size
        {14, {1}, false},       // a stream begins with a zero byte
    };
    const std::string good = packImage(smallDocument());
    for (const auto &test : cases) {
        for (const int value : test.values) {
            std::string image = good;
            image[4 + test.offset] = static_cast<char>(value);
            EXPECT_EQ(loadImage(image), test.loads ? 0 : -1) << test.offset << " " << value;
            if (!test.loads) {
                EXPECT_EQ(printed.substr(0, noText.size()), noText) << test.offset;
            }
        }
    }
}

TEST_F(Image, CutStreamGivesTheTextBeforeTheCut) {
    const std::string image = packImage(smallDocument());
    EXPECT_EQ(loadImage(image.substr(0, image.size() / 2)), -1);
    EXPECT_NE(printed.find("error xml tag."), std::string::npos);
    EXPECT_EQ(loadImage(""), -1);
    EXPECT_EQ(printed, tooSmall);
    EXPECT_EQ(loadFile("/"), -1) << "a folder opens and gives no bytes";
    EXPECT_EQ(printed, tooSmall);
}

TEST_F(Image, BuffersOfTextAreUsedAgain) {
    ASSERT_EQ(appmngr_file_alloc(), 0);
    char *text = g_appmngr_appDbXml;
    text[0] = 'x';
    ASSERT_EQ(appmngr_file_alloc(), 0);
    EXPECT_EQ(g_appmngr_appDbXml, text);
    EXPECT_EQ(text[0], '\0');
    appmngr_file_free();
    testing::internal::CaptureStderr();
    EXPECT_EQ(_appmngr_readAppDb(), -1) << "without buffers";
    EXPECT_EQ(testing::internal::GetCapturedStderr().substr(0, 18), "read db flash fail");
}

TEST_F(Image, NeedsAFile) {
    EXPECT_EQ(appmngr_checkDbPath("/nowhere/image"), -1);
    EXPECT_STREQ(g_appmngr_dbPath, "/nowhere/image") << "it is remembered all the same";
    testing::internal::CaptureStderr();
    const std::string output = outputOf([] { EXPECT_EQ(appmngr_load_database(), -1); });
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "read db flash fail\n: No such file or directory\n");
    EXPECT_EQ(output, "[Error](_appmngr_readFromDatabase) 2570: _appmngr_readAppDb failed\n");
    EXPECT_EQ(appmngr_checkDbPath(nullptr), -1);
    char byte = 0;
    EXPECT_EQ(_appmngr_readDbFile(0, 1, &byte), -1);
    EXPECT_EQ(_appmngr_readDbFile(0, 1, nullptr), -1);
}

} // namespace
