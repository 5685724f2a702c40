// What a piece of code prints on standard output.
#pragma once

#include <string>
#include <vector>

class CapturedOutput {
public:
    CapturedOutput();
    ~CapturedOutput();
    CapturedOutput(const CapturedOutput &) = delete;
    CapturedOutput &operator=(const CapturedOutput &) = delete;

    // Everything printed so far; capturing ends.
    std::string take();

private:
    void restore();

    int saved_;
    int file_;
};

template <class Action>
std::string outputOf(Action action) {
    CapturedOutput output;
    action();
    return output.take();
}

// The XML library's lines as "function: message", without the source line. A line of another form
// is kept as it is, so that a comparison shows it.
std::vector<std::string> libraryLines(const std::string &output);

template <class Action>
std::vector<std::string> linesOf(Action action) {
    return libraryLines(outputOf(action));
}

using Lines = std::vector<std::string>;
