#pragma once

#include <string_view>

namespace orv::cfg {

/// Makes what a day of survey leaves in the open project: a week of made-up tide at a gauge, and a log of a line that
/// holds its header only. False if a file can't be written.
bool PutSampleSurvey(std::wstring_view vessel, std::wstring_view surveyType);

}  // namespace orv::cfg
