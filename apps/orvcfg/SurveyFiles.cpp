#include "SurveyFiles.h"

#include "Installation.h"
#include "Session.h"
#include "platform/os/FileTools.h"
#include "platform/text/CaseFold.h"
#include "platform/text/PathText.h"

namespace orv::cfg {

bool OpenProjectFolder(Session& session) {
    if (!OpenInstallation(session)) return false;
    const std::wstring name = ChosenProject(session);
    if (!HasProject(session, name)) return false;
    const std::wstring path = ProjectFile(name);
    if (DataSearch::GetDataSearch().GetProjectDefinition().FileObject::FileOpen(path, kOpenRead)) return true;
    session.Problem(PathToBytes(path), "The project can't be read", "See \"orvcfg config check\" of that file.");
    return false;
}

std::wstring SurveyFilePath(unsigned fileType, std::string_view argument) {
    std::wstring path = PathArgument(argument);
    if (path.find(kPathSeparator) != path.npos || FileExists(path)) return AbsolutePath(path);
    const DataSearch& search = DataSearch::GetDataSearch();
    std::wstring extension, found = path;
    if (search.GetFileExtension(fileType, extension) && EndsWithNoCase(found, extension)) {
        found.resize(found.size() - extension.size());
    }
    return search.GetFullPath(fileType, found) ? found : path;
}

bool WriteResult(Session& session, const std::string& file, std::string_view bytes) {
    if (file.empty() || file == "-") {
        session.out.Put(bytes);
        return true;
    }
    if (SaveWholeFile(PathArgument(file), bytes) == FsResult::Ok) {
        session.Detail("wrote " + file);
        return true;
    }
    session.Problem(file, "Can't be written", "Check that the folder is there and may be written to.");
    return false;
}

}  // namespace orv::cfg
