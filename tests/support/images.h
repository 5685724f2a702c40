// Database documents and images for tests.
#pragma once

#include <cstdint>
#include <string>

// The smallest document that loads, with `apps` in place of its one application and `types` in
// place of its one type where these are given.
std::string smallDocument(const std::string &apps = "", const std::string &types = "");

// One application with an identifier, a name and a rule with one tuple, and `more` inside it.
std::string appElement(int id, const std::string &name, const std::string &more = "");

// The image of a text whose declared size is `declared`, by default that of the text.
std::string packImage(const std::string &text, uint64_t declared = UINT64_MAX);

std::string bigEndian(uint32_t value);
