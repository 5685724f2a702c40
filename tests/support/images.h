// Database documents and images for tests.
#pragma once

#include <cstdint>
#include <string>

// The smallest document that loads, with `apps` in place of its one application and `types` in
// place of its one type where these are given.
std::string smallDocument(const std::string &apps = "", const std::string &types = "");

// One application with an identifier, a name and a rule with one tuple, and `more` inside it.
std::string appElement(int id, const std::string &name, const std::string &more = "");

// The LZMA stream of a text, with the decoder's properties (5 bytes) in `properties`.
std::string lzmaStream(const std::string &text, std::string &properties);

// An image of a text whose declared size is `declared`, by default that of the text.
std::string packImage(const std::string &text, uint64_t declared = UINT64_MAX);

// An image with this block length field and block.
std::string imageOf(uint32_t blockLength, const std::string &block);
