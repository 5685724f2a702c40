// How much stack the libraries take: a device's threads have little.

#include "appmngr/appmngr.h"
#include "crypto/quelm.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/images.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/mman.h>

namespace {

constexpr size_t promised = 32768; // by the headers
constexpr size_t mapped = 1 << 20; // so that more than that is told, not a crash
constexpr uint8_t untouched = 0xA5;

void *runAction(void *action) {
    (*static_cast<const std::function<void()> *>(action))();
    return nullptr;
}

// How deep a new thread's stack is used by the action, what the thread itself keeps there included.
size_t stackOf(const std::function<void()> &action) {
    void *area = mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    EXPECT_NE(area, MAP_FAILED);
    auto *stack = static_cast<uint8_t *>(area);
    std::fill_n(stack, mapped, untouched);
    pthread_attr_t attributes;
    pthread_t thread;
    pthread_attr_init(&attributes);
    pthread_attr_setstack(&attributes, stack, mapped);
    EXPECT_EQ(pthread_create(&thread, &attributes, runAction,
                             const_cast<std::function<void()> *>(&action)),
              0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    const auto *deepest =
        std::find_if(stack, stack + mapped, [](uint8_t byte) { return byte != untouched; });
    const auto depth = static_cast<size_t>(stack + mapped - deepest);
    munmap(area, mapped);
    return depth;
}

void expectSmall(const char *name, const std::function<void()> &action) {
    action(); // symbols are bound and buffers of the C library obtained
    const size_t depth = stackOf(action);
    EXPECT_LE(depth, promised) << name;
    ::testing::Test::RecordProperty(name, static_cast<int>(depth));
}

void parse(const std::string &text, uint32_t isStatic) {
    xmlp_releaseDoc(xmlp_loadDoc(text.c_str(), static_cast<uint32_t>(text.size()), isStatic));
}

TEST(Stack, IsEnoughOnASmallThread) {
    const TemporaryFolder folder;
    std::string apps;
    for (int id = 1; id < 100; ++id) {
        apps += appElement(id, "application", "<typeIdList><typeId>1</typeId></typeIdList>");
    }
    const std::string document = smallDocument(apps);
    writeFile(folder.path("image"), packImage(document));
    const std::string image = folder.path("image");
    const std::string list = folder.path("list");
    const std::string sealed = folder.path("sealed");
    std::string attributes = "<r";
    for (int i = 0; i < 200; ++i) {
        attributes += "  a" + std::to_string(i) + " = \"v\"";
    }
    attributes += "/>";
    linesOf([&] {
        expectSmall("load", [&] {
            appmngr_checkDbPath(image.c_str());
            appmngr_load_database();
            appmngr_saveIdAndName(list.c_str());
            appmngr_dbReInit();
        });
        for (const uint32_t isStatic : {0U, 1U}) {
            expectSmall("parse", [&] { parse(document, isStatic); });
            expectSmall("parse of attributes", [&] { parse(attributes, isStatic); });
            expectSmall("refused parse", [&] { parse(document + "<x>", isStatic); });
        }
        expectSmall("sealed file", [&] { quelm_md5_des_file(list.c_str(), sealed.c_str(), 1); });
    });
    EXPECT_NE(readFile(list).value_or(""), "");
}

} // namespace
