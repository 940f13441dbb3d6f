#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/Export.h"

namespace orv {

/// The measurements of one month of a tide gauge, ordered by time, times unique. Times are milliseconds since 1970 UTC.
/// The cursor stands on the value that was handed out last, before the first after opening. See docs/formats/tide.md.
/// One thread at a time: its station locks.
///
/// Values at the end are added to the file without writing the others again; whatever changes what is there writes
/// the file anew in its place. At any moment the file holds whole records that were in it before, or in memory now.
class ORV_EXPORT TideFile {
public:
    struct Record {
        double time, value;
    };
    static constexpr std::size_t kRecordSize = 16;  ///< in the file: two little-endian doubles

    /// Takes the bytes of a file. Records without a time are passed over, as is what is left of one that was cut; they
    /// are put in order, of equal times the first stays.
    void Parse(std::span<const std::byte> bytes);

    /// False if there is no such file or it can't be read; `create` makes an empty one then.
    bool FileOpen(const std::wstring& path, bool create);
    bool FileClose(bool save);  ///< false if it had to be saved and couldn't
    bool FileSave();            ///< true without a write if nothing has changed

    bool AddTideValue(double time, double value);     ///< false for a time that is there, or is no number
    bool DeleteTideValue(double time);                ///< false if there is no such time
    bool UpdateTideValue(double time, double value);  ///< false if there is no such time

    int GetNumValues() const { return static_cast<int>(records.size()); }
    bool GetTideValue(double time, double& value);  ///< of exactly this time

    // By the cursor, which stays when there is none.

    bool GetCurrentTideValue(double& time, double& value) const;
    bool GetFirstTideValue(double& time, double& value);
    bool GetLastTideValue(double& time, double& value);
    bool GetNextTideValue(double& time, double& value);
    bool GetPreviousTideValue(double& time, double& value);

    // By time, which is replaced by the time found.

    bool GetValueAfter(double& time, double& value);
    bool GetValueOnOrAfter(double& time, double& value);
    bool GetValueBefore(double& time, double& value);
    bool GetValueOnOrBefore(double& time, double& value);
    /// The last value before `time` and the first on or after it, at once. The cursor goes to the second.
    bool GetValuesAround(double time, Record& before, Record& onOrAfter);

private:
    enum class Change { None, Appended, Rewritten };
    std::size_t FirstNotBefore(double time) const;
    std::size_t FirstAfter(double time) const;
    bool Give(std::ptrdiff_t index, double& time, double& value);
    void Touch(std::size_t index);
    bool Append();

    std::wstring filePath;
    std::vector<Record> records;
    std::ptrdiff_t cursor = -1;
    Change change = Change::None;
    std::size_t onDisk = 0;  ///< how many records the file holds, if they are the first ones here
};

}  // namespace orv
