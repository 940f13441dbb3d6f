#include "surveydata/LogHeader.h"

#include <algorithm>

#include "core/FileObject.h"
#include "platform/crypto/Crc8.h"
#include "platform/os/FileSystem.h"
#include "surveydata/LogNaming.h"

namespace orv {

namespace {

constexpr std::size_t kRecordHead = 4;    // type and length
constexpr std::size_t kFirstRead = 4096;  // holds the header of nearly every log

std::size_t Read16(std::span<const std::byte> bytes, std::size_t offset) {
    return std::to_integer<std::size_t>(bytes[offset]) | std::to_integer<std::size_t>(bytes[offset + 1]) << 8;
}

bool ParseText(std::span<const std::byte> text, FileObject& file) {
    std::size_t length = text.size();
    while (length > 0 && text[length - 1] == std::byte{0}) --length;  // left over from a longer header
    return file.FileOpen(memfile(text.data(), length, textencoding::utf8bom), L"");
}

/// A time that is missing is as good as one that is right.
bool TakeTime(const FileObject& file, std::wstring_view key, std::int64_t& time) {
    std::wstring text;
    return !file.GetItem(HEADER, key, text) || ParseLogTime(text, time);
}

/// The start of an open log, as much of it as its header needs.
bool LoadStart(File& file, std::string& bytes, LogHeaderPlace& place) {
    place = {LogHeaderPlace::NeedMore, kFirstRead, 0};
    while (place.search == LogHeaderPlace::NeedMore) {
        std::size_t have = bytes.size();
        const std::size_t wanted = place.offset;
        bytes.resize(wanted);
        while (have < wanted) {
            std::size_t got = 0;
            if (file.Read(bytes.data() + have, wanted - have, got) != FsResult::Ok) return false;
            if (got == 0) break;
            have += got;
        }
        bytes.resize(have);
        place = FindLogHeader(std::as_bytes(std::span(bytes)));
        if (have < wanted && place.search == LogHeaderPlace::NeedMore) return false;  // the file ends before that
    }
    return place.search == LogHeaderPlace::Found;
}

/// Writes what differs between `before` and `after`, equal in length, at `offset` of the file.
bool WriteDifference(File& file, std::size_t offset, std::string_view before, std::string_view after) {
    const auto first = std::mismatch(before.begin(), before.end(), after.begin()).first - before.begin();
    const auto behind = std::mismatch(before.rbegin(), before.rend() - first, after.rbegin()).first - before.rbegin();
    const auto from = static_cast<std::size_t>(first);
    const std::size_t count = after.size() - from - static_cast<std::size_t>(behind);
    if (count == 0) return true;
    return file.Seek(offset + from) == FsResult::Ok && file.Write(after.data() + from, count) == FsResult::Ok &&
           file.Sync() == FsResult::Ok;
}

}  // namespace

LogHeaderPlace FindLogHeader(std::span<const std::byte> start) {
    if (start.size() < kRecordHead) return {LogHeaderPlace::NeedMore, kRecordHead, 0};
    const std::size_t second = kRecordHead + Read16(start, 2) + 1;
    const std::size_t text = second + kRecordHead;
    if (start.size() < text) return {LogHeaderPlace::NeedMore, text, 0};
    if (Read16(start, second) != kLogHeaderRecord) return {};
    const std::size_t length = Read16(start, second + 2);
    if (start.size() < text + length) return {LogHeaderPlace::NeedMore, text + length, 0};
    return {LogHeaderPlace::Found, text, length};
}

bool ParseLogHeader(std::span<const std::byte> text, LogHeader& header) {
    FileObject file;
    if (!ParseText(text, file)) return false;
    file.GetItem(HEADER, ORV_VERSION, header.orvVersion);
    file.GetItem(HEADER, FILE_VERSION, header.fileVersion);
    file.GetItem(HEADER, VESSELNAME, header.vessel);
    file.GetItem(HEADER, SURVEYTYPE, header.surveyType);
    file.GetItem(HEADER, RUNLINENAME, header.runline);
    return TakeTime(file, ACQUIS_LOGSTARTTIME, header.logTime) &&
           TakeTime(file, REPLAY_LOGSTARTTIME, header.replayTime);
}

std::string WithRunline(std::span<const std::byte> text, std::wstring_view runline) {
    FileObject file;
    memfile changed(textencoding::utf8);
    if (!ParseText(text, file) || !file.SetItem(HEADER, RUNLINENAME, runline, true) || !file.FileSave(changed)) {
        return {};
    }
    std::string bytes = changed.Bytes();
    bytes.resize(text.size(), '\0');
    return bytes;
}

bool ReadLogHeader(std::wstring_view path, LogHeader& header) {
    // A log can be listed while it is being written.
    OpenMode mode;
    mode.share = Share::DenyNone;
    std::unique_ptr<File> file;
    std::string bytes;
    LogHeaderPlace place;
    if (Files().Open(path, mode, file) != FsResult::Ok || !LoadStart(*file, bytes, place)) return false;
    return ParseLogHeader(std::as_bytes(std::span(bytes)).subspan(place.offset, place.length), header);
}

bool WriteLogRunline(std::wstring_view path, std::wstring_view runline) {
    OpenMode mode;
    mode.write = true;
    mode.share = Share::Exclusive;
    std::unique_ptr<File> file;
    std::string bytes;
    LogHeaderPlace place;
    if (Files().Open(path, mode, file) != FsResult::Ok || !LoadStart(*file, bytes, place)) return false;
    const auto text = std::as_bytes(std::span(bytes)).subspan(place.offset, place.length);
    std::string record = WithRunline(text, runline);
    if (record.empty()) return false;
    record += static_cast<char>(Compute8BitCRC(std::as_bytes(std::span(record))));
    // The CRC may lie behind what was read. Any value that can't be right makes it be written.
    std::string before = bytes.substr(place.offset, place.length + 1);
    if (before.size() < record.size()) before += static_cast<char>(~record.back());
    return WriteDifference(*file, place.offset, before, record) && file->Close() == FsResult::Ok;
}

}  // namespace orv
