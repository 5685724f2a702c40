// The image is parsed for people who did not make it. Should a parser ever be led astray, there is
// little that it can reach: no_new_privs and Landlock, where the kernel has them.
//
// Nothing here may make a run fail that would not fail without it. So a path that does not lead to
// anything gets no rule, since the call that opens it fails by itself. Where OUTPUT_FILE is a symbolic
// link, which may lead anywhere, or where descriptors or memory do not reach for a rule that the run
// will need, access to files stays as it is.

#include "app/confine.h"

#include <cstring>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VELDA_UNCONFINED // its run-time reads other files when the process ends
#endif
#elif defined(__SANITIZE_ADDRESS__)
#define VELDA_UNCONFINED
#endif

#if defined(__linux__) && __has_include(<linux/landlock.h>)
#include <sys/syscall.h>
#if defined(SYS_landlock_create_ruleset) && !defined(VELDA_UNCONFINED)
#define VELDA_HAS_LANDLOCK
#endif
#endif

#if defined(VELDA_HAS_LANDLOCK)

#include <cerrno>
#include <climits>
#include <cstdint>
#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr uint64_t readFile = LANDLOCK_ACCESS_FS_READ_FILE;
constexpr uint64_t readFolder = readFile | LANDLOCK_ACCESS_FS_READ_DIR;
constexpr uint64_t writeList = LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_MAKE_REG |
                               LANDLOCK_ACCESS_FS_REMOVE_FILE | LANDLOCK_ACCESS_FS_REMOVE_DIR;
constexpr uint64_t rest = LANDLOCK_ACCESS_FS_EXECUTE | LANDLOCK_ACCESS_FS_MAKE_CHAR |
                          LANDLOCK_ACCESS_FS_MAKE_DIR | LANDLOCK_ACCESS_FS_MAKE_SOCK |
                          LANDLOCK_ACCESS_FS_MAKE_FIFO | LANDLOCK_ACCESS_FS_MAKE_BLOCK |
                          LANDLOCK_ACCESS_FS_MAKE_SYM;

class Descriptor {
public:
    explicit Descriptor(long number) : number_(static_cast<int>(number)) {}
    ~Descriptor() {
        if (number_ >= 0) {
            close(number_);
        }
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    int number() const { return number_; }
    bool isOpen() const { return number_ >= 0; }

private:
    int number_;
};

bool is(mode_t type, const struct stat &status) {
    return (status.st_mode & S_IFMT) == type;
}

// Whether a path that has just failed to open may open later in the run, when this process holds fewer
// descriptors or the system has more of them or of memory.
bool mayOpenLater() {
    return errno == EMFILE || errno == ENFILE || errno == ENOMEM;
}

// The following are false when a rule that the run may need could not be made.

// Call it before anything that may change errno after the opening of `place`.
bool allow(const Descriptor &rules, const Descriptor &place, uint64_t access) {
    if (!place.isOpen()) {
        return !mayOpenLater();
    }
    landlock_path_beneath_attr rule = {};
    rule.allowed_access = access;
    rule.parent_fd = place.number();
    return syscall(SYS_landlock_add_rule, rules.number(), LANDLOCK_RULE_PATH_BENEATH, &rule, 0) ==
           0;
}

bool allowReading(const Descriptor &rules, const char *path) {
    const Descriptor file(open(path, O_PATH | O_CLOEXEC));
    struct stat status = {};
    if (file.isOpen() && fstat(file.number(), &status) != 0) {
        return false;
    }
    return allow(rules, file, is(S_IFDIR, status) ? readFolder : readFile);
}

bool allowWriting(const Descriptor &rules, const char *path) {
    char folder[PATH_MAX];
    size_t length = std::strlen(path);
    while (length > 0 && path[length - 1] == '/') {
        --length;
    }
    while (length > 0 && path[length - 1] != '/') {
        --length;
    }
    if (length >= sizeof folder) {
        return true;
    }
    std::memcpy(folder, path, length);
    folder[length] = '\0';
    const Descriptor place(open(length == 0 ? "." : folder, O_PATH | O_DIRECTORY | O_CLOEXEC));
    return allow(rules, place, writeList);
}

bool isLink(const char *path) {
    struct stat status = {};
    return lstat(path, &status) == 0 && is(S_IFLNK, status);
}

} // namespace

void confineTo(const char *readPath, const char *writePath) {
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 || isLink(writePath)) {
        return;
    }
    // Newer headers have more members; the kernel is given the first one alone.
    landlock_ruleset_attr handled = {};
    handled.handled_access_fs = readFolder | writeList | rest;
    const Descriptor rules(
        syscall(SYS_landlock_create_ruleset, &handled, sizeof handled.handled_access_fs, 0));
    if (rules.isOpen() && allowReading(rules, readPath) && allowWriting(rules, writePath)) {
        syscall(SYS_landlock_restrict_self, rules.number(), 0);
    }
}

#else

void confineTo(const char *, const char *) {}

#endif
