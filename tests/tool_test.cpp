// The programs as a shell sees them.

#include "tests/support/cases.h"
#include "tests/support/files.h"
#include "tests/support/images.h"

#include <cstdlib>

namespace {

TEST(Programs, DoWhatAShellSees) {
    setenv("PARSER", VELDA_EMULATOR " " VELDA_PARSER, 1);
    setenv("DBTOOL", VELDA_EMULATOR " " VELDA_DBTOOL, 1);
    setenv("SAMPLES", VELDA_SAMPLES, 1);
    setenv("IMAGES", VELDA_SAMPLE_IMAGES, 1);
    forEachCase("programs.cases", [](const Case &test) {
        const TemporaryFolder folder;
        writeFile(folder.path("image"), packImage(smallDocument()));
        writeFile(folder.path("document.xml"), smallDocument());
        writeFile(folder.path("list"), "old\n");
        const Finished done = run(test.text("run"), folder.path(""));
        EXPECT_EQ(done.status, test.number("status"));
        EXPECT_EQ(done.out, test.lines("out"));
        EXPECT_EQ(done.err, test.lines("err"));
        EXPECT_EQ(readFile(folder.path("list")), test.has("list") ? test.lines("list") : "old\n");
    });
}

TEST(Programs, NeedNoLibraryButLzmaAndC) {
    if (VELDA_HAS_OTHER_LIBRARIES) {
        GTEST_SKIP() << "sanitizers and shared builds bring libraries of their own";
    }
    // The loader is part of the C library; on some machines the stack protector's secret is in it.
    const Finished done =
        run(VELDA_READELF " -d " VELDA_PARSER " | sed -n 's/.*(NEEDED).*\\[\\(.*\\)\\]/\\1/p'"
                          " | grep -v -e '^libvelda_' -e '^ld-linux'",
            "/");
    EXPECT_EQ(done.out, "liblzma.so.5\nlibc.so.6\n") << done.err;
}

} // namespace
