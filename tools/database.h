// A database as a load leaves it.
#pragma once

#include "appmngr/appmngr.h"
#include "tools/arguments.h"
#include "tools/input.h"

#include <optional>
#include <string>
#include <vector>

struct Database {
    std::string name; // of the file
    std::string version;
    std::string model;
    std::string expiry;
    std::vector<APPMNGR_APP> apps;
    std::vector<APPMNGR_APPTYPE> types;
    std::vector<APPMNGR_RULE> rules;
    std::vector<APPMNGR_DNS_RULE> keywords;
};

// Sends all that the libraries report to standard error.
void sendReportsToStandardError();

// Reads an image, as much of it as a load does.
std::optional<Input> readImage(const char *path);

// Loads an image into the module. False, after lines on standard error, when it can't be loaded.
bool loadModel(const Input &image);

// Loads an image and copies the model. Nothing, after lines on standard error, when it can't be
// loaded.
std::optional<Database> loadDatabase(const Input &image);

// Reads and loads the image that the arguments name.
std::optional<Database> loadDatabase(const Arguments &arguments);

// The name of the application with this identifier, or nothing.
std::string_view nameOf(const Database &database, int32_t appId);

// The identifiers of the applications that `app` means, by identifier or by name. Nothing, after a
// line on standard error, when there is none.
std::vector<int32_t> appsMeantBy(const Database &database, const char *app);

// Whether the arguments ask for what belongs to this application.
class AppFilter {
public:
    AppFilter(const Database &database, const Arguments &arguments);
    bool canPass() const { return isOpen_ || !ids_.empty(); }
    bool passes(int32_t appId) const;

private:
    bool isOpen_;
    std::vector<int32_t> ids_;
};
