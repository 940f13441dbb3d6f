#include "frontend/LogFileInfoDialog.h"

#include <string_view>
#include <utility>

namespace orv {

std::wstring LogFileInfoDialog::Text() const {
    const std::pair<std::wstring_view, const std::wstring&> lines[] = {
        {L" ORV version: ", orvVersion},
        {L" File version: ", fileVersion},
        {L" Vessel: ", vessel},
        {L" Survey type: ", surveyType},
        {L" Run line: ", runline},
        {L" Log start time: ", logStartTime},
        {L" Replay start time: ", replayStartTime},
    };
    std::wstring text;
    for (const auto& [label, value] : lines) {
        if (!text.empty()) text += L"\r\n";
        text += label;
        text += value;
    }
    return text;
}

void LogFileInfoDialog::Apply(const std::wstring& editedRunline) {
    runline = editedRunline;
    changed = true;
}

}  // namespace orv
