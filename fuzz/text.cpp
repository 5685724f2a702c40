// Small texts: tuples and numbers against a slower reading of them, references, comparing, splitting,
// the hex dump and sets of identifiers. Two texts with a NUL between them.

#include "appmngr/appmngr_internal.h"
#include "appmngr/node_text.h"
#include "fuzz/support.h"
#include "xmlp/xmlp.h"

#include <bitset>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <strings.h>
#include <vector>

using namespace fuzz;

namespace {

struct ReadTuple {
    int result;
    uint32_t count;
    APPMNGR_RULE rule;
};

ReadTuple readTuple(const Text &text) {
    ReadTuple read = {};
    g_appmngr_appDb.rule = &read.rule;
    g_appmngr_appDb.ruleCount = 1;
    XMLP_NODE node = {};
    node.value = text.size() > 0 ? text.data() : nullptr;
    node.valueSize = text.size();
    read.result = _appmngr_xmlnode_handler_tuple(&node, &read.count);
    g_appmngr_appDb = {};
    return read;
}

// A line end separates, so that it changes nothing but keeps a tuple from being read in one go.
void checkTuple(const Text &text) {
    std::string longer(text.data(), text.size());
    longer += '\n';
    const ReadTuple read = readTuple(text);
    FUZZ_REQUIRE(read.count == (read.result == 0 ? 1 : 0));
    if (longer.size() < 64 && longer.find('\0') == std::string::npos) {
        const ReadTuple slowly = readTuple(Text(longer));
        FUZZ_REQUIRE(slowly.result == read.result);
        FUZZ_REQUIRE(read.result != 0 ||
                     std::memcmp(&slowly.rule, &read.rule, sizeof read.rule) == 0);
    }
}

void checkNumber(const Text &text) {
    char *end = nullptr;
    errno = 0;
    const long long expected = std::strtoll(text.data(), &end, 10);
    const auto value = static_cast<int32_t>(expected);
    const bool isExact = end != text.data() && errno == 0 && value == expected &&
                         end + std::strspn(end, " \t\n\v\f\r") == text.data() + text.size();
    const velda::appmngr::Integer read = velda::appmngr::parseInteger({text.data(), text.size()});
    FUZZ_REQUIRE(read.value == value && read.isExact == isExact);
}

void checkReferences(const Text &text) {
    const uint32_t size = xmlp_transStrLen(text.data(), text.size());
    const Text escaped(std::string(size, '\0'));
    FUZZ_REQUIRE(xmlp_transStr(escaped.data(), text.data(), text.size()) == escaped.data() + size);
    FUZZ_REQUIRE(std::strpbrk(escaped.data(), "<>") == nullptr);
    const Text again(std::string(text.size(), '\0'));
    FUZZ_REQUIRE(xmlp_unTransStrLen(escaped.data(), size) == text.size());
    FUZZ_REQUIRE(xmlp_unTransStr(again.data(), escaped.data(), size) ==
                 again.data() + again.size());
    FUZZ_REQUIRE(std::memcmp(again.data(), text.data(), text.size()) == 0);

    const uint32_t decoded = xmlp_unTransStrLen(text.data(), text.size());
    FUZZ_REQUIRE(decoded <= text.size());
    const Text plain(std::string(decoded, '\0'));
    if (decoded > 0) {
        FUZZ_REQUIRE(xmlp_unTransStr(plain.data(), text.data(), text.size()) ==
                     plain.data() + decoded);
    }
}

int sign(int number) {
    return (number > 0) - (number < 0);
}

void checkComparing(const Text &a, const Text &b) {
    FUZZ_REQUIRE(sign(appmngr_string_safeCaseCmp(a.data(), b.data())) ==
                 sign(strcasecmp(a.data(), b.data())));
    FUZZ_REQUIRE(appmngr_string_match(a.data(), b.data()) ==
                 (std::strcmp(a.data(), b.data()) == 0 ? 1 : 0));
    const bool isSame = std::string_view(a.data(), a.size()) == b.data();
    FUZZ_REQUIRE((xmlp_nameCmp(a.data(), a.size(), b.data()) == 0) == isSame);
    if (xmlp_isValidName(a.data(), a.size()) != 0) {
        FUZZ_REQUIRE(xmlp_isValidAttrValue(a.data(), a.size()) != 0);
        FUZZ_REQUIRE(xmlp_isValidChar(a.data(), a.size()) != 0);
    }
}

void checkSplitting(const Text &text, char separator, int maximum) {
    const Text copy({text.data(), text.size()});
    const std::unique_ptr<char *[]> fields(new char *[static_cast<size_t>(maximum)]);
    const int count = appmngr_string_makeSubStrByChar(copy.data(), separator, maximum, &fields[0]);
    FUZZ_REQUIRE(count >= -1 && count < maximum);
    FUZZ_REQUIRE(count < 0 || fields[static_cast<size_t>(count)] == nullptr);
    const char *end = copy.data();
    for (int i = 0; i < count; ++i) {
        const char *field = fields[static_cast<size_t>(i)];
        FUZZ_REQUIRE(field >= end && *field != '\0' && std::strpbrk(field, "\t\r\n") == nullptr);
        FUZZ_REQUIRE(std::strchr(field, separator) == nullptr);
        FUZZ_REQUIRE(std::strncmp(field, text.data() + (field - copy.data()), std::strlen(field)) ==
                     0);
        end = field + std::strlen(field);
    }
    const Text escaped(std::string(text.size(), '\0'));
    FUZZ_REQUIRE(appmngr_string_escape(escaped.data(), text.data()) == 0);
    FUZZ_REQUIRE(std::strlen(escaped.data()) == std::strlen(text.data()) &&
                 std::strpbrk(escaped.data(), " \"\\") == nullptr);
}

void checkHexDump(const Text &text) {
    forgetPrinted();
    appmngr_utils_dumpBuf(reinterpret_cast<const unsigned char *>(text.data()),
                          static_cast<int>(text.size()));
    const std::string dump(printed());
    const char *at = std::strchr(std::strstr(dump.c_str(), "len:"), '\n') + 1;
    for (uint32_t i = 0; i < text.size(); ++i) {
        char *end = nullptr;
        FUZZ_REQUIRE(std::strtoul(at, &end, 16) == static_cast<unsigned char>(text.data()[i]));
        at = end;
    }
    FUZZ_REQUIRE(std::strcmp(at + std::strspn(at, " \r\n"), "===============\r\n") == 0);
}

using Set = std::bitset<APPMNGR_APP_BITMAP_BITS>;

void requireSame(const Set &expected, const uint32_t *set) {
    size_t count = 0;
    for (int i = 0; i < APPMNGR_APP_BITMAP_WORDS; ++i) {
        count += std::bitset<32>(set[i]).count();
    }
    FUZZ_REQUIRE(count == expected.count());
    FUZZ_REQUIRE((appmngr_bitmap_isEmpty(set) != 0) == (count == 0));
}

// Three bytes an operation: which one, then a number of up to 16 bits.
void checkSets(Input input) {
    APPMNGR_APP_BITMAP sets[2] = {};
    Set expected[2];
    while (!input.isEmpty()) {
        const uint8_t operation = input.byte();
        const uint32_t n = input.byte() * 256U + input.byte();
        const size_t which = operation / 4 % 2;
        const bool isMember = n < APPMNGR_APP_BITMAP_BITS;
        switch (operation % 4) {
        case 0:
            appmngr_bitmap_set(sets[which], n);
            if (isMember) {
                expected[which].set(n);
            }
            break;
        case 1:
            appmngr_bitmap_clear(sets[which], n);
            if (isMember) {
                expected[which].reset(n);
            }
            break;
        case 2:
            appmngr_bitmap_or(sets[which], sets[1 - which]);
            expected[which] |= expected[1 - which];
            break;
        default:
            appmngr_bitmap_and(sets[which], sets[1 - which]);
            expected[which] &= expected[1 - which];
        }
        FUZZ_REQUIRE((appmngr_bitmap_test(sets[which], n) != 0) ==
                     (isMember && expected[which][n]));
    }
    requireSame(expected[0], sets[0]);
    requireSame(expected[1], sets[1]);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    Input input(data, size);
    const Text first(input.takeUntil('\0'));
    const Text second(input.rest());
    forgetPrinted();
    checkTuple(first);
    checkTuple(second);
    checkNumber(first);
    checkReferences(first);
    checkReferences(second);
    checkComparing(first, second);
    checkComparing(second, first);
    const char separator = second.size() > 0 && *second.data() != '\0' ? *second.data() : ' ';
    checkSplitting(first, separator, 1 + static_cast<int>(second.size() % 8));
    checkHexDump(second);
    checkSets(Input(data, size));
    const int protocol = appmngr_utils_str2proto(first.data());
    FUZZ_REQUIRE(protocol == APPMNGR_PROTO_UNKNOWN ||
                 strcasecmp(appmngr_utils_proto2str(protocol), first.data()) == 0);
    return 0;
}
