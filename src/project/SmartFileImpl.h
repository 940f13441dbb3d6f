#pragma once

#include <memory>
#include <string>

#include "core/FileObject.h"
#include "core/MergeSave.h"
#include "platform/watch/FileSubscription.h"

namespace orv {

/// A configuration file that tells when another has changed it on disk. Opens and saves by file type and name. Main
/// thread, but for the subscriber, who is called on the thread of the subscriptions (see FileSubscription).
class ORV_EXPORT SmartFileImpl {
public:
    explicit SmartFileImpl(std::unique_ptr<FileObject> owned) : file(std::move(owned)) {}

    FileObject& GetFileObject() { return *file; }
    const FileObject& GetFileObject() const { return *file; }
    void FileClose() { file->FileClose(); }  ///< the subscription stays
    /// False for an empty name, a type without a folder and a file that doesn't open. From here on changes are told, if
    /// there is a subscriber, also of a file that is yet to come.
    bool FileOpen(unsigned type, const std::wstring& name);
    /// A save of one's own isn't told.
    bool FileSave(unsigned type, const std::wstring& name);
    /// Where several hosts change the file: saves then lay this host's changes over what is on disk (see MergeSave),
    /// from what the file is now on. Off at first: a save replaces the file.
    void SetMergeSave(bool on);

    void SetSubscriber(Subscriber* subscriber, bool owned) { subscription.SetSubscriber(subscriber, owned); }
    Subscriber* GetSubscriber() const { return subscription.GetSubscriber(); }
    void Subscribe(const std::wstring& path) { subscription.Subscribe(path); }
    void Unsubscribe() { subscription.Unsubscribe(); }
    void SetNoContinuation(bool once) { subscription.SetNoContinuation(once); }

private:
    std::unique_ptr<FileObject> file;  // never null
    std::unique_ptr<MergeSave> merge;  // while it is on
    FileSubscription subscription;     // goes first: its subscriber may be looking at the file
};

}  // namespace orv
