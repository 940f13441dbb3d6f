#pragma once

#include "platform/Export.h"

namespace orv {

/// The one switch of the multibeam displays that a project sets. Any thread.
class ORV_EXPORT Multibeam {
public:
    static void SetShowNoDetectionBeams(int show);
    static int GetShowNoDetectionBeams();
};

}  // namespace orv
