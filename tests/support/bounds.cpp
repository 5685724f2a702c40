#include "tests/support/bounds.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/mman.h>
#include <unistd.h>

Guarded::Guarded(std::string_view bytes) {
    const auto page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
    const size_t readable = (bytes.size() + page - 1) / page * page;
    size_ = readable + page;
    pages_ = static_cast<char *>(
        mmap(nullptr, size_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    EXPECT_EQ(mprotect(pages_ + readable, page, PROT_NONE), 0);
    data_ = pages_ + readable - bytes.size();
    std::copy(bytes.begin(), bytes.end(), data_);
}

Guarded::~Guarded() {
    munmap(pages_, size_);
}

void onSmallStack(const std::function<void()> &action) {
    pthread_attr_t attributes;
    pthread_t thread = {};
    pthread_attr_init(&attributes);
    EXPECT_EQ(pthread_attr_setstacksize(&attributes, size_t{128} * 1024), 0);
    const auto run = [](void *called) -> void * {
        (*static_cast<const std::function<void()> *>(called))();
        return nullptr;
    };
    auto *called = const_cast<std::function<void()> *>(&action);
    ASSERT_EQ(pthread_create(&thread, &attributes, run, called), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}
