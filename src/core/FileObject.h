#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/MemFile.h"
#include "platform/Export.h"

namespace orv {

class ConfigText;
class FileObject;

/// Mode bits of `FileOpen`, `FileSave` and `open`, by the values that are in use.
enum OpenFlags : int {
    kOpenReadExclusive = 16,
    kOpenRead = 32,          ///< deny others write; by far the commonest
    kOpenReadWrite = 34,     ///< deny others write
    kOpenCreateBit = 4096,   ///< the caller knows that the file may be new
    kOpenCreateRead = 4096,  ///< read; an empty file is made if it is missing
    kOpenCreateWrite = 4097,
    kOpenCreateReadWrite = 4098,
    kSave = 4113,  ///< create or truncate, write, exclusive: every normal save
    kBinaryRead = 32800,
    kBinaryReadShared = 32832,
    kBinarySave = 36881,
    kBinaryCreateReadWrite = 36898,
};

/// Error status of a file object and of all classes that derive from it.
enum FileStatusCode : int {
    kFileOk = 0,
    kFileNoFile = 2,     ///< no content to ask
    kFileNoConvert = 3,  ///< the item is there but isn't of the type asked for: a hard failure
    kFileNoSection = 4,
    kFileNoKey = 5,
    kFileNoName = 8,        ///< save without a file name, and none known
    kFileCannotAccess = 9,  ///< can't be written, or its attributes can't be changed
    kFileBadChecksum = 10,
    kFileUnknownTypeKey = 11,
    kFileTypeOutOfRange = 12,
    kFileUnknownViewKey = 13,
    kFileViewOutOfRange = 14,
    kFileUnknownProgramKey = 17,
    kFileProgramOutOfRange = 18,
};

/// A place in a walk over sections, over the items of one section, or over both at once. It holds positions, never
/// pointers into the content, so that it survives whatever is added or deleted during the walk; what it stood on may
/// be gone, and the walk goes on behind it. A copy walks on by itself. Must not outlive the file object for `SetAt`.
class ORV_EXPORT FobjSection {
public:
    /// Sets an item in the section at the cursor; false before the first `GetFirst...` or if that section is gone.
    bool SetAt(std::wstring_view key, std::wstring_view value);

private:
    friend class FileObject;
    FileObject* file = nullptr;
    std::uint64_t sectionStamp = 0, itemStamp = 0;  // grow in walking order, 0 before the first
    std::uint64_t itemSection = 0;                  // stamp of the section whose items are walked
    std::uint32_t sectionPlace = 0, itemPlace = 0;  // where they were last; only a short cut
    std::uint32_t itemSectionPlace = 0;
};

/// A configuration file: sections, each a map from key to text value, held in memory between `FileOpen` and
/// `FileSave`. Every kind of configuration file derives from it.
///
/// Text form: a line "[Name]" starts a section, an item is "Key=Value" on one line (blanks around the equals sign are
/// accepted), a line that starts with ';' is a comment. Lines before the first section are the extra lines. Comments,
/// blank lines, line ends and the order of a file survive reading and saving: changing one item changes one line. See
/// docs/formats/configuration.md.
///
/// Sections and keys are compared exactly, kept in file order, new ones go to the end. A copy carries everything.
/// Nothing is saved but by `FileSave`. One thread at a time; const operations may run on several.
class ORV_EXPORT FileObject {
public:
    static const std::wstring CHECKSUM_SECTION;  ///< "Checksum"

    FileObject();
    FileObject(const FileObject& other);
    FileObject& operator=(const FileObject& other);
    FileObject(FileObject&& other) noexcept;
    FileObject& operator=(FileObject&& other) noexcept;

    // Virtual operations, in their slot order.
    virtual ~FileObject();
    virtual int GetErrorStatus() const { return errorStatus.load(std::memory_order_relaxed); }
    /// Lays the difference file over this one; here nothing, true.
    virtual bool ApplyDifference(const FileObject& difference);

protected:
    /// Called when a file's content has been parsed, before `FileOpen` returns; false makes the open fail.
    virtual bool AfterFileOpen();

public:
    // Open and close.

    /// Reads and parses the whole file; the file itself isn't kept open. With the create bit a missing file is made
    /// empty and gives an empty, initialised object. False: content and name are gone, `LastResult` tells why, the
    /// error status is left alone.
    bool FileOpen(std::wstring_view fileName, int flags);
    bool FileOpen(const memfile& file, std::wstring_view name);  ///< from memory; records `name` as the file name
    bool Read(archive& stream);                                  ///< the content from a stream; the name stays
    bool Write(archive& stream) const;                           ///< the content to a stream
    /// The content of another, in its encoding; name, status and switches stay.
    void TakeContent(const FileObject& other);
    void FileClose();  ///< forgets content and name; safe on an unopened object
    void MakeEmpty();  ///< removes all sections and items; keeps the name and the extra lines
    bool FileInitialised() const { return initialised; }
    const std::wstring& GetFileName() const { return fileName; }
    const std::wstring& GetFileTitle() const { return fileTitle; }

    // Save. Each writes the text as it was read but for what has been changed since.

    /// Writes to `name`, or to the current name when it is empty; object, name and title stay. The file has its old
    /// content or the new one at any moment. Of `flags` only the create bit counts: without it the file must be there.
    /// False: status 8 (no name) or 9.
    bool FileSave(std::wstring_view name, int flags);
    bool FileSave(File& stdioFile) const;
    bool FileSave(memfile& file) const;  ///< in the encoding of `file`
    bool FileSave(CharBuffer& buffer, int encoding) const;

