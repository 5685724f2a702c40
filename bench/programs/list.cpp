// velda-bench-list IMAGE LIST: the list of applications by pugixml, on the shortest road there is.

#include "bench/programs/image.h"

#include <pugixml.hpp>

#include <cstdio>
#include <string>

namespace {

void addChild(std::string &list, pugi::xml_node element, const char *name, char end) {
    list.append(element.child(name).child_value()) += end;
}

bool writeList(const std::string &list, const char *path) {
    FILE *file = std::fopen(path, "wb");
    if (file == nullptr) {
        return false;
    }
    std::setvbuf(file, nullptr, _IONBF, 0); // one write
    const bool written = std::fwrite(list.data(), 1, list.size(), file) == list.size();
    return std::fclose(file) == 0 && written;
}

} // namespace

int main(int argc, char **argv) {
    static uint8_t text[IMAGE_TEXT_ROOM];
    pugi::xml_document document;
    const size_t size = argc == 3 ? readImage(argv[1], text) : 0;
    if (size == 0 ||
        !document.load_buffer_inplace(text, size, pugi::parse_minimal | pugi::parse_escapes,
                                      pugi::encoding_utf8)) {
        return 1;
    }
    const pugi::xml_node database = document.child("AppDB");
    std::string list;
    list.reserve(size / 8);
    addChild(list, database, "ver", '\n');
    for (const pugi::xml_node app : database.child("appList").children("app")) {
        addChild(list, app, "id", ':');
        addChild(list, app, "name", '\n');
    }
    return writeList(list, argv[2]) ? 0 : 1;
}
