#pragma once

#include <string>

#include "platform/Export.h"

namespace orv {

/// What a user sees of a log, with the run line to edit. The caller gives the values as they are to be shown, and saves
/// a changed run line by `LogFileName::SaveRunlineName`. Main thread.
class ORV_EXPORT LogFileInfoDialog {
public:
    std::wstring orvVersion, fileVersion, vessel, surveyType, runline, logStartTime, replayStartTime;

    /// A labelled value a line.
    std::wstring Text() const;
    /// Takes over the text of the edit field as the run line that is shown.
    void Apply(const std::wstring& editedRunline);
    bool IsChanged() const { return changed; }

private:
    bool changed = false;
};

}  // namespace orv
