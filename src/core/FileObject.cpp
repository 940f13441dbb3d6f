#include "core/FileObject.h"

#include <algorithm>

#include "core/ConfigText.h"
#include "core/SmallUtf8.h"
#include "platform/notify/Notices.h"
#include "platform/os/Clock.h"
#include "platform/os/FileTools.h"
#include "platform/text/NumberText.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv {

namespace {

constexpr int kWriteBits = 3, kShareBits = 0x70, kShareExclusive = 0x10, kShareDenyNone = 0x40;

OpenMode ModeOf(int flags) {
    OpenMode mode;
    mode.write = (flags & kWriteBits) != 0;
    mode.create = (flags & kOpenCreateBit) != 0;
    const int share = flags & kShareBits;
    if (share == kShareExclusive) mode.share = Share::Exclusive;
    if (share == kShareDenyNone) mode.share = Share::DenyNone;
    return mode;
}

// A save empties what it opens; the other forms that may make a file keep what is in it.
bool Truncates(int flags) {
    return (flags & ~0x8000) == kSave;
}

// A line break in a value would end the item: each run of breaks becomes one blank, so that memory and file agree.
std::string OneLine(std::wstring_view value) {
    std::string text;
    text.reserve(value.size());
    AppendUtf8(text, value);
    constexpr std::string_view kBreaks("\r\n\0", 3);
    if (text.find_first_of(kBreaks) == std::string::npos) return text;
    std::string line;
    for (std::size_t at = 0; at < text.size();) {
        if (kBreaks.find(text[at]) == std::string_view::npos) {
            line += text[at++];
            continue;
        }
        line += ' ';
        at = std::min(text.find_first_not_of(kBreaks, at), text.size());
    }
    return line;
}

template <class T, class Parsed>
bool Take(const Parsed& parsed, T& out) {
    if (!parsed) return false;
    out = static_cast<T>(*parsed);
    return true;
}

bool Convert(std::string_view text, int& out) {
    return Take(ParseInt(text), out);
}
bool Convert(std::string_view text, unsigned& out) {
    return Take(ParseUnsigned(text), out);
}
bool Convert(std::string_view text, long& out) {
    return Take(ParseInt64(text), out);
}
bool Convert(std::string_view text, float& out) {
    return Take(ParseFloat(text), out);
}
bool Convert(std::string_view text, double& out) {
    return Take(ParseDouble(text), out);
}
bool Convert(std::string_view text, bool& out) {
    return Take(ParseBool(text), out);
}
bool Convert(std::string_view text, std::wstring& out) {
    FromUtf8(text, out);
    return true;
}

}  // namespace

const std::wstring FileObject::CHECKSUM_SECTION = L"Checksum";

FileObject::FileObject() : content(std::make_unique<ConfigText>()) {}
FileObject::~FileObject() = default;

FileObject::FileObject(const FileObject& other)
    : errorText(other.errorText),
      content(std::make_unique<ConfigText>(*other.content)),
      fileName(other.fileName),
      fileTitle(other.fileTitle),
      errorStatus(other.errorStatus.load()),
      lastResult(other.lastResult.load()),
      initialised(other.initialised),
      throwing(other.throwing),
      readStatus(other.readStatus),
      keepOpen(other.keepOpen),
      keptAside(other.keptAside) {}

FileObject& FileObject::operator=(const FileObject& other) {
    if (this != &other) *this = FileObject(other);
    return *this;
}

FileObject::FileObject(FileObject&& other) noexcept : content(std::make_unique<ConfigText>()) {
    *this = std::move(other);
}

FileObject& FileObject::operator=(FileObject&& other) noexcept {
    if (this == &other) return *this;
    content.swap(other.content);
    content->ContinueStamps(*other.content);
    errorText = std::move(other.errorText);
    fileName = std::move(other.fileName);
    fileTitle = std::move(other.fileTitle);
    errorStatus = other.errorStatus.load();
    lastResult = other.lastResult.load();
    initialised = other.initialised;
    throwing = other.throwing;
    readStatus = other.readStatus;
    keepOpen = other.keepOpen;
    keptAside = other.keptAside;
    return *this;
}

