// The text in a database image, both ways.
#pragma once

#include "tools/input.h"

#include <cstdint>
#include <optional>
#include <string>

struct ImageHeader {
    uint32_t blockLength;
    uint32_t lc;
    uint32_t lp;
    uint32_t pb;
    uint32_t dictionarySize;
    uint32_t textSize;
};

// What stands before the LZMA stream. Nothing, after a line on standard error, for what is no image.
std::optional<ImageHeader> readImageHeader(const Input &image);

// The text in an image. Nothing, after a line on standard error, when it can't be decoded whole.
std::optional<std::string> decodeText(const Input &image);

// Reads a document that an image may carry, and makes the image. Both tell on standard error why they
// give nothing.
std::optional<Input> readDocument(const char *path);
bool canBeCarried(const Input &document);
std::optional<std::string> encodeImage(const Input &document);
