#include "tests/support/images.h"

#include <lzma.h>

namespace {

void append(std::string &bytes, uint64_t value, int count, bool isBigEndian) {
    for (int i = 0; i < count; ++i) {
        const int shift = 8 * (isBigEndian ? count - 1 - i : i);
        bytes += static_cast<char>(value >> shift);
    }
}

} // namespace

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

std::string lzmaStream(const std::string &text, std::string &properties) {
    lzma_options_lzma options;
    lzma_lzma_preset(&options, 6);
    options.dict_size = 1 << 18;
    const lzma_filter filters[] = {{LZMA_FILTER_LZMA1, &options}, {LZMA_VLI_UNKNOWN, nullptr}};
    properties.resize(5);
    lzma_properties_encode(filters, reinterpret_cast<uint8_t *>(properties.data()));
    std::string coded(text.size() + text.size() / 2 + 256, '\0');
    size_t size = 0;
    lzma_raw_buffer_encode(filters, nullptr, reinterpret_cast<const uint8_t *>(text.data()),
                           text.size(), reinterpret_cast<uint8_t *>(coded.data()), &size,
                           coded.size());
    coded.resize(size);
    return coded;
}

std::string imageOf(uint32_t blockLength, const std::string &block) {
    std::string image;
    append(image, blockLength, 4, true);
    return image + block;
}

std::string packImage(const std::string &text, uint64_t declared) {
    std::string properties;
    const std::string coded = lzmaStream(text, properties);
    std::string block(1, '\0');
    block += properties;
    append(block, declared == UINT64_MAX ? text.size() : declared, 8, false);
    block += coded;
    return imageOf(static_cast<uint32_t>(block.size()), block);
}
