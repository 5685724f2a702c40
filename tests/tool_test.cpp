// The programs as a shell sees them.

#include "tests/support/files.h"
#include "tests/support/images.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace {

class Tool : public testing::Test {
protected:
    static Finished parse(const std::string &image, const std::string &output) {
        return run({VELDA_PARSER, image, output});
    }

    std::string imageFile(const std::string &image) const {
        const std::string path = folder_.path("image");
        writeFile(path, image);
        return path;
    }

    TemporaryFolder folder_;
    std::string list_ = folder_.path("list");
};

TEST_F(Tool, WritesTheList) {
    const std::string apps = appElement(3, "a:b") + appElement(-5, "") + appElement(4096, "&lt;");
    writeFile(list_, std::string(1000, 'x'));
    const Finished done = parse(imageFile(packImage(smallDocument(apps))), list_);
    EXPECT_EQ(done.status, 0);
    EXPECT_EQ(done.out + done.err, "");
    EXPECT_EQ(readFile(list_), "1.0\n3:a:b\n-5:\n4096:<\n");
}

TEST_F(Tool, WritesAnEmptyVersionLine) {
    std::string document = smallDocument();
    document.replace(document.find("<ver>1.0</ver>"), 14, "");
    EXPECT_EQ(parse(imageFile(packImage(document)), list_).status, 0);
    EXPECT_EQ(readFile(list_), "\n1:one\n");
}

TEST_F(Tool, TakesExactlyTwoArguments) {
    const std::vector<std::string> cases[] = {
        {VELDA_PARSER}, {VELDA_PARSER, "x"}, {VELDA_PARSER, "x", list_, "y"}};
    for (const auto &arguments : cases) {
        const Finished done = run(arguments);
        EXPECT_EQ(done.status, 255);
        EXPECT_EQ(done.out, "Usage: velda-db-parser <DB_FILE> <OUTPUT_FILE>\n");
        EXPECT_EQ(done.err, "");
    }
}

TEST_F(Tool, LeavesTheOldListWhenNothingIsLoaded) {
    writeFile(list_, "old");
    const std::string missing = folder_.path("missing");
    Finished done = parse(missing, list_);
    EXPECT_EQ(done.status, 255);
    EXPECT_EQ(done.out, "");
    EXPECT_EQ(done.err, "invalid database path: " + missing + "\n");

    done = parse(imageFile("short"), list_);
    EXPECT_EQ(done.status, 255);
    EXPECT_EQ(done.out.substr(0, 7), "[Error]");
    EXPECT_EQ(done.err, "Load database fail.\n");
    EXPECT_EQ(readFile(list_), "old");
}

TEST_F(Tool, TellsWhenTheListCannotBeWritten) {
    const std::string image = imageFile(packImage(smallDocument()));
    const std::string nowhere = folder_.path("no/list");
    const Finished done = parse(image, nowhere);
    EXPECT_EQ(done.status, 255);
    EXPECT_EQ(done.out, "open " + nowhere + " error!\n");
    EXPECT_EQ(done.err, "Save id and name at " + nowhere + " fail.\n");
}

TEST_F(Tool, NeedsNoLibraryButLzmaAndC) {
    if (VELDA_SANITIZED) {
        GTEST_SKIP() << "sanitizers bring libraries of their own";
    }
    const Finished done = run({VELDA_READELF, "-d", VELDA_PARSER});
    ASSERT_EQ(done.status, 0);
    std::vector<std::string> needed;
    for (size_t at = 0; (at = done.out.find("(NEEDED)", at)) != std::string::npos; ++at) {
        const size_t begin = done.out.find('[', at) + 1;
        const std::string name = done.out.substr(begin, done.out.find(']', begin) - begin);
        if (name.find("libvelda_") != 0) {
            needed.push_back(name);
        }
    }
    EXPECT_EQ(needed, (std::vector<std::string>{"liblzma.so.5", "libc.so.6"}));
}

TEST_F(Tool, ListsTheSamples) {
    for (const std::string sample : {"small", "full"}) {
        const std::string image = std::string(VELDA_SAMPLE_IMAGES) + "/" + sample + ".img";
        const Finished done = parse(image, list_);
        EXPECT_EQ(done.status, 0) << sample;
        EXPECT_EQ(done.out + done.err, "") << sample;
        const std::string list = readFile(list_).value_or("");
        const std::string document =
            readFile(std::string(VELDA_SAMPLES) + "/" + sample + ".xml").value_or("");
        size_t apps = 0;
        for (size_t at = 0; (at = document.find("<app>", at)) != std::string::npos; ++at) {
            ++apps;
        }
        EXPECT_EQ(std::count(list.begin(), list.end(), '\n'), static_cast<long>(apps) + 1);
    }
}

TEST_F(Tool, PacksWhatLoads) {
    const std::string xml = folder_.path("xml");
    const std::string image = folder_.path("packed");
    std::string document = smallDocument();
    document.resize(204'799, '\n');
    writeFile(xml, document);
    const Finished done = run({VELDA_DBTOOL, "pack", xml, image});
    EXPECT_EQ(done.status, 0);
    EXPECT_EQ(done.out + done.err, "");
    EXPECT_EQ(parse(image, list_).status, 0);
    EXPECT_EQ(readFile(list_), "1.0\n1:one\n");
}

TEST_F(Tool, RefusesToPackWhatWouldNotLoad) {
    std::string noise(100'000, '\0'); // does not compress
    uint32_t state = 1;
    for (char &byte : noise) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<char>(state >> 24 | 1);
    }
    const struct {
        std::string document;
        const char *reason;
    } cases[] = {
        {"", "the text is empty"},
        {std::string(204'800, ' '), "the text is larger than 204799 bytes"},
        {std::string("a\0b", 3), "the text holds a zero byte, at which a load would end it"},
        {noise, "the text does not pack into 65532 bytes"},
    };
    const std::string xml = folder_.path("xml");
    const std::string image = folder_.path("packed");
    writeFile(image, "old");
    for (const auto &test : cases) {
        writeFile(xml, test.document);
        const Finished done = run({VELDA_DBTOOL, "pack", xml, image});
        EXPECT_EQ(done.status, 1) << test.reason;
        EXPECT_EQ(done.err, "velda-dbtool: " + xml + ": " + test.reason + "\n");
        EXPECT_EQ(readFile(image), "old");
    }
    writeFile(xml, smallDocument());
    EXPECT_EQ(run({VELDA_DBTOOL, "pack", xml, image}, 10).status, 1) << "the disk is full";
    EXPECT_EQ(readFile(image), "old");
    EXPECT_EQ(run({VELDA_DBTOOL, "pack", folder_.path("none"), image}).err,
              "velda-dbtool: " + folder_.path("none") + ": No such file or directory\n");
    EXPECT_EQ(run({VELDA_DBTOOL, "pack", xml}).status, 1);
    EXPECT_EQ(run({VELDA_DBTOOL, "--help"}).status, 0);
}

} // namespace
