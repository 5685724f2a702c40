// The programs as a shell sees them.

#include "app/confine.h"
#include "tests/support/cases.h"
#include "tests/support/files.h"
#include "tests/support/images.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// Lets a shell find a program by a name, as it may lie where blanks are in the path. One of another
// architecture has an emulator in front.
void addProgram(const TemporaryFolder &folder, const char *name, const char *program) {
    const std::string path = folder.path(name);
    if (*VELDA_EMULATOR == '\0') {
        std::filesystem::create_symlink(program, path);
    } else {
        writeFile(path,
                  std::string("#!/bin/sh\nexec " VELDA_EMULATOR " '") + program + "' \"$@\"\n");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    }
}

void runCases(const char *file) {
    const TemporaryFolder programs;
    addProgram(programs, "parser", VELDA_PARSER);
    addProgram(programs, "dbtool", VELDA_DBTOOL);
    setenv("PATH", (programs.path("") + ":" + std::getenv("PATH")).c_str(), 1);
    setenv("PARSER", "parser", 1);
    setenv("DBTOOL", "dbtool", 1);
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

#if __has_include(<linux/landlock.h>) && defined(SYS_landlock_create_ruleset)
constexpr bool isBuiltConfined = VELDA_IS_CONFINED;

bool canKernelConfine() {
    constexpr unsigned askForVersion = 1;
    return syscall(SYS_landlock_create_ruleset, nullptr, 0, askForVersion) > 0;
}
#else
constexpr bool isBuiltConfined = false;

bool canKernelConfine() {
    return false;
}
#endif

// In a child, as there is no way back: 0 when the list can be written and nothing else be opened.
int statusOfConfined(const TemporaryFolder &folder) {
    const std::string secret = folder.path("secret");
    const std::string image = folder.path("image");
    const std::string list = folder.path("lists/list");
    confineTo(image.c_str(), list.c_str());
    const bool canWork = open(image.c_str(), O_RDONLY) >= 0 && std::remove(list.c_str()) == 0 &&
                         open(list.c_str(), O_WRONLY | O_CREAT, 0600) >= 0;
    const bool canMore = open(secret.c_str(), O_RDONLY) >= 0 ||
                         open(secret.c_str(), O_WRONLY) >= 0 || std::remove(image.c_str()) == 0 ||
                         open("/bin/sh", O_RDONLY) >= 0 || open(list.c_str(), O_RDONLY) >= 0;
    return canWork && !canMore ? 0 : 1;
}

TEST(Programs, ReachNothingButTheirFiles) {
    if (!isBuiltConfined || !canKernelConfine()) {
        GTEST_SKIP() << "without Landlock in kernel and headers, or with sanitizers or counters";
    }
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
    EXPECT_EQ(status, 0);
}

// Whether anybody has the other end of a pseudo-terminal open, after it was closed once.
bool isHeldOpen(int terminal) {
    pollfd asked = {terminal, POLLIN, 0};
    poll(&asked, 1, 0);
    return (asked.revents & POLLHUP) == 0;
}

// A terminal in the place of the image keeps the parser waiting, so that the system can be asked what it
// has given up by then.
TEST(Programs, AreConfinedBeforeTheImageIsOpened) {
    if (!isBuiltConfined) {
        GTEST_SKIP() << "without Landlock in the headers, or with sanitizers or counters";
    }
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (terminal < 0 || grantpt(terminal) != 0 || unlockpt(terminal) != 0) {
        GTEST_SKIP() << "a machine without terminals";
    }
    const std::string image = ptsname(terminal);
    close(open(image.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
    ASSERT_FALSE(isHeldOpen(terminal));
    const TemporaryFolder folder;
    const std::string command = "cd " + folder.path("") +
                                " && exec " VELDA_EMULATOR " '" VELDA_PARSER "' " + image +
                                " list >out 2>&1";
    const pid_t child = fork();
    if (child == 0) {
        execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
        _exit(127);
    }
    int status = -1;
    while (!isHeldOpen(terminal) && waitpid(child, &status, WNOHANG) == 0) {
        usleep(1000);
    }
    const auto state = readFile("/proc/" + std::to_string(child) + "/status").value_or("");
    EXPECT_NE(state.find("NoNewPrivs:\t1"), std::string::npos)
        << state << readFile(folder.path("out")).value_or("");
    kill(child, SIGKILL);
    waitpid(child, &status, 0);
    close(terminal);
}

TEST(Programs, WorkWithFewDescriptors) {
    if (*VELDA_EMULATOR != '\0') {
        GTEST_SKIP() << "the emulator needs some of its own";
    }
    const TemporaryFolder folder;
    writeFile(folder.path("image"), packImage(smallDocument()));
    // Those that this process has inherited do not count.
    const std::string begin = "exec 3>&- 4>&- 5>&- 6>&- 7>&- 8>&- 9>&- && ulimit -n ";
    for (const char *limit : {"4", "5", "6"}) {
        const Finished done =
            run(begin + limit + " && exec '" VELDA_PARSER "' image list", folder.path(""));
        EXPECT_EQ(done.out + done.err + std::to_string(done.status), "0") << limit;
        EXPECT_EQ(readFile(folder.path("list")), "1.0\n1:one\n") << limit;
    }
}

} // namespace
