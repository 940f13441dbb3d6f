#pragma once

/// Marks what a host may use of the shared library; everything else stays hidden inside it.
#define ORV_EXPORT __attribute__((visibility("default")))
