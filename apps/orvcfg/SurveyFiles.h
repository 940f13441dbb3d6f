#pragma once

#include <string>
#include <string_view>

namespace orv::cfg {

class Session;

/// Opens the installation and reads the file of the chosen project as it stands, without signing or repairing it: what
/// the commands on survey files need to know where such files lie. False after a problem has been told.
bool OpenProjectFolder(Session& session);

/// The path that an argument means: a path as it is, or the name of a file of the type in its folder of the project.
std::wstring SurveyFilePath(unsigned fileType, std::string_view argument);

/// Puts what a command has made into a file, or on the output if none is named. False after a problem has been told.
bool WriteResult(Session& session, const std::string& file, std::string_view bytes);

}  // namespace orv::cfg
