#include "surveydata/TideStation.h"

#include <cmath>

#include "core/ConfigKeys.h"
#include "core/DataSearch.h"
#include "platform/os/FileSystem.h"

namespace orv {

namespace {

constexpr double kExtent = 3.0;

}  // namespace

TideStation::TideStation() : subscriber(*this, &TideStation::OnTidestationfileUpdate) {
    subscription.SetSubscriber(&subscriber, false);
}

TideStation::~TideStation() = default;

std::wstring TideStation::GetFileName() const {
    return Locked(filePath);
}

std::wstring TideStation::GetStationName() const {
    return Locked(station.name);
}

Point TideStation::GetStationPos() const {
    const Lock lock(mutex);
    return {station.x, station.y, 0};
}

double TideStation::GetStationOffset() const {
    return Locked(station.offset);
}

std::wstring TideStation::GetStationID() const {
    const std::wstring id = Locked(station.id);
    return id.empty() ? TideStationData().id : id;
}

double TideStation::GetStationKP() const {
    return Locked(stationKP);
}

void TideStation::SetStationName(const std::wstring& name) {
    Modify(station.name, name);
}

void TideStation::SetStationPos(const Point& position) {
    const Lock lock(mutex);
    Modify(station.x, position.x);
    Modify(station.y, position.y);
}

void TideStation::SetStationOffset(double offset) {
    Modify(station.offset, offset);
}

void TideStation::SetStationID(const std::wstring& id) {
    Modify(station.id, id);
}

void TideStation::SetStationKP(double kp) {
    const Lock lock(mutex);
    stationKP = kp;
}

void TideStation::GetInterpolAttribs(bool& limitGaps, double& maximumGap) const {
    const Lock lock(mutex);
    limitGaps = station.limitGaps;
    maximumGap = station.maximumGap;
}

void TideStation::GetExtrapolationAttribs(bool& extrapolate, double& maximumSpan) const {
    const Lock lock(mutex);
    extrapolate = station.extrapolate;
    maximumSpan = station.maximumSpan;
}

void TideStation::SetInterpolAttribs(bool limitGaps, double maximumGap) {
    const Lock lock(mutex);
    Modify(station.limitGaps, limitGaps);
    Modify(station.maximumGap, maximumGap);
}

void TideStation::SetExtrapolationAttribs(bool extrapolate, double maximumSpan) {
    const Lock lock(mutex);
    Modify(station.extrapolate, extrapolate);
    Modify(station.maximumSpan, maximumSpan);
}

bool TideStation::GetExtents(Page& page) const {
    const Point position = GetStationPos();
    page.Invalidate();
    page.Extend({position.x - kExtent, position.y - kExtent, 0});
    page.Extend({position.x + kExtent, position.y + kExtent, 0});
    return true;
}

// Changing values

bool TideStation::AddTideValue(double time, double value) {
    const Lock lock(mutex);
    if (openCount < 1 || !std::isfinite(time)) return false;
    auto entry = FindTideFileByTime(time);
    if ((entry == index.end() || !(time < entry->second.endTime)) && !CreateMonth(time, entry)) return false;
    TideFile* const file = Load(entry, true);
    if (!file || !file->AddTideValue(time, value)) return false;
    SetCount(entry->second);
    return true;
}

bool TideStation::CreateMonth(double time, Index::iterator& entry) {
    TIDEFILEINFO info;
    TideSpan span;
    info.path = TideFileTitle(fileTitle, time);
    if (!ParseTideFileTitle(info.path, span) || !span.Holds(time) ||
        !DataSearch::GetDataSearch().GetFullPathForWriting(kFileTypeTideFile, info.path)) {
        return false;
    }
    // Not emptied: a month that couldn't be read for a moment has left the index, and is still there.
    OpenMode mode;
    mode.write = mode.create = true;
    std::unique_ptr<File> file;
    if (Files().Open(info.path, mode, file) != FsResult::Ok) return false;
    info.startTime = span.start;
    info.endTime = span.end;
    entry = index.insert_or_assign(span.start, std::move(info)).first;
    return true;
}

bool TideStation::DeleteTideValue(double time) {
    const Lock lock(mutex);
    const auto entry = FindTideFileByTime(time);
    if (entry == index.end() || !(time < entry->second.endTime)) return false;
    TideFile* const file = Load(entry);
    if (!file) return false;
    file->DeleteTideValue(time);
    SetCount(entry->second);
    if (entry->second.numValues > 0) return true;
    file->FileClose(true);
    const FsResult removed = Files().Remove(entry->second.path);
    static_cast<void>(removed);  // one that can't go is empty
    if (cursor == entry) ++cursor;
    index.erase(entry);
    return true;
}

bool TideStation::UpdateTideValue(double time, double value) {
    const Lock lock(mutex);
    const auto entry = FindTideFileByTime(time);
    if (entry == index.end() || !(time < entry->second.endTime)) return false;
    TideFile* const file = Load(entry);
    if (!file) return false;
    file->UpdateTideValue(time, value - station.offset);
    return true;
}

int TideStation::GetNumValues() const {
    return static_cast<int>(Locked(valueCount));
}

void TideStation::SetCount(TIDEFILEINFO& info) {
    valueCount += info.file->GetNumValues() - info.numValues;
    info.numValues = info.file->GetNumValues();
}

// The months

/// The file that starts at or before the time, the first one if all start later. Whether the time lies in it is the
/// caller's question.
TideStation::Index::iterator TideStation::FindTideFileByTime(double time) {
    // A reader mostly stays within the month it is in.
    if (cursor != index.end() && cursor->first <= time && time < cursor->second.endTime) return cursor;
    auto entry = index.upper_bound(time);
    if (entry != index.begin()) --entry;
    return entry;
}

TideFile* TideStation::Load(Index::iterator entry, bool create) {
    TIDEFILEINFO& info = entry->second;
    if (!info.file) {
        auto file = std::make_unique<TideFile>();
        if (!file->FileOpen(info.path, create)) return nullptr;
        info.file = std::move(file);
    }
    return info.file.get();
}

TideFile* TideStation::LoadForReading(Index::iterator entry) {
    TideFile* const file = Load(entry);
    if (!file) fileError = true;
    return file;
}

/// Throws out the months that can't be read, so that a series with a damaged month can be walked.
void TideStation::RepairIndex() {
    fileError = false;
    const double at = cursor == index.end() ? 0 : cursor->first;
    for (auto entry = index.begin(); entry != index.end();) {
        if (Load(entry)) {
            ++entry;
            continue;
        }
        valueCount -= entry->second.numValues;
        entry = index.erase(entry);
    }
    cursor = index.find(at);
}

// Reading

bool TideStation::GetTideValue(int mode, double& time, double& value) {
    const Lock lock(mutex);
    double foundTime = time, foundValue = 0;
    const bool found = ReadMode(mode, foundTime, foundValue);
    if (found) {
        time = foundTime;
        value = foundValue;
    }
    if (fileError) RepairIndex();
    return found;
}

bool TideStation::ReadMode(int mode, double& time, double& value) {
    switch (mode) {
        case kCurrent:
            return ReadCurrent(time, value);
        case kFirst:
            cursor = index.begin();
            return ReadFrom(cursor, &TideFile::GetFirstTideValue, time, value);
        case kLast:
            cursor = index.empty() ? index.end() : std::prev(index.end());
            return ReadFrom(cursor, &TideFile::GetLastTideValue, time, value);
        case kNext:
            return ReadNext(time, value);
        case kPrevious:
            return ReadPrevious(time, value);
        case kFirstAfterOrEqual:
            return SearchForward(&TideFile::GetValueOnOrAfter, time, value);
        case kFirstAfter:
            return SearchForward(&TideFile::GetValueAfter, time, value);
        case kLastBeforeOrEqual:
            return SearchBackward(&TideFile::GetValueOnOrBefore, time, value);
        case kLastBefore:
            return SearchBackward(&TideFile::GetValueBefore, time, value);
        case kInterpolate:
            return InterpolateTide(time, value);
        case kExact:
            return FindExact(time, value);
        default:
            return false;
    }
}

/// Reads from one file and adds the offset; false at the end of the index or if the file can't be read.
bool TideStation::ReadFrom(Index::iterator entry, Read read, double& time, double& value) {
    if (entry == index.end()) return false;
    TideFile* const file = LoadForReading(entry);
    if (!file || !(file->*read)(time, value)) return false;
    value += station.offset;
    return true;
}

bool TideStation::ReadCurrent(double& time, double& value) {
    if (cursor == index.end()) return false;
    const TideFile* const file = LoadForReading(cursor);
    if (!file || !file->GetCurrentTideValue(time, value)) return false;
    value += station.offset;
    return true;
}

bool TideStation::ReadNext(double& time, double& value) {
    if (ReadFrom(cursor, &TideFile::GetNextTideValue, time, value)) return true;
    if (cursor == index.end()) return false;
    // The cursor stays at the last value when there is no next one.
    for (auto entry = std::next(cursor); entry != index.end(); ++entry) {
        if (!ReadFrom(entry, &TideFile::GetFirstTideValue, time, value)) continue;
        cursor = entry;
        return true;
    }
    return false;
}

bool TideStation::ReadPrevious(double& time, double& value) {
    if (ReadFrom(cursor, &TideFile::GetPreviousTideValue, time, value)) return true;
    for (auto entry = cursor; entry != index.begin();) {
        --entry;
        if (!ReadFrom(entry, &TideFile::GetLastTideValue, time, value)) continue;
        cursor = entry;
        return true;
    }
    return false;
}

bool TideStation::SearchForward(Read read, double& time, double& value) {
    for (cursor = FindTideFileByTime(time); cursor != index.end(); ++cursor) {
        if (ReadFrom(cursor, read, time, value)) return true;
    }
    return false;
}

bool TideStation::SearchBackward(Read read, double& time, double& value) {
    cursor = FindTideFileByTime(time);
    if (cursor == index.end()) return false;
    for (;; --cursor) {
        if (ReadFrom(cursor, read, time, value)) return true;
        if (cursor == index.begin()) return false;
    }
}

bool TideStation::FindExact(double time, double& value) {
    cursor = FindTideFileByTime(time);
    if (cursor == index.end() || !(time < cursor->second.endTime)) return false;
    TideFile* const file = LoadForReading(cursor);
    if (!file || !file->GetTideValue(time, value)) return false;
    value += station.offset;
    return true;
}

bool TideStation::GetTimeSpan(double& first, double& last) {
    const Lock lock(mutex);
    double start = 0, end = 0, value = 0;
    if (!ReadFrom(index.begin(), &TideFile::GetFirstTideValue, start, value)) return false;
    cursor = std::prev(index.end());
    if (!ReadFrom(cursor, &TideFile::GetLastTideValue, end, value)) return false;
    first = start;
    last = end;
    return true;
}

// Interpolation

bool TideStation::InterpolateTide(double& time, double& value) {
    const Lock lock(mutex);
    if (valueCount < 1 || std::isnan(time)) return false;
    TideFile::Record before{}, after{};
    if (valueCount == 1 || !ValuesAround(time, before, after)) return station.extrapolate && Extrapolate(time, value);
    const double gap = after.time - before.time;
    if (gap == 0) {
        value = before.value;
        return true;
    }
    if (station.limitGaps && gap > station.maximumGap) return false;
    // On a value exactly it is that value, to the last bit.
    value = time == after.time ? after.value : (after.value - before.value) / gap * (time - before.time) + before.value;
    return true;
}

/// The last value before a time and the first on or after it, with the offset.
bool TideStation::ValuesAround(double time, TideFile::Record& before, TideFile::Record& onOrAfter) {
    const auto entry = FindTideFileByTime(time);
    TideFile* const file = entry == index.end() ? nullptr : Load(entry);
    if (file && file->GetValuesAround(time, before, onOrAfter)) {
        cursor = entry;
        before.value += station.offset;
        onOrAfter.value += station.offset;
        return true;
    }
    before.time = onOrAfter.time = time;
    return SearchBackward(&TideFile::GetValueBefore, before.time, before.value) &&
           SearchForward(&TideFile::GetValueOnOrAfter, onOrAfter.time, onOrAfter.value);
}

/// The value at the near end of the series, held for the maximum span.
bool TideStation::Extrapolate(double time, double& value) {
    double endTime = 0, endValue = 0;
    const bool hasLast =
        ReadFrom(index.empty() ? index.end() : std::prev(index.end()), &TideFile::GetLastTideValue, endTime, endValue);
    if (valueCount == 1) {
        if (!hasLast || !(station.maximumSpan >= std::fabs(time - endTime))) return false;
        value = endValue;
        return true;
    }
    if (hasLast && time > endTime && station.maximumSpan >= time - endTime) {
        value = endValue;
        return true;
    }
    if (!ReadFrom(index.begin(), &TideFile::GetFirstTideValue, endTime, endValue)) return false;
    if (!(endTime > time) || !(station.maximumSpan >= endTime - time)) return false;
    value = endValue;
    return true;
}

}  // namespace orv