bool FileObject::ApplyDifference(const FileObject& /*difference*/) {
    return true;
}

bool FileObject::AfterFileOpen() {
    return true;
}

// ---- opening and closing

void FileObject::SetName(std::wstring_view name) {
    fileName = name;
    fileTitle = GetTitleFromPath(name);
}

bool FileObject::Parse(std::shared_ptr<const std::string> bytes) {
    const bool tooLarge = bytes->size() > ConfigText::kMaxBytes;
    if (!content->Parse(std::move(bytes))) {
        lastResult = tooLarge ? FsResult::TooLarge : FsResult::Failed;
        return false;
    }
    initialised = true;
    keptAside = false;
    return true;
}

bool FileObject::FileOpen(std::wstring_view name, int flags) {
    const std::wstring path(name);  // may be our own name, which closing forgets
    FileClose();
    const OpenMode mode = ModeOf(flags);
    auto bytes = std::make_shared<std::string>();
    if (Truncates(flags)) {
        lastResult = SaveWholeFile(path, {});
    } else if (mode.create || mode.write) {
        // Opened for what the caller may do later: a missing file is made now, a read-only one refused now.
        std::unique_ptr<File> file;
        lastResult = Files().Open(path, mode, file);
        file.reset();
        if (lastResult == FsResult::Ok) lastResult = ReadWholeFile(path, *bytes, mode.share, ConfigText::kMaxBytes);
    } else {
        lastResult = ReadWholeFile(path, *bytes, mode.share, ConfigText::kMaxBytes);
    }
    if (lastResult != FsResult::Ok || !Parse(std::move(bytes))) return false;
    SetName(path);
    if (AfterFileOpen()) return true;
    FileClose();
    return false;
}

bool FileObject::FileOpen(const memfile& file, std::wstring_view name) {
    const std::wstring path(name);
    FileClose();
    if (!Parse(file.SharedBytes())) return false;
    SetName(path);
    if (AfterFileOpen()) return true;
    FileClose();
    return false;
}

bool FileObject::Read(archive& stream) {
    return stream.IsReading() && Parse(stream.File().SharedBytes());
}

bool FileObject::Write(archive& stream) const {
    return !stream.IsReading() && FileSave(stream.File());
}

void FileObject::FileClose() {
    ConfigText empty;
    empty.ContinueStamps(*content);
    *content = std::move(empty);
    fileName.clear();
    fileTitle.clear();
    initialised = false;
}

void FileObject::TakeContent(const FileObject& other) {
    ConfigText copy(*other.content);
    copy.ContinueStamps(*content);
    *content = std::move(copy);
    initialised = other.initialised;
    keptAside = other.keptAside;
}

void FileObject::MakeEmpty() {
    content->MakeEmpty();
}

fhandle FileObject::open(std::wstring_view path, int flags) const {
    std::unique_ptr<File> file;
    OpenMode mode = ModeOf(flags);
    mode.truncate = Truncates(flags);
    lastResult = Files().Open(path, mode, file);
    return lastResult == FsResult::Ok ? fhandle(std::move(file)) : fhandle();
}

// ---- saving

namespace {

bool HasCopyAside(std::wstring_view path) {
    const std::wstring folder = GetFolderFromPath(path), pattern = GetNameFromPath(path) + L".damaged-*";
    std::string bytes, copy;
    for (const FolderEntry& entry : FindFiles(folder, pattern)) {
        if (entry.isFolder || (bytes.empty() && ReadWholeFile(path, bytes) != FsResult::Ok)) continue;
        if (ReadWholeFile(folder + entry.name, copy) == FsResult::Ok && copy == bytes) return true;
    }
    return false;
}

}  // namespace

