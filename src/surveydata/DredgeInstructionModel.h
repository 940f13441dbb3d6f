#pragma once

#include <string>
#include <vector>

#include "core/ConfigKeys.h"
#include "platform/Export.h"

namespace orv {

class FileDependencies;
class FileObject;

/// The order under which a dredger works: which survey grid and design, which areas to dredge and to dispose in, which
/// older tracks to show. Names only; what each names is found by its file type. See docs/formats/dri.md. A value: one
/// thread at a time.
class ORV_EXPORT DredgeInstructionModel {
public:
    virtual ~DredgeInstructionModel() = default;

    /// Takes over what the file holds; a key that is missing leaves its member as it was, and tracks are added to those
    /// that are there. True for a file without an instruction too, and for as much as could be read.
    bool FileOpen(const FileObject& file);
    /// Writes all keys into `file`, emptied first. False only if it can't hold an instruction at all.
    bool FileSave(FileObject& file) const;
    /// Adds the files that the instruction at `path` needs; nothing if it can't be opened.
    static void GetDependencies(const std::wstring& path, FileDependencies& dependencies);

    bool IsInit() const { return initialised; }  ///< a file has been read

    const std::wstring& GetOrderNummer() const { return orderNummer; }
    void SetOrderNummer(const std::wstring& text) { orderNummer = text; }
    const std::wstring& GetSurveyGridModelName() const { return surveyGridModelName; }
    void SetSurveyGridModelName(const std::wstring& name) { surveyGridModelName = name; }
    unsigned GetDesignModelType() const { return designModelType; }
    void SetDesignModelType(unsigned fileType) {
        designModelType = fileType;
        designModelTypeKey.clear();
    }
    const std::wstring& GetDesignModelName() const { return designModelName; }
    void SetDesignModelName(const std::wstring& name) { designModelName = name; }
    double GetDepthOffset() const { return depthOffset; }
    void SetDepthOffset(double offset) { depthOffset = offset; }
    const std::wstring& GetDredgePolygonName() const { return dredgePolygonName; }
    void SetDredgePolygonName(const std::wstring& name) { dredgePolygonName = name; }
    const std::wstring& GetDescriptionName() const { return description; }  ///< lines end in "\r\n"
    void SetDescriptionName(const std::wstring& text) { description = text; }
    const std::wstring& GetClassName() const { return className; }
    void SetClassName(const std::wstring& name) { className = name; }
    const std::wstring& GetDisposalPolygonName() const { return disposalPolygonName; }
    void SetDisposalPolygonName(const std::wstring& name) { disposalPolygonName = name; }
    const std::wstring& GetHTFileName() const { return trackFileName; }
    void SetHTFileName(const std::wstring& name) { trackFileName = name; }
    const std::vector<std::wstring>& GetHistoricalTrackNames() const { return trackNames; }
    void SetHistoricalTrackNames(const std::vector<std::wstring>& names) { trackNames = names; }
    bool GetUseUpdateGridModel() const { return useUpdateGridModel; }
    void SetUseUpdateGridModel(bool use) { useUpdateGridModel = use; }
    const std::wstring& GetSurveyUpdateGridModelName() const { return surveyUpdateGridModelName; }
    void SetSurveyUpdateGridModelName(const std::wstring& name) { surveyUpdateGridModelName = name; }
    const std::wstring& GetDesignUpdateGridModelName() const { return designUpdateGridModelName; }
    void SetDesignUpdateGridModelName(const std::wstring& name) { designUpdateGridModelName = name; }
    bool GetUseHistoricalTracks() const { return useHistoricalTracks; }
    void SetUseHistoricalTracks(bool use) { useHistoricalTracks = use; }
    // What the applications make of these times is theirs; here they are passed through.
    double GetHTStartDateTime() const { return trackStart; }
    void SetHTStartDateTime(double time) { trackStart = time; }
    double GetHTEndDateTime() const { return trackEnd; }
    void SetHTEndDateTime(double time) { trackEnd = time; }
    /// When the file read was last written, in milliseconds since 1970 UTC; 0 if unknown.
    double GetInstructionDateTime() const { return instructionTime; }

private:
    void ReadItems(const FileObject& file);

    bool initialised = false;
    std::wstring orderNummer, surveyGridModelName;
    unsigned designModelType = kFileTypeDesignModel3D;
    std::wstring designModelTypeKey;  // as read; what a later version of the suite wrote isn't lost by a save
    std::wstring designModelName;
    double depthOffset = 0;
    std::wstring dredgePolygonName, description, className, disposalPolygonName, trackFileName;
    std::vector<std::wstring> trackNames;
    bool useUpdateGridModel = true;
    std::wstring surveyUpdateGridModelName, designUpdateGridModelName;
    bool useHistoricalTracks = false;
    double trackStart = 0, trackEnd = 0, instructionTime = 0;
};

}  // namespace orv
