#include "geoid/GridReader.h"

#include "core/DataSearch.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"

namespace orv {

namespace {

constexpr std::uint64_t kLongestGrid = std::uint64_t{1} << 36;  // far beyond any; memory is asked for by what is there

}  // namespace

int GridFileInfo::NoDataInFile() {
    error = L"No data in file " + fileName;
    return kGeoidNoData;
}

std::wstring GeoidFolder(int location) {
    std::wstring folder;
    if (!DataSearch::GetDataSearch().GetDataPathInfo(location, folder)) folder.clear();
    return folder;
}

bool GeoidPath(int location, std::wstring_view relative, std::wstring& path) {
    const std::wstring folder = GeoidFolder(location);
    path = folder + ToNativePath(relative);
    return !folder.empty();
}

bool ReadGridFile(int location, std::wstring_view relative, GridFileInfo& info, std::string& bytes) {
    std::wstring path;
    if (GeoidPath(location, relative, path)) return ReadGridFile(std::move(path), info, bytes);
    info = {};
    info.fileName = std::move(path);
    info.error = L"Failed to open file " + info.fileName;
    return false;
}

bool ReadGridFile(std::wstring path, GridFileInfo& info, std::string& bytes) {
    info = {};
    info.fileName = std::move(path);
    info.opened = ReadWholeFile(info.fileName, bytes, Share::DenyWrite, kLongestGrid) == FsResult::Ok;
    if (!info.opened) info.error = L"Failed to open file " + info.fileName;
    return info.opened;
}

std::size_t ReadAt(File& file, std::uint64_t offset, std::span<std::byte> out) {
    if (file.Seek(offset) != FsResult::Ok) return 0;
    std::size_t done = 0;
    while (done < out.size()) {
        std::size_t got = 0;
        if (file.Read(out.data() + done, out.size() - done, got) != FsResult::Ok || got == 0) break;
        done += got;
    }
    return done;
}

}  // namespace orv