    // Items. A failed GetItem leaves `out` as the caller set it and gives status 2 to 5; a good one gives status 0.

    bool GetItem(std::wstring_view section, std::wstring_view key, int& out) const;
    bool GetItem(std::wstring_view section, std::wstring_view key, unsigned& out) const;
    bool GetItem(std::wstring_view section, std::wstring_view key, long& out) const;
    bool GetItem(std::wstring_view section, std::wstring_view key, float& out) const;
    bool GetItem(std::wstring_view section, std::wstring_view key, double& out) const;
    bool GetItem(std::wstring_view section, std::wstring_view key, std::wstring& out) const;
    bool GetItem(std::wstring_view section, std::wstring_view key, bool& out) const;

    /// Without `create`, section and key must exist. Line breaks and NULs in a value become one blank a run; a key
    /// that is empty, holds '=' or a line break, starts with '[' or ';', or starts or ends with a blank is refused, and
    /// so is a section name that is empty or holds a line break. A bool is written 1 or 0.
    bool SetItem(std::wstring_view section, std::wstring_view key, std::wstring_view value, bool create);
    bool SetItem(std::wstring_view section, std::wstring_view key, const wchar_t* value, bool create);
    bool SetItem(std::wstring_view section, std::wstring_view key, const std::wstring& value, bool create);
    bool SetItem(std::wstring_view section, std::wstring_view key, int value, bool create);
    bool SetItem(std::wstring_view section, std::wstring_view key, unsigned value, bool create);
    bool SetItem(std::wstring_view section, std::wstring_view key, long value, bool create);
    bool SetItem(std::wstring_view section, std::wstring_view key, double value, bool create);
    bool SetItem(std::wstring_view section, std::wstring_view key, bool value, bool create);
    bool SetItem(std::wstring_view section, std::wstring_view key, const void* value, bool create) = delete;

    bool HasSection(std::wstring_view section) const;
    bool HasKey(std::wstring_view section, std::wstring_view key) const;
    /// `acceptExisting`: an existing section is fine, and is kept as it is; otherwise false if it exists.
    bool CreateSection(std::wstring_view section, bool acceptExisting);
    bool DeleteSection(std::wstring_view section);
    /// The same during a walk; the cursor goes on with the section behind it.
    bool DeleteSection(FobjSection& cursor, std::wstring_view section);
    /// `acceptMissing`: an item that isn't there is fine.
    bool DeleteItem(std::wstring_view section, std::wstring_view key, bool acceptMissing);
    /// False, and nothing changes, if the old one is missing or the new one exists. The place in the file is kept.
    bool RenameSection(std::wstring_view oldName, std::wstring_view newName);
    /// Replaces the destination as a whole. False, and nothing changes, if the source is missing.
    bool CopySection(std::wstring_view destination, std::wstring_view source);
    bool CopySection(std::wstring_view destination, std::wstring_view source, const FileObject& sourceFile);

    // Walks, in file order.

    bool GetFirstSectionEntry(FobjSection& cursor, std::wstring& name) const;
    bool GetNextSectionEntry(FobjSection& cursor, std::wstring& name) const;
    bool GetFirstMapEntry(FobjSection& cursor, std::wstring_view section, std::wstring& key, std::wstring& value) const;
    bool GetNextMapEntry(FobjSection& cursor, std::wstring& key, std::wstring& value) const;

    /// The lines outside every section, in file order.
    std::vector<std::wstring> GetExtraInfo() const;

    /// While it is on, a GetItem that finds nothing throws a std::wstring with a message.
    void ThrowExceptions(bool on) { throwing = on; }
    void SetReadStatus(bool status) { readStatus = status; }
    bool GetReadStatus() const { return readStatus; }

    /// What the last open or save of a file came to, for tools; the stated result is the bool.
    FsResult LastResult() const { return lastResult; }
    /// Lines that are neither item, section, comment nor blank, as they stand; for tools that check a file.
    std::vector<std::wstring> OddLines() const;

protected:
    /// An open handle for a derived class's own writing. `isopen` is false if it can't be had.
    fhandle open(std::wstring_view path, int flags) const;
    void SetErrorStatus(int status) const { errorStatus.store(status, std::memory_order_relaxed); }
    bool SetSection(FobjSection& cursor, std::wstring_view section);  ///< puts the cursor on a section
    void SetKeepOpen(bool on) { keepOpen = on; }
    bool KeepOpen() const { return keepOpen; }

    /// The content, for operations that walk it all without making texts of it.
    const ConfigText& Content() const { return *content; }
    /// The same for a walk that sets values as it goes.
    ConfigText& Content() { return *content; }
    /// Puts a copy of the file on disk aside as NAME.damaged-TIME if its text couldn't be understood as it stands,
    /// before it is written again unasked; false if it had to and couldn't.
    bool KeepDamagedFile();
    std::wstring errorText;  ///< what `ProtectedFileObject` reports when it refuses a file

private:
    friend class FobjSection;
    bool Parse(std::shared_ptr<const std::string> bytes);
    void SetName(std::wstring_view name);
    bool PutAside(std::wstring_view path);
    template <class T>
    bool Get(std::wstring_view section, std::wstring_view key, T& out) const;

    std::unique_ptr<ConfigText> content;
    std::wstring fileName, fileTitle;
    // Queries write these too, and workers query what the main thread holds.
    mutable std::atomic<int> errorStatus = 0;
    mutable std::atomic<FsResult> lastResult = FsResult::Ok;
    bool initialised = false;
    bool throwing = false;
    bool readStatus = false;
    bool keepOpen = false;
    bool keptAside = false;
};

}  // namespace orv