// Once for each reading: what is saved after that is ours.
bool FileObject::PutAside(std::wstring_view path) {
    if (keptAside || !FileExists(path)) return true;
    // A file that can't be rewritten comes back as it is each time: one copy of it will do.
    if (HasCopyAside(path)) return keptAside = true;
    const CalendarTime now = UtcCalendar(TheClock().UtcMilliseconds() / 1000);
    const auto two = [](int number) { return (number < 10 ? L"0" : L"") + IntText(number); };
    const std::wstring stem = std::wstring(path) + L".damaged-" + IntText(now.year) + two(now.month) + two(now.day) +
                              L"T" + two(now.hour) + two(now.minute) + two(now.second) + L"Z";
    std::wstring aside = stem;
    for (int more = 2; FileExists(aside); ++more) aside = stem + L"-" + IntText(more);
    if (CopyWholeFile(path, aside) != FsResult::Ok) return false;
    keptAside = true;
    Notify(Notice::Information,
           std::wstring(path) + L" holds what can't be read as a configuration file; it is kept as " + aside);
    return true;
}

bool FileObject::KeepDamagedFile() {
    return (!content->HasUndecodable() && content->OddLines().empty()) || PutAside(fileName);
}

bool FileObject::FileSave(std::wstring_view name, int flags) {
    SetErrorStatus(kFileOk);
    const std::wstring path(name.empty() ? std::wstring_view(fileName) : name);
    if (path.empty()) {
        SetErrorStatus(kFileNoName);
        return false;
    }
    if ((flags & kOpenCreateBit) == 0 && !FileExists(path)) {
        lastResult = FsResult::NotFound;
    } else if (content->HasUndecodable() && path == fileName && !PutAside(path)) {
        lastResult = FsResult::Failed;
    } else {
        lastResult = SaveWholeFile(path, content->Bytes());
    }
    if (lastResult == FsResult::Ok) return true;
    SetErrorStatus(kFileCannotAccess);
    return false;
}

bool FileObject::FileSave(File& stdioFile) const {
    const std::string bytes = content->Bytes();
    return stdioFile.Write(bytes.data(), bytes.size()) == FsResult::Ok;
}

bool FileObject::FileSave(memfile& file) const {
    file.SetBytes(content->Bytes(file.Encoding()));
    return true;
}

bool FileObject::FileSave(CharBuffer& buffer, int encoding) const {
    if (encoding < textencoding::utf8 || encoding > textencoding::windows1252) return false;
    buffer.Bytes() = content->Bytes(static_cast<textencoding::type>(encoding));
    return true;
}

// ---- items

template <class T>
bool FileObject::Get(std::wstring_view section, std::wstring_view key, T& out) const {
    const SmallUtf8 sectionText(section), keyText(key);
    const ConfigText::Found found = content->Find(sectionText, keyText);
    int status = kFileOk;
    if (found.item != ConfigText::kNone) {
        if (!Convert(content->Value(found.item), out)) status = kFileNoConvert;
    } else if (found.section != ConfigText::kNone) {
        status = kFileNoKey;
    } else {
        status = !initialised && content->FirstSection() == ConfigText::kNone ? kFileNoFile : kFileNoSection;
    }
    SetErrorStatus(status);
    if (status != kFileOk && status != kFileNoConvert && throwing) {
        throw std::wstring(L"Item not found: [" + std::wstring(section) + L"] " + std::wstring(key));
    }
    return status == kFileOk;
}

bool FileObject::GetItem(std::wstring_view section, std::wstring_view key, int& out) const {
    return Get(section, key, out);
}
bool FileObject::GetItem(std::wstring_view section, std::wstring_view key, unsigned& out) const {
    return Get(section, key, out);
}
bool FileObject::GetItem(std::wstring_view section, std::wstring_view key, long& out) const {
    return Get(section, key, out);
}
bool FileObject::GetItem(std::wstring_view section, std::wstring_view key, float& out) const {
    return Get(section, key, out);
}
bool FileObject::GetItem(std::wstring_view section, std::wstring_view key, double& out) const {
    return Get(section, key, out);
}
bool FileObject::GetItem(std::wstring_view section, std::wstring_view key, std::wstring& out) const {
    return Get(section, key, out);
}
bool FileObject::GetItem(std::wstring_view section, std::wstring_view key, bool& out) const {
    return Get(section, key, out);
}

