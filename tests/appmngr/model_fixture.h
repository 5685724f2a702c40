// Loads documents into the model, shows it as text and takes it down again.
#pragma once

#include "appmngr/appmngr_internal.h"
#include "tests/support/capture.h"
#include "tests/support/cases.h"
#include "tests/support/images.h"

#include <string>

class Model : public testing::Test {
protected:
    void SetUp() override { reset(); }
    void TearDown() override { reset(); }

    // Loads a document the way a load does once it has the text; what it printed is in `printed`.
    int load(std::string document) {
        reset();
        int result = -1;
        printed = outputOf([&] {
            g_appmngr_appDbXml = document.data();
            result = appmngr_analyzeDbFile();
            g_appmngr_appDbXml = nullptr;
        });
        return result;
    }

    std::string printed;

private:
    static void reset() {
        outputOf([] { appmngr_dbReInit(); });
    }
};

// "protocol address:port address:port".
std::string endpoints(const APPMNGR_RULE &rule);

// The header and every record, a line for each.
std::string modelText();
