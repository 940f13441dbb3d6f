#include "geoid/VdatumGrids.h"

#include "core/ConfigKeys.h"
#include "geoid/TextScan.h"
#include "platform/os/FileTools.h"
#include "platform/text/Format.h"
#include "platform/text/PathText.h"

namespace orv {

namespace {

// Names are found anywhere behind the point and as long as the member has nothing yet, so the first value stands.
void TakeNumber(std::string_view rest, std::string_view name, std::string_view value, double& member) {
    if (member == 0.0 && rest.find(name) != rest.npos) TextScan(value).Real(member);
}

void TakeText(std::string_view rest, std::string_view name, std::string_view value, std::wstring& member) {
    if (member.empty() && rest.find(name) != rest.npos) member = GridText(value);
}

}  // namespace

std::vector<VdatumGrid> ReadInf(std::wstring_view folder, std::string_view text) {
    std::vector<VdatumGrid> list;
    VdatumGrid record;
    const auto finish = [&] {
        if (!record.source.empty()) {
            record.fileName = std::wstring(folder) + ToNativePath(record.source);
            list.push_back(std::move(record));
        }
        record = {};
    };
    std::string_view line, key;
    while (NextLine(text, line)) {
        const std::size_t point = line.find('.'), equals = line.find('=');
        if (point == line.npos || equals == line.npos) continue;
        if (line.substr(0, point) != key) finish();
        key = line.substr(0, point);
        const std::string_view rest = line.substr(point + 1), value = line.substr(equals + 1);
        TakeNumber(rest, "maxlat", value, record.north);
        TakeNumber(rest, "maxlon", value, record.east);
        TakeNumber(rest, "minlat", value, record.south);
        TakeNumber(rest, "minlon", value, record.west);
        TakeText(rest, "source", value, record.source);
        TakeText(rest, "description", value, record.description);
    }
    finish();
    return list;
}

bool ReadInfFile(std::wstring_view folder, const std::wstring& infPath, std::vector<VdatumGrid>& list) {
    list.clear();
    std::string text;
    if (ReadWholeFile(infPath, text) != FsResult::Ok) return false;
    list = ReadInf(folder, text);
    return true;
}

bool VdatumGrid::Load() {
    if (grid) return true;
    GridFileInfo info;
    auto read = std::make_shared<GtxGrid>();
    status = ReadGtx(fileName, info, *read);
    error = info.error;
    longitudeStep = read->longitudeStep;
    latitudeStep = read->latitudeStep;
    west = read->west;
    east = read->east;
    south = read->south;
    north = read->north;
    if (status == kGeoidOk) grid = std::move(read);
    return status == kGeoidOk;
}

void DropUnused(std::vector<VdatumGrid>& list, double now) {
    for (VdatumGrid& held : list) {
        if (held.grid && now - held.lastUse >= kVdatumKeptMilliseconds) held.grid.reset();
    }
}

std::wstring VdatumFolder() {
    const std::wstring folder = GeoidFolder(kLocationCommon);
    return folder.empty() ? folder : folder + L"vdatum" + kPathSeparator;
}

std::wstring VdatumMessage(std::wstring_view files, std::wstring_view folder) {
    return FormatTexts(
        L"Failed to find file(s):\n\"%s\"\n\n"
        L"Download the NOAA Vertical Datum Transformation model files from: \"the publisher's site\"\n\n"
        L"Unzip the files and copy to folder:\n%s\n\n",
        {files, folder});
}

}  // namespace orv
