// A growing array of plain records that tells when memory runs out.
#pragma once

#include "xmlp/memory.h"

#include <cstring>
#include <type_traits>

namespace velda::xmlp {

template <class Record>
class Array {
    static_assert(std::is_trivially_copyable_v<Record>);

public:
    // Room for this many records in all.
    bool reserve(size_t count) {
        if (count <= capacity_) {
            return true;
        }
        const auto bytes = CheckedSize(0).add(count, sizeof(Record)).bytes();
        auto larger = bytes ? allocate<Record>(*bytes) : nullptr;
        if (larger == nullptr) {
            return false;
        }
        if (size_ > 0) {
            std::memcpy(larger.get(), records_.get(), size_ * sizeof(Record));
        }
        records_ = std::move(larger);
        capacity_ = count;
        return true;
    }

    bool push(const Record &record) {
        if (size_ == capacity_ && !reserve(capacity_ == 0 ? 64 : 2 * capacity_)) {
            return false;
        }
        records_.get()[size_++] = record;
        return true;
    }

    void pop() { --size_; }
    bool isEmpty() const { return size_ == 0; }
    size_t size() const { return size_; }
    Record &operator[](size_t index) { return records_.get()[index]; }
    const Record &operator[](size_t index) const { return records_.get()[index]; }
    Record &last() { return records_.get()[size_ - 1]; }

private:
    Owned<Record> records_;
    size_t size_ = 0;
    size_t capacity_ = 0;
};

} // namespace velda::xmlp
