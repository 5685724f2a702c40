#include "tests/support/images.h"

#include <gtest/gtest.h>
#include <lzma.h>

std::string appElement(int id, const std::string &name, const std::string &more) {
    return "<app><id>" + std::to_string(id) + "</id><name>" + name +
           "</name><ruleList><rule><tupleList><tuple>tcp 0:0 0:80</tuple></tupleList></rule>"
           "</ruleList>" +
           more + "</app>";
}

std::string smallDocument(const std::string &apps, const std::string &types) {
    const std::string appList = apps.empty() ? appElement(1, "one") : apps;
    const std::string typeList = types.empty() ? "<appType><id>1</id></appType>" : types;
    return "<AppDB><ver>1.0</ver><appTypeList>" + typeList + "</appTypeList><appList>" + appList +
           "</appList></AppDB>";
}

std::string packImage(const std::string &text, uint64_t declared) {
    lzma_options_lzma options;
    lzma_lzma_preset(&options, 6);
    options.dict_size = 1 << 18;
    // The encoder makes what a block holds behind its flag byte, but for the size of the text.
    std::string block(text.size() + text.size() / 2 + 256, '\0');
    lzma_stream stream = LZMA_STREAM_INIT;
    EXPECT_EQ(lzma_alone_encoder(&stream, &options), LZMA_OK);
    stream.next_in = reinterpret_cast<const uint8_t *>(text.data());
    stream.avail_in = text.size();
    stream.next_out = reinterpret_cast<uint8_t *>(&block[1]);
    stream.avail_out = block.size() - 1;
    EXPECT_EQ(lzma_code(&stream, LZMA_FINISH), LZMA_STREAM_END);
    block.resize(block.size() - stream.avail_out);
    lzma_end(&stream);
    const uint64_t size = declared == UINT64_MAX ? text.size() : declared;
    for (size_t i = 0; i < 8; ++i) {
        block[6 + i] = static_cast<char>(size >> (8 * i));
    }
    return bigEndian(static_cast<uint32_t>(block.size())) + block;
}

std::string bigEndian(uint32_t value) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes += static_cast<char>(value >> shift);
    }
    return bytes;
}
