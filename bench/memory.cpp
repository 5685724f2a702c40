// velda-bench-memory: what the parsers take from the heap for a text.
//
// The malloc family is replaced in this program, shared libraries included; the bytes counted are
// those that malloc hands out, which may be some more than were asked for.
#include "bench/check.h"
#include "bench/documents.h"
#include "bench/table.h"

#include <malloc.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <string>

namespace {

struct Heap {
    int64_t bytes = 0;
    int64_t peak = 0;
    int64_t allocations = 0;
};

Heap heap;

void *obtained(void *memory) {
    if (memory != nullptr) {
        heap.bytes += static_cast<int64_t>(malloc_usable_size(memory));
        heap.peak = std::max(heap.peak, heap.bytes);
        ++heap.allocations;
    }
    return memory;
}

void givenBack(void *memory) {
    heap.bytes -= static_cast<int64_t>(malloc_usable_size(memory));
}

} // namespace

extern "C" {

void *__libc_malloc(size_t size);
void *__libc_calloc(size_t count, size_t size);
void *__libc_realloc(void *memory, size_t size);
void *__libc_memalign(size_t alignment, size_t size);
void __libc_free(void *memory);

void *malloc(size_t size) {
    return obtained(__libc_malloc(size));
}

void *calloc(size_t count, size_t size) {
    return obtained(__libc_calloc(count, size));
}

// Where memory moves, old and new bytes stand side by side for a moment.
void *realloc(void *memory, size_t size) {
    const auto before = static_cast<int64_t>(malloc_usable_size(memory));
    const auto old = reinterpret_cast<uintptr_t>(memory);
    void *result = __libc_realloc(memory, size);
    if (result == nullptr) {
        heap.bytes -= size == 0 ? before : 0;
        return nullptr;
    }
    if (reinterpret_cast<uintptr_t>(result) == old) {
        heap.bytes -= before;
        return obtained(result);
    }
    obtained(result);
    heap.bytes -= before;
    return result;
}

void *memalign(size_t alignment, size_t size) {
    return obtained(__libc_memalign(alignment, size));
}

void *aligned_alloc(size_t alignment, size_t size) {
    return obtained(__libc_memalign(alignment, size));
}

int posix_memalign(void **memory, size_t alignment, size_t size) {
    *memory = obtained(__libc_memalign(alignment, size));
    return *memory != nullptr ? 0 : ENOMEM;
}

void free(void *memory) {
    givenBack(memory);
    __libc_free(memory);
}
}

namespace {

using namespace bench;

struct Tables {
    Table kept{"Memory kept, bytes for a byte of text"};
    Table peak{"Memory at its peak, bytes for a byte of text"};
    Table allocations{"Allocations"};
};

void measureMemory(Tables &tables, const Parser &parser, const Text &text) {
    heap = {};
    Heap kept;
    {
        const auto document = parser.parse(text.bytes);
        kept = heap;
    }
    if (heap.bytes != 0) {
        refuse(parser.name, std::to_string(heap.bytes) + " bytes are not given back");
    }
    const auto perByte = [&](int64_t bytes) {
        return fixed(static_cast<double>(bytes) / static_cast<double>(text.bytes.size()), 2);
    };
    tables.kept.set(parser.name, text.name, perByte(kept.bytes));
    tables.peak.set(parser.name, text.name, perByte(heap.peak));
    tables.allocations.set(parser.name, text.name, std::to_string(kept.allocations));
}

} // namespace

int main() {
    Tables tables;
    for (const TextGroup &group : allTexts(true)) {
        for (const Text &text : group.texts) {
            checkParsers(text);
            for (const Parser &parser : allParsers()) {
                measureMemory(tables, parser, text);
            }
        }
    }
    tables.kept.print();
    tables.peak.print();
    tables.allocations.print();
    return 0;
}
