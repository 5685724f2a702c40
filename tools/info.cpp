// What a database is, and how much more would go into its image.

#include "tools/database.h"
#include "tools/image_text.h"
#include "tools/messages.h"
#include "tools/subcommands.h"
#include "tools/table.h"

#include <array>
#include <cstdio>

namespace {

std::string decimal(double number, int places) {
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), "%.*f", places, number);
    return text.data();
}

// "2075 of 65532 bytes (3.2 %)"
Cell shareCell(uint32_t part, uint32_t whole) {
    Cell cell = numberCell(part);
    cell.shown +=
        " of " + std::to_string(whole) + " bytes (" + decimal(100.0 * part / whole, 1) + " %)";
    return cell;
}

Table tableOf(const Database &database, const ImageHeader &header) {
    const auto count = [](const auto &records) {
        return numberCell(static_cast<int64_t>(records.size()));
    };
    const std::string ratio = decimal(static_cast<double>(header.textSize) / header.blockLength, 2);
    return {"database",
            {"version", "model", "expires", "applications", "types", "rules", "keywords", "image",
             "text", "ratio", "lc", "lp", "pb", "dictionary"},
            {{textCell(database.header().ver), textCell(database.header().proModel),
              textCell(database.header().expired), count(database.apps()), count(database.types()),
              count(database.rules()), count(database.keywords()),
              shareCell(header.blockLength, APPMNGR_BLOCK_SIZE_MAX),
              shareCell(header.textSize, APPMNGR_DB_XML_SIZE - 1), Cell{ratio, ratio, true},
              numberCell(header.lc), numberCell(header.lp), numberCell(header.pb),
              numberCell(header.dictionarySize)}}};
}

} // namespace

int infoCommand(const Arguments &arguments) {
    const auto image = readImage(arguments.files[0]);
    const auto header = image ? readImageHeader(*image) : std::nullopt;
    const auto database = header ? loadDatabase(*image) : std::nullopt;
    if (!database) {
        return 1;
    }
    const Table table = tableOf(*database, *header);
    if (arguments.wantsJson) {
        printTable(arguments, image->name, table);
        return 0;
    }
    for (size_t i = 0; i < table.columns.size(); ++i) {
        std::string label(table.columns[i]);
        label.resize(14, ' ');
        printLine(Style::plain, label + table.rows[0][i].shown);
    }
    return 0;
}
