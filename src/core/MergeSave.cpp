#include "core/MergeSave.h"

#include <optional>
#include <thread>

#include "core/ProtectedFileObject.h"
#include "platform/notify/Notices.h"
#include "platform/os/FileTools.h"
#include "platform/os/SaveLock.h"

namespace orv {

namespace {

using Value = std::optional<std::wstring>;

Value ValueOf(const FileObject& file, const std::wstring& section, const std::wstring& key) {
    std::wstring value;
    // Asked first, as a query that finds nothing may be set to throw.
    if (!file.HasKey(section, key) || !file.GetItem(section, key, value)) return std::nullopt;
    return value;
}

template <class Visit>
void ForEachSection(const FileObject& file, Visit visit) {
    FobjSection cursor;
    std::wstring section;
    for (bool more = file.GetFirstSectionEntry(cursor, section); more;
         more = file.GetNextSectionEntry(cursor, section)) {
        if (section != FileObject::CHECKSUM_SECTION) visit(section);  // each save makes its own
    }
}

template <class Visit>
void ForEachItem(const FileObject& file, const std::wstring& section, Visit visit) {
    FobjSection cursor;
    std::wstring key, value;
    for (bool more = file.GetFirstMapEntry(cursor, section, key, value); more;
         more = file.GetNextMapEntry(cursor, key, value)) {
        visit(key, value);
    }
}

/// A shared volume may show a file as gone for the moment in which it is replaced.
bool IsThere(const std::wstring& path) {
    for (int look = 0; look < 3; ++look) {
        if (FileExists(path)) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

/// Lays the changes from `base` to `mine` over `theirs`, which has changed from `base` in its own way.
class Merge {
public:
    Merge(const FileObject& from, const FileObject& to, FileObject& over) : base(from), mine(to), theirs(over) {}

    void Run() {
        ForEachSection(base, [this](const std::wstring& section) {
            if (!mine.HasSection(section)) TakeAway(section);
        });
        ForEachSection(mine, [this](const std::wstring& section) {
            if (base.HasSection(section) && !theirs.HasSection(section)) {
                PutBack(section);
            } else {
                theirs.CreateSection(section, true);
                Change(section);
            }
        });
    }

private:
    static std::wstring Shown(const Value& value) { return value ? L"\"" + *value + L"\"" : L"deleted"; }

    void Set(const std::wstring& section, const std::wstring& key, const Value& value, const Value& before) {
        const Value there = ValueOf(theirs, section, key);
        if (there == value) return;
        if (there != before) {
            Notify(Notice::Information, theirs.GetFileName() + L": [" + section + L"] " + key +
                                            L" was changed by two hosts at once: " + Shown(there) +
                                            L" by another, then " + Shown(value) + L" here, which holds");
        }
        if (value) {
            theirs.SetItem(section, key, *value, true);
        } else {
            theirs.DeleteItem(section, key, true);
        }
    }

    void Change(const std::wstring& section) {
        ForEachItem(mine, section, [&](const std::wstring& key, const std::wstring& value) {
            const Value before = ValueOf(base, section, key);
            if (before != value) Set(section, key, value, before);
        });
        ForEachItem(base, section, [&](const std::wstring& key, const std::wstring& value) {
            if (!mine.HasKey(section, key)) Set(section, key, std::nullopt, value);
        });
    }

    void TakeAway(const std::wstring& section) {
        ForEachItem(base, section, [&](const std::wstring& key, const std::wstring& value) {
            Set(section, key, std::nullopt, value);
        });
        std::wstring added;
        ForEachItem(theirs, section, [&](const std::wstring& key, const std::wstring&) { added += L" " + key; });
        if (!added.empty()) {
            Notify(Notice::Information, theirs.GetFileName() + L": [" + section +
                                            L"] was deleted here; another host had added to it:" + added);
        }
        theirs.DeleteSection(section);
    }

    // Another host has deleted the section. If ours has changed since, all of it comes back: a part of it would be
    // neither what the one wanted nor the other.
    void PutBack(const std::wstring& section) {
        std::wstring changed;
        ForEachItem(mine, section, [&](const std::wstring& key, const std::wstring& value) {
            if (ValueOf(base, section, key) != value) changed += L" " + key + L"=\"" + value + L"\"";
        });
        if (changed.empty()) return;
        Notify(Notice::Information, theirs.GetFileName() + L": [" + section +
                                        L"] was deleted by another host and changed here, and is back:" + changed);
        theirs.CopySection(section, section, mine);
    }

    const FileObject& base;
    const FileObject& mine;
    FileObject& theirs;
};

}  // namespace

MergeSave::MergeSave(FileObject& opened)
    : file(opened),
      write([&opened](const std::wstring& path) { return opened.FileSave(path, kSave); }),
      base(opened),
      patience(SaveLock::kPatience) {}

MergeSave::MergeSave(ProtectedFileObject& opened)
    : file(opened),
      write([&opened](const std::wstring& path) { return opened.FileSave(path, 0, kSave); }),
      base(opened),
      patience(SaveLock::kPatience) {}

void MergeSave::Remember() {
    base = file;
}

bool MergeSave::Fail(FsResult result) {
    lastResult = result;
    return false;
}

bool MergeSave::Save(std::wstring_view name, const std::function<void()>& whileHeld) {
    const std::wstring path(name.empty() ? std::wstring_view(file.GetFileName()) : name);
    if (path.empty()) return Fail(FsResult::NotFound);
    // A holder that was stopped for long may find that it holds the lock no more: all of it again.
    for (int tries = 0; tries < 3; ++tries) {
        SaveLock lock(path);
        if (const FsResult taken = lock.Take(patience); taken != FsResult::Ok) {
            if (taken == FsResult::InUse) Notify(Notice::Information, path + L" is being saved by " + lock.Holder());
            return Fail(taken);
        }
        lastResult = FsResult::InUse;
        const bool saved = SaveHeld(path, [&lock] { return lock.IsHeld(); });
        if (saved && whileHeld) whileHeld();
        if (saved || lastResult != FsResult::InUse || lock.IsHeld()) return saved;
    }
    return Fail(FsResult::InUse);
}

bool MergeSave::SaveHeld(const std::wstring& path, const std::function<bool()>& isHeld) {
    if (path == file.GetFileName() && IsThere(path)) {
        FileObject theirs;
        if (!theirs.FileOpen(path, kOpenRead)) return Fail(theirs.LastResult());
        const FileObject read = theirs;
        Merge(base, file, theirs).Run();
        file.TakeContent(theirs);
        base = read;
    }
    if (!isHeld()) return Fail(FsResult::InUse);
    if (!write(path)) return Fail(file.LastResult());
    base = file;
    lastResult = FsResult::Ok;
    return true;
}

}  // namespace orv
