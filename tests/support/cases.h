// Test cases kept in data files; tests/data/README.md describes their format.
#pragma once

#include <cstdint>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

class Case {
public:
    std::string place; // file and line

    void add(const std::string &key, const std::string &value) { values_[key] += value + "\n"; }
    bool has(const std::string &key) const { return values_.count(key) != 0; }

    // The value of a key; newlines stand between the values of a repeated one.
    std::string text(const std::string &key, const std::string &otherwise = "") const;

    // Every value with a newline behind it; nothing for a key that is not there.
    std::string lines(const std::string &key) const;

    int64_t number(const std::string &key, int64_t otherwise = 0) const;
    int32_t int32(const std::string &key) const { return static_cast<int32_t>(number(key)); }
    size_t size(const std::string &key) const { return static_cast<size_t>(number(key)); }

private:
    std::map<std::string, std::string> values_;
};

// All cases of a file in tests/data. A file without cases fails the test.
std::vector<Case> readCases(const std::string &name);

// Runs `check` on each of them; a failure in it names the file and the line.
template <class Check>
void forEachCase(const std::string &name, Check check) {
    for (const Case &test : readCases(name)) {
        SCOPED_TRACE(test.place);
        check(test);
    }
}

// A whole file in tests/data; on a big-endian machine the one of that name in tests/data/big-endian, where
// there is one.
std::string readData(const std::string &name);
