// A tide station's files: opening, saving, and which months there are.

#include <utility>

#include "core/ConfigKeys.h"
#include "core/DataSearch.h"
#include "platform/os/FileTools.h"
#include "platform/text/CaseFold.h"
#include "platform/text/PathText.h"
#include "platform/watch/SubscriptionManager.h"
#include "surveydata/TideStation.h"

namespace orv {

bool TideStation::FileOpen(const std::wstring& path) {
    const Lock lock(mutex);
    if (openCount < 1) {
        if (!Open(path)) return false;
        subscription.Subscribe(path);
    }
    ++openCount;
    return true;
}

bool TideStation::Open(const std::wstring& path) {
    std::string bytes;
    if (ReadWholeFile(path, bytes, Share::DenyWrite, 1 << 20) != FsResult::Ok) return false;
    // What the file doesn't tell stays: old files lack the flags, and one that breaks off must not cost the offset.
    TideStationData read = station;
    const TideStationRead result = ParseTideStation(std::as_bytes(std::span(bytes)), read);
    station = std::move(read);
    filePath = path;
    fileTitle = GetTitleFromPath(path);
    if (result == TideStationRead::Empty) modified = true;
    if (result != TideStationRead::Complete) return true;
    ScanForTideFiles();
    cursor = index.begin();
    modified = false;
    return true;
}

int TideStation::FileClose(bool save) {
    const Lock lock(mutex);
    if (openCount > 1) {
        if (save) FileSave();
        return --openCount;
    }
    Close(save);
    filePath.clear();
    fileTitle.clear();
    subscription.Unsubscribe();
    openCount = 0;
    return 0;
}

void TideStation::Close(bool save) {
    if (save) FileSave();
    for (auto& [start, info] : index) {
        if (info.file) info.file->FileClose(save);  // also when the station itself couldn't be saved
    }
    index.clear();
    cursor = index.end();
    valueCount = 0;
}

bool TideStation::FileSave() {
    const Lock lock(mutex);
    if (openCount < 1) return false;
    if (modified && !WriteFile()) return false;
    modified = false;
    bool saved = true;
    for (auto& [start, info] : index) saved = (!info.file || info.file->FileSave()) && saved;
    Notify();
    return saved;
}

bool TideStation::WriteFile() {
    subscription.Unsubscribe();  // or it would be told of its own save
    if (SaveWholeFile(filePath, TideStationBytes(station)) != FsResult::Ok) return false;
    subscription.Subscribe(filePath);
    return true;
}

void TideStation::OnTidestationfileUpdate() {
    const Lock lock(mutex);
    if (openCount < 1) return;
    Close(false);
    Open(std::wstring(filePath));
    Notify();
}

void TideStation::Notify() const {
    SubscriptionManager::Instance().Notify(kNotifyCode, GetStationID());
}

void TideStation::ScanForTideFiles() {
    index.clear();
    valueCount = 0;
    const DataSearch& search = DataSearch::GetDataSearch();
    std::wstring folder, extension;
    if (!search.GetFilePath(kFileTypeTideFile, folder) || !search.GetFileExtension(kFileTypeTideFile, extension)) {
        return;
    }
    const std::wstring prefix = ToLower(fileTitle) + L"_";
    for (const FolderEntry& entry : FindFiles(folder, prefix + L"*" + extension)) {
        const std::wstring title = GetTitleFromPath(entry.name);
        TIDEFILEINFO info;
        TideSpan span;
        FileStatus status;
        if (entry.isFolder || !EqualNoCase(title.substr(0, prefix.size()), prefix) ||
            !ParseTideFileTitle(title, span)) {
            continue;
        }
        info.path = folder + entry.name;
        info.startTime = span.start;
        info.endTime = span.end;
        if (Files().Status(info.path, status) == FsResult::Ok) {
            info.numValues = static_cast<int>(static_cast<std::uint32_t>(status.size / TideFile::kRecordSize));
        }
        index[span.start] = std::move(info);
    }
    for (const auto& [start, info] : index) valueCount += info.numValues;
}

}  // namespace orv
