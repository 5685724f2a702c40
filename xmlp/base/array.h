// A growing array of plain records that reports when memory runs out.
#pragma once

#include "xmlp/base/memory.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <type_traits>

namespace velda::xmlp {

template <class Record>
class Array {
    static_assert(std::is_trivially_copyable_v<Record>);

public:
    // Capacity for this many records in all.
    bool reserve(size_t count) {
        if (count <= capacity()) {
            return true;
        }
        const auto bytes = CheckedSize(0).add(count, sizeof(Record)).bytes();
        auto larger = bytes ? allocate<Record>(*bytes) : nullptr;
        if (larger == nullptr) {
            return false;
        }
        const size_t used = size();
        if (used > 0) {
            std::memcpy(larger.get(), records_.get(), used * sizeof(Record));
        }
        records_ = std::move(larger);
        end_ = records_.get() + used;
        limit_ = records_.get() + count;
        return true;
    }

    // Reserves capacity for `count` more; pushUnchecked does not check.
    bool reserveMore(size_t count) {
        return count <= capacity() - size() || reserve(size() + std::max(count, size()));
    }
    void pushUnchecked(const Record &record) { *end_++ = record; }

    bool push(const Record &record) {
        if (end_ == limit_ && !reserve(size() == 0 ? 64 : 2 * size())) {
            return false;
        }
        pushUnchecked(record);
        return true;
    }

    void pop() { --end_; }
    void shrink(size_t size) { end_ = records_.get() + size; }
    bool isEmpty() const { return end_ == records_.get(); }
    size_t size() const { return static_cast<size_t>(end_ - records_.get()); }
    std::span<const Record> records() const { return {records_.get(), size()}; }
    Record &operator[](size_t index) { return records_.get()[index]; }
    const Record &operator[](size_t index) const { return records_.get()[index]; }
    Record &last() { return end_[-1]; }

private:
    size_t capacity() const { return static_cast<size_t>(limit_ - records_.get()); }

    Owned<Record> records_;
    Record *end_ = nullptr;
    Record *limit_ = nullptr;
};

} // namespace velda::xmlp
