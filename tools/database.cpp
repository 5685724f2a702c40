#include "tools/database.h"

#include "tools/complain.h"
#include "tools/text.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

namespace {

void toNowhere(const char *, void *) {}

// A model that is dropped tells so; nobody has asked.
void dropModel() {
    appmngr_setReport(toNowhere, nullptr);
    appmngr_dbReInit();
    appmngr_setReport(printReport, nullptr);
}

template <class Record>
std::vector<Record> copyOf(const Record *records, uint32_t count) {
    return records != nullptr ? std::vector<Record>(records, records + count)
                              : std::vector<Record>();
}

Database copyOfModel() {
    const APPMNGR_APPDB &model = *appmngr_getAppDb();
    const APPMNGR_APPDNS &dns = *appmngr_getAppDns();
    uint32_t appCount = 0;
    const APPMNGR_APP *apps = appmngr_getApps(&appCount);
    Database database;
    database.version = model.ver;
    database.model = model.proModel;
    database.expiry = model.expired;
    database.apps = copyOf(apps, appCount);
    database.types = copyOf(model.appType, model.appTypeCount);
    database.rules = copyOf(model.rule, model.ruleCount);
    database.keywords = copyOf(dns.rule, dns.count);
    return database;
}

} // namespace

void sendReportsToStandardError() {
    appmngr_setReport(printReport, nullptr);
    xmlp_setReport(printReport, nullptr);
}

std::optional<Input> readImage(const char *path) {
    return readInput(path, APPMNGR_IMAGE_SIZE);
}

bool loadModel(const Input &image) {
    if (appmngr_loadImage(image.bytes.data(), static_cast<uint32_t>(image.bytes.size())) != 0) {
        complain(image.name, "the database can't be loaded");
        return false;
    }
    return true;
}

std::optional<Database> loadDatabase(const Input &image) {
    if (!loadModel(image)) {
        return std::nullopt;
    }
    Database database = copyOfModel();
    database.name = image.name;
    dropModel();
    return database;
}

std::optional<Database> loadDatabase(const Arguments &arguments) {
    const auto image = readImage(arguments.files[0]);
    return image ? loadDatabase(*image) : std::nullopt;
}

std::string_view nameOf(const Database &database, int32_t appId) {
    const auto found = std::find_if(database.apps.begin(), database.apps.end(),
                                    [appId](const APPMNGR_APP &app) { return app.id == appId; });
    return found != database.apps.end() ? std::string_view(found->name) : std::string_view();
}

std::vector<int32_t> appsMeantBy(const Database &database, const char *app) {
    const std::string_view text = app;
    int32_t id = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), id);
    const bool isNumber = read.ec == std::errc() && read.ptr == text.data() + text.size();
    std::vector<int32_t> ids;
    for (const APPMNGR_APP &known : database.apps) {
        if ((isNumber && known.id == id) || text == known.name) {
            ids.push_back(known.id);
        }
    }
    if (ids.empty()) {
        complain(database.name, "no application \"" + shown(text) + "\"");
    }
    return ids;
}

AppFilter::AppFilter(const Database &database, const Arguments &arguments)
    : isOpen_(arguments.app == nullptr),
      ids_(isOpen_ ? std::vector<int32_t>() : appsMeantBy(database, arguments.app)) {}

bool AppFilter::passes(int32_t appId) const {
    return isOpen_ || std::find(ids_.begin(), ids_.end(), appId) != ids_.end();
}
