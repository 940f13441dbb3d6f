#include "geoid/GridReader.h"

#include "core/DataSearch.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"

namespace orv {

int GridFileInfo::NoDataInFile() {
    error = L"No data in file " + fileName;
    return kGeoidNoData;
}

std::wstring GeoidFolder(int location) {
    std::wstring folder;
    if (!DataSearch::GetDataSearch().GetDataPathInfo(location, folder)) folder.clear();
    return folder;
}

bool ReadGridFile(int location, std::wstring_view relative, GridFileInfo& info, std::string& bytes) {
    const std::wstring folder = GeoidFolder(location);
    if (!folder.empty()) return ReadGridFile(folder + ToNativePath(relative), info, bytes);
    // Without a folder the bare name would be looked for wherever the program happens to run.
    info = {};
    info.fileName = ToNativePath(relative);
    info.error = L"Failed to open file " + info.fileName;
    return false;
}

bool ReadGridFile(std::wstring path, GridFileInfo& info, std::string& bytes) {
    info = {};
    info.fileName = std::move(path);
    info.opened = ReadWholeFile(info.fileName, bytes) == FsResult::Ok;
    if (!info.opened) info.error = L"Failed to open file " + info.fileName;
    return info.opened;
}

}  // namespace orv
