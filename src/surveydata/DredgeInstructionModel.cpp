#include "surveydata/DredgeInstructionModel.h"

#include "core/CFileTypeList.h"
#include "core/FileObject.h"
#include "platform/notify/Exceptions.h"
#include "platform/os/Clock.h"
#include "platform/os/FileSystem.h"
#include "platform/text/NumberText.h"
#include "project/FileDependencies.h"  // fills its list

namespace orv {

namespace {

constexpr std::wstring_view kSection = L"Dredge Instruction", kTracksSection = L"Historical Tracks";
constexpr std::wstring_view kDesign3DKey = L"3DDesignModel", kDesignTypeKey = L"DesignModelType",
                            kDesignNameKey = L"DesignModelName", kDescriptionKey = L"Description";
constexpr std::wstring_view kLineEnd = L"\r\n", kLineEndInFile = L"\\n";

std::wstring Replaced(std::wstring text, std::wstring_view from, std::wstring_view to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::wstring::npos; at += to.size()) {
        text.replace(at, from.size(), to);
    }
    return text;
}

}  // namespace

// ---- reading

bool DredgeInstructionModel::FileOpen(const FileObject& file) {
    initialised = true;
    FileStatus status;
    if (!file.GetFileName().empty() && Files().Status(file.GetFileName(), status) == FsResult::Ok && status.exists) {
        instructionTime = CExTime::ConvertCTime(status.modified);
    }
    try {
        ReadItems(file);
    } catch (const CException&) {
        // What was read stays.
    } catch (const std::wstring&) {
        // The same, from a file object that was told to throw.
    }
    return true;
}

void DredgeInstructionModel::ReadItems(const FileObject& file) {
    if (!file.HasSection(kSection)) return;
    const auto get = [&](std::wstring_view key, auto& member) { return file.GetItem(kSection, key, member); };
    get(L"OrderNummer", orderNummer);
    get(L"GridModel", surveyGridModelName);
    if (file.HasKey(kSection, kDesign3DKey)) {
        get(kDesign3DKey, designModelName);
        designModelType = kFileTypeDesignModel3D;
    } else {
        designModelTypeKey = GetFileKeyForType(kFileTypeDesignModel3D);
        if (file.HasKey(kSection, kDesignTypeKey)) get(kDesignTypeKey, designModelTypeKey);
        designModelType = GetFileTypeForKey(designModelTypeKey);
        get(kDesignNameKey, designModelName);
    }
    get(L"DepthOffset", depthOffset);
    get(L"DredgePolygon", dredgePolygonName);
    get(L"UseUpdateGridModel", useUpdateGridModel);
    get(L"UpdateGridModel", surveyUpdateGridModelName);
    get(L"DesignUpdateGridModel", designUpdateGridModelName);
    if (std::wstring text; get(kDescriptionKey, text)) description = Replaced(text, kLineEndInFile, kLineEnd);
    get(L"Class", className);
    get(L"DisposalPolygon", disposalPolygonName);
    get(L"UseHistoricalTracks", useHistoricalTracks);
    get(L"HTStartDateTimeStamp", trackStart);
    get(L"HTEndDateTimeStamp", trackEnd);
    get(L"HTFileName", trackFileName);

    FobjSection cursor;
    std::wstring key, name;
    for (bool more = file.GetFirstMapEntry(cursor, kTracksSection, key, name); more;
         more = file.GetNextMapEntry(cursor, key, name)) {
        trackNames.push_back(name);
    }
}

// ---- writing

bool DredgeInstructionModel::FileSave(FileObject& file) const {
    file.MakeEmpty();
    if (!file.CreateSection(kSection, true)) return false;
    const auto set = [&](std::wstring_view key, const auto& member) { file.SetItem(kSection, key, member, true); };
    set(L"OrderNummer", orderNummer);
    set(L"GridModel", surveyGridModelName);
    if (designModelType == kFileTypeDesignModel3D) {
        set(kDesign3DKey, designModelName);
    } else {
        set(kDesignTypeKey, designModelType == kNoFileType ? designModelTypeKey : GetFileKeyForType(designModelType));
        set(kDesignNameKey, designModelName);
    }
    set(L"DepthOffset", depthOffset);
    set(L"DredgePolygon", dredgePolygonName);
    set(L"UseUpdateGridModel", useUpdateGridModel);
    set(L"UpdateGridModel", surveyUpdateGridModelName);
    set(L"DesignUpdateGridModel", designUpdateGridModelName);
    set(kDescriptionKey, Replaced(description, kLineEnd, kLineEndInFile));
    set(L"Class", className);
    set(L"DisposalPolygon", disposalPolygonName);
    set(L"UseHistoricalTracks", useHistoricalTracks);
    set(L"HTStartDateTimeStamp", trackStart);
    set(L"HTEndDateTimeStamp", trackEnd);
    set(L"HTFileName", trackFileName);
    for (std::size_t number = 0; number < trackNames.size(); ++number) {
        const std::wstring key = L"Vessel(" + IntText(static_cast<std::int64_t>(number)) + L")";
        file.SetItem(kTracksSection, key, trackNames[number], true);
    }
    return true;
}

// ---- what it needs

void DredgeInstructionModel::GetDependencies(const std::wstring& path, FileDependencies& dependencies) {
    FileObject file;
    DredgeInstructionModel model;
    if (!file.FileOpen(path, kOpenRead) || !model.FileOpen(file)) return;
    // A grid that is updated while dredging takes the place of the design, and of the survey, that it was made from.
    if (model.useUpdateGridModel && model.designModelType == kFileTypeDigitalTerrainModel) {
        dependencies.Add(kFileTypeDigitalTerrainModel, model.designUpdateGridModelName);
    } else {
        dependencies.Add(model.designModelType, model.designModelName);
    }
    dependencies.Add(kFileTypeDigitalTerrainModel,
                     model.useUpdateGridModel ? model.surveyUpdateGridModelName : model.surveyGridModelName);
    dependencies.Add(kFileTypePolyClip, model.dredgePolygonName);
    dependencies.Add(kFileTypePolyClip, model.disposalPolygonName);
    if (model.useHistoricalTracks) dependencies.Add(kFileTypeDredgeTrackRaw, model.trackFileName);
}

}  // namespace orv
