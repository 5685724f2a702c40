// The programs as a shell sees them.

#include "app/confine.h"
#include "tests/support/cases.h"
#include "tests/support/files.h"
#include "tests/support/images.h"

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <sys/wait.h>
#include <unistd.h>

namespace {

void runCases(const char *file) {
    setenv("PARSER", VELDA_EMULATOR " " VELDA_PARSER, 1);
    setenv("DBTOOL", VELDA_EMULATOR " " VELDA_DBTOOL, 1);
    setenv("TOOLS", VELDA_TOOLS, 1);
    setenv("SAMPLES", VELDA_SAMPLES, 1);
    setenv("IMAGES", VELDA_SAMPLE_IMAGES, 1);
    forEachCase(file, [](const Case &test) {
        const TemporaryFolder folder;
        const std::string terminal = "script -qc true typescript </dev/null";
        if (test.has("terminal") && run(terminal, folder.path("")).status != 0) {
            return; // a machine without terminals
        }
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

TEST(Programs, DoWhatAShellSees) {
    runCases("programs.cases");
}

TEST(Programs, WorkAtADesk) {
    runCases("dbtool.cases");
}

// In a child, as there is no way back: 0 when the list can be written and nothing else be opened, 2 where
// nothing is confined.
int statusOfConfined(const TemporaryFolder &folder) {
    const std::string secret = folder.path("secret");
    const std::string image = folder.path("image");
    const std::string list = folder.path("lists/list");
    confineTo(image.c_str(), list.c_str());
    if (open(secret.c_str(), O_RDONLY) >= 0) {
        return 2;
    }
    const bool canWork = open(image.c_str(), O_RDONLY) >= 0 && std::remove(list.c_str()) == 0 &&
                         open(list.c_str(), O_WRONLY | O_CREAT, 0600) >= 0;
    const bool canMore = open(secret.c_str(), O_WRONLY) >= 0 || std::remove(image.c_str()) == 0 ||
                         open("/bin/sh", O_RDONLY) >= 0 || open(list.c_str(), O_RDONLY) >= 0;
    return canWork && !canMore ? 0 : 1;
}

TEST(Programs, ReachNothingButTheirFiles) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.path("lists"));
    for (const char *name : {"secret", "image", "lists/list"}) {
        writeFile(folder.path(name), "bytes");
    }
    const pid_t child = fork();
    if (child == 0) {
        _exit(statusOfConfined(folder));
    }
    int status = -1;
    waitpid(child, &status, 0);
    if (WEXITSTATUS(status) == 2) {
        GTEST_SKIP() << "a kernel without Landlock, or a build with sanitizers or counters";
    }
    EXPECT_EQ(status, 0);
}

} // namespace
