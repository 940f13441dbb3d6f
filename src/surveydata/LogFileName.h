#pragma once

#include <cstdint>
#include <string>

#include "platform/Export.h"
#include "surveydata/LogHeader.h"
#include "surveydata/LogNaming.h"

namespace orv {

/// Where a log's identity is looked for first: in its name, or (any other value) in its header.
enum PRIMARY_SEARCH : int { kSearchNameFirst = 0, kSearchHeaderFirst = 1 };

/// The identity of a raw log: composes its name after the naming setup of the current project, takes a name apart,
/// reads the same from the header in the file. A plain value; the project is asked on the main thread.
class ORV_EXPORT LogFileName {
public:
    LogFileName() = default;
    explicit LogFileName(std::wstring path) { SetName(std::move(path)); }

    /// The title, composed if there is none yet; always without dots where the project wants none.
    const std::wstring& GetName();
    /// Looks in the title of the path and in the header of the file, in the order of the primary search. By value:
    /// `path` may be the name it has.
    bool SetName(std::wstring path);
    bool SetNameFromFileTitle(const std::wstring& path);  ///< the name is the path's title, whatever comes of it
    bool SetNameFromFileHeader(
        const std::wstring& path);  ///< fills the fields, not the name; on failure, too, as far as it came
    void Clear();                   ///< versions, primary search and forced automatic naming stay

    // Setting a field throws the name away, so that GetName composes it anew.

    const std::wstring& VesselName() const { return fields.vessel; }
    const std::wstring& SurveyType() const { return fields.surveyType; }
    const std::wstring& RunlineName() const { return fields.runline; }
    std::int64_t LogTime() const { return fields.logTime; }        ///< seconds since 1970 UTC
    std::int64_t ReplayTime() const { return fields.replayTime; }  ///< seconds since 1970 UTC
    int ReplayCount() const { return fields.replayCount; }
    void SetVesselName(const std::wstring& vessel) { Set(fields.vessel, vessel); }
    void SetSurveyType(const std::wstring& surveyType) { Set(fields.surveyType, surveyType); }
    void SetRunlineName(std::wstring runline);  ///< hyphens become tildes: a hyphen would end it in a title
    void SetLogTime(std::int64_t utcSeconds) { Set(fields.logTime, utcSeconds); }
    void SetReplayTime(std::int64_t utcSeconds) { Set(fields.replayTime, utcSeconds); }
    void SetReplayCount(int count) { Set(fields.replayCount, count); }

    const std::wstring& FileVersion() const { return fileVersion; }  ///< only from a header, as the next
    const std::wstring& OrvVersion() const { return orvVersion; }
    void ForceAutoNaming(bool force) { forceAutoNaming = force; }  ///< whatever the project says
    void SetPrimarySearch(PRIMARY_SEARCH search) { primarySearch = search; }

    bool IsReplayedFile() const { return fields.replayTime != 0; }
    bool IsValid() const { return AreLogFieldsValid(fields); }
    std::wstring VesselConfigName() const { return fields.vessel + L"[" + fields.surveyType + L"]"; }

    /// What goes to the end of the title of the log `path` when it is replayed now.
    static std::wstring CreateReplayString(const std::wstring& path);
    /// Writes the run line, as it is given, into the header of a log.
    static bool SaveRunlineName(const std::wstring& path, const std::wstring& runline) {
        return WriteLogRunline(path, runline);
    }

private:
    template <class T>
    void Set(T& field, T value) {
        field = std::move(value);
        name.clear();
    }

    std::wstring name;  ///< empty: not composed yet
    LogFields fields;
    std::wstring fileVersion, orvVersion;
    bool forceAutoNaming = false;
    PRIMARY_SEARCH primarySearch = kSearchNameFirst;
};

}  // namespace orv
