#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// Ends the process with a line that says what didn't hold.
#define REQUIRE(condition)                                                                    \
    do {                                                                                      \
        if (!(condition)) {                                                                   \
            std::fprintf(stderr, "%s:%d: %s doesn't hold\n", __FILE__, __LINE__, #condition); \
            std::abort();                                                                     \
        }                                                                                     \
    } while (false)
