#include "xmlp/parse/name_predictor.h"

#include "xmlp/tree/node_type.h"

namespace velda::xmlp {

const PredictedName *NamePredictor::add(const char *name, size_t length) {
    constexpr uint64_t multiplier = 0x9E3779B97F4A7C15;
    const Block16 text = load16(name);
    const Block16 &mask = masks[length + 1];
    const Block16 words = {text.low & mask.low, text.high & mask.high};
    const uint64_t hash = (words.low ^ words.high * 31) * multiplier;
    PredictedName &known = places_[static_cast<size_t>(hash >> (64 - placeBits))];
    if (known.words.low != words.low || known.words.high != words.high) {
        size_t offset = 0;
        if (!names_.intern({name, length}, offset)) {
            isOutOfMemory_ = true;
            return nullptr;
        }
        const bool isItem = std::string_view(name, length) == itemName;
        const Children kind = isItem ? itemChildren : namedChildren;
        known = {words,
                 mask,
                 static_cast<uint32_t>(length),
                 static_cast<uint32_t>(offset),
                 name[length] == '>' ? kind : noChildren,
                 isItem,
                 name[length],
                 &none_,
                 &none_};
    }
    last_->alternate = std::exchange(last_->successor, &known);
    last_ = &known;
    return &known;
}

} // namespace velda::xmlp
