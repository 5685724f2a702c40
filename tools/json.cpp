#include "tools/json.h"

#include "tools/text.h"

#include <array>
#include <cstdio>

namespace {

std::string listed(const std::vector<std::string> &parts, std::string_view separator) {
    std::string text;
    for (const std::string &part : parts) {
        text.append(text.empty() ? "" : separator).append(part);
    }
    return text;
}

std::string escaped(char c) {
    if (c == '"' || c == '\\') {
        return {'\\', c};
    }
    std::array<char, 8> form;
    std::snprintf(form.data(), form.size(), "\\u%04x", static_cast<unsigned char>(c));
    return form.data();
}

} // namespace

std::string jsonText(std::string_view text) {
    std::string json = "\"";
    while (!text.empty()) {
        const Character character = firstCharacter(text);
        if (!character.isValid) {
            json += "\xEF\xBF\xBD";
        } else if (character.code < 0x20 || character.code == '"' || character.code == '\\') {
            json += escaped(text[0]);
        } else {
            json += text.substr(0, character.length);
        }
        text.remove_prefix(character.length);
    }
    return json + '"';
}

std::string jsonObject(const JsonMembers &members) {
    std::vector<std::string> parts;
    for (const auto &[name, value] : members) {
        parts.push_back(jsonText(name) + ": " + value);
    }
    return joined({"{", listed(parts, ", "), "}"});
}

std::string jsonArray(const std::vector<std::string> &elements) {
    return joined({"[", listed(elements, ", "), "]"});
}

std::string jsonLines(const std::vector<std::string> &elements) {
    return elements.empty() ? "[]" : joined({"[\n  ", listed(elements, ",\n  "), "\n]"});
}
