// The applications and the types of a database.

#include "tools/database.h"
#include "tools/subcommands.h"
#include "tools/table.h"

#include <algorithm>

namespace {

bool isMember(const APPMNGR_APPTYPE &type, int32_t appId) {
    return appId >= 0 && appmngr_bitmap_test(type.appBitmap, static_cast<uint32_t>(appId)) != 0;
}

std::vector<int32_t> typesOf(const Database &database, int32_t appId) {
    std::vector<int32_t> ids;
    for (const APPMNGR_APPTYPE &type : database.types()) {
        if (isMember(type, appId)) {
            ids.push_back(type.id);
        }
    }
    return ids;
}

std::vector<int32_t> membersOf(const APPMNGR_APPTYPE &type) {
    std::vector<int32_t> ids;
    for (int32_t id = 0; id < APPMNGR_APP_BITMAP_BITS; ++id) {
        if (isMember(type, id)) {
            ids.push_back(id);
        }
    }
    return ids;
}

template <class Record>
Cell countOf(std::span<const Record> records, int32_t appId) {
    return numberCell(std::count_if(records.begin(), records.end(), [appId](const Record &record) {
        return record.appid == appId;
    }));
}

} // namespace

int listCommand(const Arguments &arguments) {
    const auto database = loadDatabase(arguments);
    if (!database) {
        return 1;
    }
    Table table = {"applications", {"id", "name", "visible", "types", "rules", "keywords"}, {}};
    for (const APPMNGR_APP &app : database->apps()) {
        table.rows.push_back({numberCell(app.id), textCell(app.name), numberCell(app.visible),
                              numbersCell(typesOf(*database, app.id)),
                              countOf(database->rules(), app.id),
                              countOf(database->keywords(), app.id)});
    }
    printTable(arguments, database->name(), table);
    return 0;
}

int typesCommand(const Arguments &arguments) {
    const auto database = loadDatabase(arguments);
    if (!database) {
        return 1;
    }
    Table table = {"types", {"id", "name", "members"}, {}};
    for (const APPMNGR_APPTYPE &type : database->types()) {
        table.rows.push_back(
            {numberCell(type.id), textCell(type.name), numbersCell(membersOf(type))});
    }
    printTable(arguments, database->name(), table);
    return 0;
}
