#pragma once

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "platform/Export.h"
#include "platform/values/Point.h"
#include "platform/watch/FileSubscription.h"
#include "surveydata/TideFile.h"
#include "surveydata/TideStationFile.h"

namespace orv {

/// One file of values: a month.
struct TIDEFILEINFO {
    std::wstring path;
    double startTime = 0, endTime = 0;  ///< milliseconds since 1970 UTC; the end isn't in it
    int numValues = 0;
    std::unique_ptr<TideFile> file;  ///< none while it isn't loaded
};

/// A tide gauge: its station file, and a file of values a month in the folder of tide files, presented as one ordered
/// stream with a cursor. Times are milliseconds since 1970 UTC. Opening reads no values; a month is read when it is
/// first asked for and kept until the station closes.
///
/// Any thread may call: each operation holds the station's lock for its whole length, reading and writing included.
/// Subscribers to the notification (code 9, station id) are called under it and must not wait for another thread that
/// uses the station.
class ORV_EXPORT TideStation {
public:
    static constexpr int kNotifyCode = 9;

    TideStation();
    ~TideStation();  ///< without saving
    TideStation(const TideStation&) = delete;
    TideStation& operator=(const TideStation&) = delete;

    // What the station is known by. Setters other than the last mark it as modified.

    std::wstring GetFileName() const;
    std::wstring GetStationName() const;
    Point GetStationPos() const;
    double GetStationOffset() const;
    std::wstring GetStationID() const;
    double GetStationKP() const;
    void SetStationName(const std::wstring& name);
    void SetStationPos(const Point& position);
    void SetStationOffset(double offset);
    void SetStationID(const std::wstring& id);
    void SetStationKP(double kp);  ///< held in memory only

    void GetInterpolAttribs(bool& limitGaps, double& maximumGap) const;
    void GetExtrapolationAttribs(bool& extrapolate, double& maximumSpan) const;
    void SetInterpolAttribs(bool limitGaps, double maximumGap);  ///< without the limit any gap is bridged
    void SetExtrapolationAttribs(bool extrapolate, double maximumSpan);
    bool GetExtents(Page& page) const;  ///< the position and 3 to each side; true

    // Opening and saving: TideStationFiles.cpp

    /// A file of no length is a new station. A station that is open already stays, whatever the path, and is open once
    /// more. False if the file can't be read.
    bool FileOpen(const std::wstring& path);
    int FileClose(bool save);  ///< how often it is still open
    /// False while it isn't open, or if the station or a month couldn't be written.
    bool FileSave();
    bool IsOpen() const { return openCount > 0; }
    int GetOpenCount() const { return openCount; }
    /// Takes the station from disk again, as another program has changed it. Values not yet saved are lost.
    void OnTidestationfileUpdate();

    // Values

    /// Puts a value, as it is, into the file of its month, which is made if there is none behind or between the others;
    /// what is older than all files goes into the first. False for a time that has a value already.
    bool AddTideValue(double time, double value);
    /// True also if the file of that time holds no such value. A month without values loses its file.
    bool DeleteTideValue(double time);
    /// `value` is with the station's offset, which is taken off: not so in AddTideValue. True also if the file of that
    /// time holds no such value, as for deleting; none is added then.
    bool UpdateTideValue(double time, double value);
    int GetNumValues() const;
    bool GetTimeSpan(double& first, double& last);  ///< the cursor goes to the last file

    enum Mode {
        kCurrent = 1,
        kFirst,
        kLast,
        kNext,
        kPrevious,
        kFirstAfterOrEqual,
        kFirstAfter,
        kLastBeforeOrEqual,
        kLastBefore,
        kInterpolate,
        kExact = 12
    };
    /// A value with the station's offset, and its time. Outputs are left alone on failure. Months that can't be read
    /// leave the station, their files stay.
    bool GetTideValue(int mode, double& time, double& value);
    /// The tide at a time: on the line between the values around it, or the value at the near end of the series.
    bool InterpolateTide(double& time, double& value);

private:
    using Lock = std::lock_guard<std::recursive_mutex>;
    using Index = std::map<double, TIDEFILEINFO>;
    using Read = bool (TideFile::*)(double&, double&);

    template <class T>
    T Locked(const T& member) const {
        const Lock lock(mutex);
        return member;
    }
    template <class T>
    void Modify(T& member, const T& value) {
        const Lock lock(mutex);
        member = value;
        modified = true;
    }

    bool Open(const std::wstring& path);
    void Close(bool save);
    bool WriteFile();
    void ScanForTideFiles();
    void Notify() const;

    Index::iterator FindTideFileByTime(double time);
    bool CreateMonth(double time, Index::iterator& entry);
    TideFile* Load(Index::iterator entry, bool create = false);
    TideFile* LoadForReading(Index::iterator entry);
    void SetCount(TIDEFILEINFO& info);
    void RepairIndex();

    bool ReadMode(int mode, double& time, double& value);
    bool ReadFrom(Index::iterator entry, Read read, double& time, double& value);
    bool ReadCurrent(double& time, double& value);
    bool ReadNext(double& time, double& value);
    bool ReadPrevious(double& time, double& value);
    bool SearchForward(Read read, double& time, double& value);
    bool SearchBackward(Read read, double& time, double& value);
    bool FindExact(double time, double& value);
    bool ValuesAround(double time, TideFile::Record& before, TideFile::Record& onOrAfter);
    bool Extrapolate(double time, double& value);

    mutable std::recursive_mutex mutex;
    // Guarded by mutex.
    TideStationData station;
    double stationKP = 0;
    Index index;  ///< by start time
    std::wstring filePath, fileTitle;
    Index::iterator cursor = index.end();  ///< file of the last read
    std::int64_t valueCount = 0;           ///< sum over the index
    bool fileError = false;                ///< a file couldn't be read since the index was repaired
    bool modified = false;                 ///< station data differ from the file

    std::atomic<int> openCount = 0;  ///< written under mutex
    MemFunNoInfoSubscriber<TideStation> subscriber;
    FileSubscription subscription;  ///< on the station file; last, as its going waits for a call into the above
};

}  // namespace orv
