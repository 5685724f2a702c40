// What a piece of code prints.
#pragma once

#include <gtest/gtest.h>
#include <regex>
#include <string>

template <class Action>
std::string outputOf(Action action) {
    testing::internal::CaptureStdout();
    action();
    return testing::internal::GetCapturedStdout();
}

template <class Action>
std::string errorsOf(Action action) {
    testing::internal::CaptureStderr();
    action();
    return testing::internal::GetCapturedStderr();
}

// The XML library's lines as "function: message", without the source line. A line of another form
// is kept as it is, so that a comparison shows it.
template <class Action>
std::string linesOf(Action action) {
    static const std::regex form(R"(\[ERROR\]\[(\w+)\(\):\d+\]: (.*)\r\n)");
    return std::regex_replace(outputOf(action), form, "$1: $2\n");
}