bool FileObject::SetItem(std::wstring_view section, std::wstring_view key, std::wstring_view value, bool create) {
    const SmallUtf8 sectionText(section), keyText(key);
    if (!ConfigText::IsSectionName(sectionText.View()) || !ConfigText::IsKey(keyText.View())) return false;
    std::uint32_t place = content->FindSection(sectionText.View());
    if (place == ConfigText::kNone) {
        if (!create) return false;
        place = content->AddSection(sectionText.View());
    }
    const std::uint32_t item = content->FindItem(place, keyText.View());
    if (item != ConfigText::kNone) {
        content->SetValue(item, OneLine(value));
        return true;
    }
    if (!create) return false;
    content->AddItem(place, keyText.View(), OneLine(value));
    return true;
}

bool FileObject::SetItem(std::wstring_view section, std::wstring_view key, const wchar_t* value, bool create) {
    return SetItem(section, key, std::wstring_view(value), create);
}
bool FileObject::SetItem(std::wstring_view section, std::wstring_view key, const std::wstring& value, bool create) {
    return SetItem(section, key, std::wstring_view(value), create);
}
bool FileObject::SetItem(std::wstring_view section, std::wstring_view key, int value, bool create) {
    return SetItem(section, key, IntText(value), create);
}
bool FileObject::SetItem(std::wstring_view section, std::wstring_view key, unsigned value, bool create) {
    return SetItem(section, key, IntText(value), create);
}
bool FileObject::SetItem(std::wstring_view section, std::wstring_view key, long value, bool create) {
    return SetItem(section, key, IntText(value), create);
}
bool FileObject::SetItem(std::wstring_view section, std::wstring_view key, double value, bool create) {
    return SetItem(section, key, ShortestText(value), create);
}
bool FileObject::SetItem(std::wstring_view section, std::wstring_view key, bool value, bool create) {
    return SetItem(section, key, std::wstring_view(value ? L"1" : L"0"), create);
}

bool FileObject::HasSection(std::wstring_view section) const {
    return content->FindSection(SmallUtf8(section).View()) != ConfigText::kNone;
}

bool FileObject::HasKey(std::wstring_view section, std::wstring_view key) const {
    return content->Find(SmallUtf8(section), SmallUtf8(key)).item != ConfigText::kNone;
}

bool FileObject::CreateSection(std::wstring_view section, bool acceptExisting) {
    const SmallUtf8 name(section);
    if (!ConfigText::IsSectionName(name.View())) return false;
    if (content->FindSection(name.View()) != ConfigText::kNone) return acceptExisting;
    content->AddSection(name.View());
    return true;
}

bool FileObject::DeleteSection(std::wstring_view section) {
    const std::uint32_t place = content->FindSection(SmallUtf8(section).View());
    if (place == ConfigText::kNone) return false;
    content->DeleteSection(place);
    return true;
}

// The cursor holds a stamp, which stays good for going on whatever is deleted.
bool FileObject::DeleteSection(FobjSection& /*cursor*/, std::wstring_view section) {
    return DeleteSection(section);
}

bool FileObject::DeleteItem(std::wstring_view section, std::wstring_view key, bool acceptMissing) {
    const std::uint32_t place = content->FindSection(SmallUtf8(section).View());
    if (place == ConfigText::kNone) return acceptMissing;
    const std::uint32_t item = content->FindItem(place, SmallUtf8(key).View());
    if (item == ConfigText::kNone) return acceptMissing;
    content->DeleteItem(item);
    return true;
}

bool FileObject::RenameSection(std::wstring_view oldName, std::wstring_view newName) {
    const SmallUtf8 name(newName);
    const std::uint32_t place = content->FindSection(SmallUtf8(oldName).View());
    if (place == ConfigText::kNone || !ConfigText::IsSectionName(name.View()) ||
        content->FindSection(name.View()) != ConfigText::kNone) {
        return false;
    }
    content->RenameSection(place, name.View());
    return true;
}

bool FileObject::CopySection(std::wstring_view destination, std::wstring_view source) {
    return CopySection(destination, source, *this);
}

