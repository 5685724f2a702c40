// Loads documents into the model and takes it down again.
#pragma once

#include "appmngr/appmngr_internal.h"
#include "tests/support/capture.h"
#include "tests/support/images.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>

class Model : public testing::Test {
protected:
    void SetUp() override { appmngr_dbReInit(); }

    void TearDown() override {
        const CapturedOutput notice;
        appmngr_dbReInit();
    }

    // Loads a document the way a load does once it has the text; what it printed is in `printed`.
    int load(std::string document) {
        int result = -1;
        printed = outputOf([&] {
            appmngr_dbReInit();
            g_appmngr_appDbXml = document.data();
            result = appmngr_analyzeDbFile();
            g_appmngr_appDbXml = nullptr;
        });
        return result;
    }

    std::string printed;
};
