// tests/Examples/Result.h: what a program says when it runs in the process of the test.
#pragma once

#include <ostream>
#include <sstream>
#include <string>

struct Result
{
    int status;
    std::string output;
    std::string errors;

    bool operator==(const Result&) const = default;
};

inline void PrintTo(const Result& result, std::ostream* out)
{
    *out << result.status << "\n" << result.output << result.errors;
}

// Runs the program, which gets the streams that it writes to and gives its exit status.
template <class T_Program>
Result ResultOf(T_Program program)
{
    std::ostringstream output;
    std::ostringstream errors;
    const int status = program(output, errors);
    return {status, output.str(), errors.str()};
}
