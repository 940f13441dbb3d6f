#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <string_view>

#include "core/FileObject.h"

namespace orv {

class ProtectedFileObject;

/// Saves a configuration file that several hosts change at the same time, so that none takes back what another has
/// done. Under a lock that reaches all hosts of a shared folder (SaveLock) the file is read again, and only what this
/// host has changed since it read it is laid on top, item by item. Where two have changed one item the last to save
/// wins, and both values are told (Notice::Information).
///
/// Works beside `FileSave`, which replaces the file as it always has; a host that uses that one doesn't take part. The
/// order of items isn't merged: what is new goes to the end of its section. Main thread; `Save` may wait for others.
class ORV_EXPORT MergeSave {
public:
    /// Remembers what the file object holds now as what was read. It must outlive this.
    explicit MergeSave(FileObject& opened);
    explicit MergeSave(ProtectedFileObject& opened);  ///< signs what it saves

    /// After the object has been opened anew.
    void Remember();
    /// To `name`, or to the object's own name when it is empty. What the others have changed is in the object
    /// afterwards. A name that the object wasn't read from is written as it stands. `whileHeld` runs after the save,
    /// before others may save. False: `LastResult` tells why, and the changes are kept for the next try.
    bool Save(std::wstring_view name = {}, const std::function<void()>& whileHeld = {});
    FsResult LastResult() const { return lastResult; }
    void SetPatience(std::chrono::milliseconds time) { patience = time; }  ///< how long others are waited for

private:
    using Write = std::function<bool(const std::wstring& path)>;
    bool SaveHeld(const std::wstring& path, const std::function<bool()>& isHeld);
    bool Fail(FsResult result);

    FileObject& file;
    Write write;
    FileObject base;
    std::chrono::milliseconds patience;
    FsResult lastResult = FsResult::Ok;
};

}  // namespace orv
