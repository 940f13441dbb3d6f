#include "surveydata/TideFile.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <string_view>

#include "platform/os/FileSystem.h"
#include "platform/os/FileTools.h"

namespace orv {

namespace {

static_assert(sizeof(TideFile::Record) == TideFile::kRecordSize && std::endian::native == std::endian::little,
              "records are read and written as they lie in memory");

constexpr std::ptrdiff_t kNear = 8;  // records to each side of a guess
constexpr std::size_t kNotAsHere = std::numeric_limits<std::size_t>::max();

bool ByTime(const TideFile::Record& a, const TideFile::Record& b) {
    return a.time < b.time;
}

std::string_view BytesOf(std::span<const TideFile::Record> records) {
    return {reinterpret_cast<const char*>(records.data()), records.size_bytes()};
}

}  // namespace

void TideFile::Parse(std::span<const std::byte> bytes) {
    const std::size_t count = bytes.size() / kRecordSize;
    records.assign(count, {});
    if (count > 0) std::memcpy(records.data(), bytes.data(), count * kRecordSize);
    std::erase_if(records, [](const Record& record) { return !std::isfinite(record.time); });
    bool sound = std::is_sorted(records.begin(), records.end(), ByTime);
    if (!sound) std::stable_sort(records.begin(), records.end(), ByTime);
    const auto same = [](const Record& a, const Record& b) { return a.time == b.time; };
    records.erase(std::unique(records.begin(), records.end(), same), records.end());
    sound = sound && records.size() == count;
    cursor = -1;
    change = Change::None;
    onDisk = sound ? count : kNotAsHere;
}

bool TideFile::FileOpen(const std::wstring& path, bool create) {
    std::string bytes;
    FsResult result = ReadWholeFile(path, bytes);
    if (result == FsResult::NotFound && create) result = SaveWholeFile(path, {});
    if (result != FsResult::Ok) return false;
    Parse(std::as_bytes(std::span(bytes)));
    filePath = path;
    return true;
}

bool TideFile::FileClose(bool save) {
    const bool saved = !save || FileSave();
    *this = {};
    return saved;
}

bool TideFile::FileSave() {
    if (change == Change::None) return true;
    if (filePath.empty()) return false;
    if (change == Change::Rewritten || !Append()) {
        if (SaveWholeFile(filePath, BytesOf(records)) != FsResult::Ok) return false;
    }
    change = Change::None;
    onDisk = records.size();
    return true;
}

/// Puts what is new behind what the file holds. False, and the file is no worse, if it isn't as long as it was left: a
/// piece of a record from an append that was cut short doesn't count, and is overwritten.
bool TideFile::Append() {
    OpenMode mode;
    mode.write = true;
    mode.share = Share::Exclusive;
    std::unique_ptr<File> file;
    std::uint64_t length = 0;
    if (Files().Open(filePath, mode, file) != FsResult::Ok || file->Length(length) != FsResult::Ok) return false;
    if (length / kRecordSize != onDisk) return false;
    const std::string_view added = BytesOf(std::span<const Record>(records).subspan(onDisk));
    return file->Seek(onDisk * kRecordSize) == FsResult::Ok &&
           file->Write(added.data(), added.size()) == FsResult::Ok && file->Sync() == FsResult::Ok &&
           file->Close() == FsResult::Ok;
}

bool TideFile::AddTideValue(double time, double value) {
    const std::size_t place = FirstNotBefore(time);
    if (!std::isfinite(time) || (place < records.size() && records[place].time == time)) return false;
    // Doubling would take twice the memory of a long month just when it is largest.
    if (records.size() == records.capacity()) records.reserve(records.size() + records.size() / 8 + 8);
    records.insert(records.begin() + static_cast<std::ptrdiff_t>(place), {time, value});
    if (cursor >= static_cast<std::ptrdiff_t>(place)) ++cursor;
    Touch(place);
    return true;
}

bool TideFile::DeleteTideValue(double time) {
    const std::size_t place = FirstNotBefore(time);
    if (place >= records.size() || records[place].time != time) return false;
    records.erase(records.begin() + static_cast<std::ptrdiff_t>(place));
    if (cursor >= static_cast<std::ptrdiff_t>(place)) --cursor;  // so that the next one is the next one still
    change = Change::Rewritten;
    return true;
}

bool TideFile::UpdateTideValue(double time, double value) {
    const std::size_t place = FirstNotBefore(time);
    if (place >= records.size() || records[place].time != time) return false;
    records[place].value = value;
    Touch(place);
    return true;
}

/// Notes that the record at `index` is new or has changed.
void TideFile::Touch(std::size_t index) {
    const bool behind = index >= onDisk && onDisk < records.size() && change != Change::Rewritten;
    change = behind ? Change::Appended : Change::Rewritten;
}

std::size_t TideFile::FirstNotBefore(double time) const {
    // Most askers go on from where they were.
    const auto near = static_cast<std::size_t>(std::max<std::ptrdiff_t>(cursor, 0));
    for (std::size_t i = near; i < near + 2 && i < records.size(); ++i) {
        if (records[i].time >= time && (i == 0 || records[i - 1].time < time)) return i;
    }
    // Gauges measure at even intervals: the place can be told from the time, and nearly all of a search is spared.
    auto first = records.begin(), last = records.end();
    if (std::ssize(records) > 2 * kNear && time > records.front().time && time < records.back().time) {
        const double part = (time - records.front().time) / (records.back().time - records.front().time);
        // Times of a damaged file can lie so far apart that their difference is no number.
        if (part >= 0 && part <= 1) {
            const auto guess = static_cast<std::ptrdiff_t>(part * static_cast<double>(records.size() - 1));
            const auto low = first + std::max(guess - kNear, std::ptrdiff_t{0});
            const auto high = first + std::min(guess + kNear, std::ssize(records) - 1);
            if (low->time < time) first = low;
            if (high->time >= time) last = high;
        }
    }
    return static_cast<std::size_t>(std::lower_bound(first, last, Record{time, 0}, ByTime) - records.begin());
}

std::size_t TideFile::FirstAfter(double time) const {
    const std::size_t place = FirstNotBefore(time);
    return place < records.size() && records[place].time == time ? place + 1 : place;
}

bool TideFile::Give(std::ptrdiff_t index, double& time, double& value) {
    if (index < 0 || index >= std::ssize(records)) return false;
    cursor = index;
    return GetCurrentTideValue(time, value);
}

bool TideFile::GetTideValue(double time, double& value) {
    double found = time, foundValue = 0;
    const std::size_t place = FirstNotBefore(time);
    if (place >= records.size() || records[place].time != time) return false;
    Give(static_cast<std::ptrdiff_t>(place), found, foundValue);
    value = foundValue;
    return true;
}

bool TideFile::GetCurrentTideValue(double& time, double& value) const {
    if (cursor < 0 || cursor >= std::ssize(records)) return false;
    time = records[static_cast<std::size_t>(cursor)].time;
    value = records[static_cast<std::size_t>(cursor)].value;
    return true;
}

bool TideFile::GetFirstTideValue(double& time, double& value) {
    return Give(0, time, value);
}

bool TideFile::GetLastTideValue(double& time, double& value) {
    return Give(std::ssize(records) - 1, time, value);
}

bool TideFile::GetNextTideValue(double& time, double& value) {
    return Give(cursor + 1, time, value);
}

bool TideFile::GetPreviousTideValue(double& time, double& value) {
    return Give(cursor - 1, time, value);
}

bool TideFile::GetValueAfter(double& time, double& value) {
    return Give(static_cast<std::ptrdiff_t>(FirstAfter(time)), time, value);
}

bool TideFile::GetValueOnOrAfter(double& time, double& value) {
    return Give(static_cast<std::ptrdiff_t>(FirstNotBefore(time)), time, value);
}

bool TideFile::GetValueBefore(double& time, double& value) {
    return Give(static_cast<std::ptrdiff_t>(FirstNotBefore(time)) - 1, time, value);
}

bool TideFile::GetValueOnOrBefore(double& time, double& value) {
    return Give(static_cast<std::ptrdiff_t>(FirstAfter(time)) - 1, time, value);
}

bool TideFile::GetValuesAround(double time, Record& before, Record& onOrAfter) {
    const std::size_t place = FirstNotBefore(time);
    if (place == 0 || place >= records.size()) return false;
    cursor = static_cast<std::ptrdiff_t>(place);
    before = records[place - 1];
    onOrAfter = records[place];
    return true;
}

}  // namespace orv