bool FileObject::CopySection(std::wstring_view destination, std::wstring_view source, const FileObject& sourceFile) {
    const SmallUtf8 name(destination);
    const ConfigText& from = *sourceFile.content;
    const std::uint32_t sourcePlace = from.FindSection(SmallUtf8(source).View());
    if (sourcePlace == ConfigText::kNone || !ConfigText::IsSectionName(name.View())) return false;
    std::uint32_t place = content->FindSection(name.View());
    if (&sourceFile == this && place == sourcePlace) return true;
    if (place == ConfigText::kNone) {
        place = content->AddSection(name.View());
    } else {
        content->ClearSection(place);
    }
    for (std::uint32_t item = from.FirstItem(sourcePlace); item != ConfigText::kNone; item = from.NextItem(item)) {
        // Copied first: adding may move the lines of an object that copies within itself.
        const std::string key(from.Key(item)), value(from.Value(item));
        content->AddItem(place, key, value);
    }
    return true;
}

// ---- walks

bool FileObject::GetFirstSectionEntry(FobjSection& cursor, std::wstring& name) const {
    cursor = FobjSection();
    return GetNextSectionEntry(cursor, name);
}

bool FileObject::GetNextSectionEntry(FobjSection& cursor, std::wstring& name) const {
    const std::uint32_t place = content->SectionAfter(cursor.sectionStamp, cursor.sectionPlace);
    if (place == ConfigText::kNone) return false;
    cursor.file = const_cast<FileObject*>(this);  // `SetAt` is for whoever may change the object
    cursor.sectionStamp = content->SectionStamp(place);
    cursor.sectionPlace = place;
    cursor.itemStamp = cursor.itemSection = 0;
    FromUtf8(content->SectionName(place), name);
    return true;
}

bool FileObject::SetSection(FobjSection& cursor, std::wstring_view section) {
    const std::uint32_t place = content->FindSection(SmallUtf8(section).View());
    if (place == ConfigText::kNone) return false;
    cursor = FobjSection();
    cursor.file = this;
    cursor.sectionStamp = content->SectionStamp(place);
    cursor.sectionPlace = place;
    return true;
}

bool FileObject::GetFirstMapEntry(FobjSection& cursor, std::wstring_view section, std::wstring& key,
                                  std::wstring& value) const {
    cursor.itemStamp = 0;
    cursor.itemSection = 0;
    const std::uint32_t place = content->FindSection(SmallUtf8(section).View());
    if (place == ConfigText::kNone) return false;
    cursor.file = const_cast<FileObject*>(this);
    cursor.itemSection = content->SectionStamp(place);
    cursor.itemSectionPlace = place;
    return GetNextMapEntry(cursor, key, value);
}

bool FileObject::GetNextMapEntry(FobjSection& cursor, std::wstring& key, std::wstring& value) const {
    const std::uint32_t section = content->SectionOfStamp(cursor.itemSection, cursor.itemSectionPlace);
    if (section == ConfigText::kNone) return false;
    const std::uint32_t item = content->ItemAfter(section, cursor.itemStamp, cursor.itemPlace);
    if (item == ConfigText::kNone) return false;
    cursor.itemStamp = content->ItemStamp(item);
    cursor.itemPlace = item;
    FromUtf8(content->Key(item), key);
    FromUtf8(content->Value(item), value);
    return true;
}

bool FobjSection::SetAt(std::wstring_view key, std::wstring_view value) {
    if (!file) return false;
    const bool inItems = itemSection != 0;
    const std::uint32_t section =
        file->content->SectionOfStamp(inItems ? itemSection : sectionStamp, inItems ? itemSectionPlace : sectionPlace);
    if (section == ConfigText::kNone) return false;
    return file->SetItem(FromUtf8(file->content->SectionName(section)), key, value, true);
}

std::vector<std::wstring> FileObject::GetExtraInfo() const {
    std::vector<std::wstring> extra;
    std::string_view text = content->ExtraText();
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        // A line of blanks is none: the padding of a deciphered file must not change its checksum.
        if (line.find_first_not_of(std::string_view(" \t\0", 3)) != std::string_view::npos) {
            extra.push_back(FromUtf8(line));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return extra;
}

std::vector<std::wstring> FileObject::OddLines() const {
    std::vector<std::wstring> odd;
    for (const std::string_view line : content->OddLines()) odd.push_back(FromUtf8(line));
    return odd;
}

}  // namespace orv
