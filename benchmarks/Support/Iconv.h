// benchmarks/Support/Iconv.h: the C library's converter as a side.
#pragma once

#include <iconv.h>

#include <cstddef>
#include <memory>

// A converter that is kept; all of the input at once.
class Iconv
{
public:
    Iconv(const char* to, const char* from) : handle(iconv_open(to, from), iconv_close) {}

    template <class In, class Out>
    size_t Convert(const In& in, Out& out) const
    {
        char* input = const_cast<char*>(reinterpret_cast<const char*>(in.data()));
        char* output = reinterpret_cast<char*>(out.data());
        size_t inputLeft = in.size() * sizeof(in[0]);
        size_t outputLeft = out.size() * sizeof(out[0]);
        iconv(handle.get(), nullptr, nullptr, nullptr, nullptr);
        iconv(handle.get(), &input, &inputLeft, &output, &outputLeft);
        // What ends a run of UTF-7, and what is held back to be composed.
        iconv(handle.get(), nullptr, nullptr, &output, &outputLeft);
        return out.size() - outputLeft / sizeof(out[0]);
    }

private:
    std::shared_ptr<void> handle;
};
