// Errors of a text as values, and reports in parts.

#include "tests/support/cases.h"
#include "tests/support/trees.h"

#include <cstring>

namespace {

struct Record {
    std::string function;
    std::string message;
    std::string text;
    int line = 0;
    uint32_t offset = 0;
};

void collect(const XMLP_REPORT_RECORD *record, void *records) {
    static_cast<std::vector<Record> *>(records)->push_back(
        {record->function, record->message, record->text, record->line, record->offset});
}

class Errors : public ::testing::Test {
protected:
    Errors() { xmlp_setReportRecord(collect, &records_); }
    ~Errors() override { xmlp_setReportRecord(nullptr, nullptr); }

    XMLP_ERROR errorOf(const std::string &text, uint32_t isStatic) {
        records_.clear();
        XMLP_ERROR error = {XMLP_ERROR_NO_MEMORY, 77, 77, 77, nullptr};
        const Doc doc(xmlp_loadDocWithError(text.c_str(), static_cast<uint32_t>(text.size()),
                                            isStatic, &error));
        EXPECT_EQ(doc != nullptr, error.code == XMLP_ERROR_NONE);
        return error;
    }

    std::vector<Record> records_;
};

TEST_F(Errors, HaveAPlace) {
    forEachCase("error-places.cases", [this](const Case &test) {
        const std::string text = test.text("text");
        for (const uint32_t isStatic : {0U, 1U}) {
            const XMLP_ERROR error = errorOf(text, isStatic);
            EXPECT_EQ(xmlp_errorName(error.code), "XMLP_ERROR_" + test.text("code"));
            EXPECT_EQ(error.offset, test.size("at"));
            EXPECT_EQ(error.line, test.number("line", 1));
            EXPECT_EQ(error.column, test.number("column", error.offset + 1));
            ASSERT_FALSE(records_.empty());
            const Record &first = records_.front();
            EXPECT_EQ(first.offset, error.offset);
            EXPECT_EQ(first.message, error.message);
            EXPECT_EQ(first.text, "[ERROR][" + first.function + "():" + std::to_string(first.line) +
                                      "]: " + error.message + "\r\n");
        }
    });
}

TEST_F(Errors, AreNoneForWhatIsAccepted) {
    const XMLP_ERROR error = errorOf("<a/>", 1);
    EXPECT_EQ(error.offset + error.line + error.column, 0u);
    EXPECT_STREQ(error.message, "");
    EXPECT_TRUE(records_.empty());
    EXPECT_STREQ(xmlp_errorName(0), "XMLP_ERROR_NONE");
    EXPECT_STREQ(xmlp_errorName(99), "ERROR NOT IN LIST");
}

TEST_F(Errors, NeedNoTextAndNoTaker) {
    XMLP_ERROR error = {};
    EXPECT_EQ(xmlp_loadDocWithError(nullptr, 3, 1, &error), nullptr);
    EXPECT_EQ(error.code, XMLP_ERROR_NO_TEXT);
    EXPECT_EQ(error.offset + error.line + error.column, 0u);
    ASSERT_EQ(records_.size(), 1u);
    EXPECT_EQ(records_[0].offset, XMLP_NO_OFFSET);
    EXPECT_EQ(xmlp_loadDocWithError("<a>", 3, 1, nullptr), nullptr);
}

TEST_F(Errors, OfACallThatTakesNoTextHaveNoOffset) {
    xmlp_seekXml(nullptr, "/");
    ASSERT_EQ(records_.size(), 1u);
    EXPECT_EQ(records_[0].function, "xmlp_seekXml");
    EXPECT_EQ(records_[0].offset, XMLP_NO_OFFSET);
}

} // namespace
