#pragma once

#include "platform/os/FileSystem.h"

namespace orv::cfg {

/// While it lives nothing on disk changes: the library signs, completes and converts files as it opens them, and who
/// comes to find out what is wrong must leave the evidence as it lies. Reading goes on as ever; what would write is
/// refused as it is on a read-only disk.
class LookOnly {
public:
    LookOnly();
    ~LookOnly();
    LookOnly(const LookOnly&) = delete;
    LookOnly& operator=(const LookOnly&) = delete;
    static bool InForce();
};

}  // namespace orv::cfg
