#include "tests/support/cases.h"

#include "tests/support/files.h"

#include <bit>
#include <gtest/gtest.h>
#include <sstream>

namespace {

std::string withoutEscapes(const std::string &raw) {
    const std::string letters = "nrt0";
    std::string text;
    for (size_t at = 0; at < raw.size(); ++at) {
        if (raw[at] != '\\') {
            text += raw[at];
            continue;
        }
        const char escape = raw[++at];
        if (escape == 'x') {
            text += fromHex(raw.substr(at + 1, 2));
            at += 2;
        } else if (escape == '{') {
            const size_t blank = raw.find(' ', at);
            const size_t end = raw.find('}', at);
            const std::string part = withoutEscapes(raw.substr(blank + 1, end - blank - 1));
            for (size_t count = std::stoul(raw.substr(at + 1)); count > 0; --count) {
                text += part;
            }
            at = end;
        } else {
            const size_t letter = letters.find(escape);
            text += letter == std::string::npos ? escape : "\n\r\t\0"[letter];
        }
    }
    return text;
}

constexpr bool isBigEndian = std::endian::native == std::endian::big;

// Drops the byte order at the end of a key; false when it is another machine's.
bool isForThisByteOrder(std::string &key) {
    const size_t at = key.find('@');
    if (at == std::string::npos) {
        return true;
    }
    const std::string order = key.substr(at + 1);
    EXPECT_TRUE(order == "little" || order == "big") << key;
    key.resize(at);
    return order == (isBigEndian ? "big" : "little");
}

} // namespace

std::string Case::lines(const std::string &key) const {
    return has(key) ? values_.at(key) : "";
}

std::string Case::text(const std::string &key, const std::string &otherwise) const {
    return has(key) ? lines(key).substr(0, lines(key).size() - 1) : otherwise;
}

int64_t Case::number(const std::string &key, int64_t otherwise) const {
    return has(key) ? std::stoll(text(key)) : otherwise;
}

std::vector<Case> readCases(const std::string &name) {
    std::istringstream file(readData(name));
    std::vector<Case> cases;
    bool isInCase = false;
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        const size_t colon = line.find(':');
        if (line.empty() || line[0] == '#') {
            isInCase = isInCase && !line.empty();
        } else {
            EXPECT_NE(colon, std::string::npos) << name << ":" << number << ": a line without key";
            if (!isInCase) {
                cases.emplace_back().place = name + ":" + std::to_string(number);
                isInCase = true;
            }
            std::string key = line.substr(0, colon);
            if (isForThisByteOrder(key)) {
                const std::string value = line.substr(std::min(colon + 2, line.size()));
                cases.back().add(key, withoutEscapes(value));
            }
        }
    }
    EXPECT_FALSE(cases.empty()) << name;
    return cases;
}

std::string readData(const std::string &name) {
    const std::string folder = VELDA_TEST_DATA "/";
    auto bytes = isBigEndian ? readFile(folder + "big-endian/" + name) : std::nullopt;
    if (!bytes.has_value()) {
        bytes = readFile(folder + name);
    }
    EXPECT_TRUE(bytes.has_value()) << name;
    return bytes.value_or("");
}
