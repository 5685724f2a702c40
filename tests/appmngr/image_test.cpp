// Loading from image files, good and spoiled.

#include "tests/appmngr/model_fixture.h"
#include "tests/support/bounds.h"
#include "tests/support/files.h"

#include <cerrno>
#include <sys/stat.h>

namespace {

class Image : public Model {
protected:
    // Runs a load and gives the lines that were printed.
    template <class Load>
    static std::string linesOfLoad(Load load) {
        int result = -1;
        const std::string lines = linesOf([&] { result = load(); });
        EXPECT_EQ(result, lines.empty() ? 0 : -1);
        EXPECT_EQ(g_appmngr_flashBuf, nullptr);
        EXPECT_EQ(g_appmngr_appDbXml, nullptr);
        EXPECT_EQ(g_appmngr_appDescXml, nullptr);
        return lines;
    }

    static std::string loadFile(const std::string &path) {
        EXPECT_EQ(appmngr_checkDbPath(path.c_str()), 0);
        return linesOfLoad(appmngr_load_database);
    }

    // From memory where nothing can be read after the last byte.
    static std::string loadImage(const std::string &image) {
        const Guarded bytes(image);
        return linesOfLoad(
            [&] { return appmngr_loadImage(bytes.data(), static_cast<uint32_t>(image.size())); });
    }
    static std::string loadText(const std::string &text) {
        const Guarded bytes(text);
        return linesOfLoad(
            [&] { return appmngr_loadText(bytes.data(), static_cast<uint32_t>(text.size())); });
    }

    TemporaryFolder folder_;
    const std::string path_ = folder_.path("image");
};

// The image that a case describes.
std::string imageOf(const Case &test) {
    std::string text = test.text("text", smallDocument());
    text.resize(std::max(text.size(), test.size("filled")), ' ');
    const int64_t declared = static_cast<int64_t>(text.size()) + test.number("more");
    std::string image = packImage(text, static_cast<uint64_t>(test.number("declared", declared)));
    if (test.has("length")) {
        image.replace(0, 4, bigEndian(static_cast<uint32_t>(test.number("length"))));
    }
    if (test.has("offset")) {
        image[4 + test.size("offset")] = fromHex(test.text("byte"))[0];
    }
    return test.has("cut") ? image.substr(0, test.size("cut")) : image;
}

TEST_F(Image, LoadsOrTellsWhyNot) {
    load(smallDocument());
    const std::string model = modelText();
    forEachCase("image.cases", [&](const Case &test) {
        writeFile(path_, imageOf(test));
        for (const bool isFile : {true, false}) {
            EXPECT_EQ(isFile ? loadFile(path_) : loadImage(imageOf(test)), test.lines("line"));
            EXPECT_EQ(modelText() == model, !test.has("line")) << "what was loaded before is gone";
        }
    });
    EXPECT_EQ(loadImage(packImage(smallDocument()) + std::string(APPMNGR_IMAGE_SIZE, '#')), "")
        << "what follows the 64 KiB is not looked at";
    EXPECT_NE(loadFile("/"), "") << "a folder opens and gives no bytes";
}

TEST_F(Image, IsNotNeededForAText) {
    const std::string tooLong =
        "[Error](_appmngr_readAppDb) 2167: Size of buffer \"204800\" is too small.\n"
        "[Error](_appmngr_readFromDatabase) 2570: _appmngr_readAppDb failed\n";
    const std::string refused =
        "[Error](_appmngr_readFromDatabase) 2586: Analyze database failed\n";
    const std::string noTag = "_checkXml: no xml tag found.\n" + refused;
    const auto filled = [](size_t size) {
        std::string text = smallDocument();
        text.resize(size, ' ');
        return text;
    };
    const std::string zero(1, '\0');
    const std::string mark = "\xEF\xBB\xBF";
    const std::string declared = "<?xml version=\"1.0\"?>" + smallDocument();
    const std::pair<std::string, std::string> cases[] = {
        {smallDocument(), ""},
        {mark + smallDocument(), ""},
        {mark + mark + declared, ""}, // one for the module, one for the parser
        {mark + mark + mark + declared,
         "_subXml: error xml tag.\n_checkXml: error xml tag.\n" + refused},
        {smallDocument() + zero + "<not read>", ""},
        {filled(204'799), ""},
        {filled(204'800), tooLong},
        {std::string(1'000'000, '<'), tooLong},
        {"", noTag},
        {zero + smallDocument(), noTag},
    };
    load(smallDocument());
    const std::string model = modelText();
    for (const auto &[text, lines] : cases) {
        EXPECT_EQ(loadText(text), lines) << text.substr(0, 40);
        EXPECT_EQ(modelText() == model, lines.empty());
    }
}

// Nothing has been loaded then, and what was loaded before stays.
TEST_F(Image, IsRefusedWhenNull) {
    load(smallDocument());
    const std::string model = modelText();
    EXPECT_EQ(linesOfLoad([] { return appmngr_loadImage(nullptr, 0); }),
              "[Error](appmngr_loadImage) 2606: Invalid param!\n");
    EXPECT_EQ(linesOfLoad([] { return appmngr_loadText(nullptr, 1); }),
              "[Error](appmngr_loadText) 2620: Invalid param!\n");
    EXPECT_EQ(modelText(), model);
}

TEST_F(Image, BuffersOfTextAreUsedAgain) {
    ASSERT_EQ(appmngr_file_alloc(), 0);
    char *text = g_appmngr_appDbXml;
    text[0] = 'x';
    ASSERT_EQ(appmngr_file_alloc(), 0);
    EXPECT_EQ(g_appmngr_appDbXml, text);
    EXPECT_EQ(text[0], '\0');
    errorsOf([] { EXPECT_EQ(_appmngr_readAppDb(), -1); });
    appmngr_file_free();
    EXPECT_NE(outputOf([] { EXPECT_EQ(appmngr_analyzeDbFile(), -1); }), "") << "without a text";
    const std::string error = errorsOf([] { EXPECT_EQ(_appmngr_readAppDb(), -1); });
    EXPECT_EQ(error.substr(0, 18), "read db flash fail") << "without buffers";
}

TEST_F(Image, NeedsAFile) {
    EXPECT_EQ(appmngr_checkDbPath("/nowhere/image"), -1);
    EXPECT_STREQ(g_appmngr_dbPath, "/nowhere/image") << "it is remembered all the same";
    std::string output;
    EXPECT_EQ(errorsOf([&] { output = outputOf([] { appmngr_load_database(); }); }),
              "read db flash fail\n: No such file or directory\n");
    EXPECT_EQ(output, "[Error](_appmngr_readFromDatabase) 2570: _appmngr_readAppDb failed\n");
}

// A pipe that nobody writes to would keep whoever opens or reads it waiting.
TEST_F(Image, IsNoPipe) {
    ASSERT_EQ(mkfifo(path_.c_str(), 0600), 0);
    EXPECT_EQ(appmngr_checkDbPath(path_.c_str()), -1);
    char byte = 'x';
    EXPECT_EQ(_appmngr_readDbFile(0, 1, &byte), -1);
    EXPECT_EQ(errno, ESPIPE);
    EXPECT_EQ(byte, 'x');
    EXPECT_EQ(loadFile("/dev/zero"),
              "[Error](_appmngr_readAppDb) 2167: Size of buffer \"204800\" is too small.\n"
              "[Error](_appmngr_readFromDatabase) 2570: _appmngr_readAppDb failed\n")
        << "a device can hold an image";
}

} // namespace
