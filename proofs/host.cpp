// One host of a shared folder, as the proofs run several:
//   save FILE NAME COUNT   COUNT merge saves, each of an item NAME<i> of its own
//   read FILE STOPFILE     opens the signed file over and over until STOPFILE is there; how often, and how often it was
//   torn count FILE             the number of items hold FILE              takes the lock, says so, and waits to be
//   killed take FILE              takes the lock; how long that took in ms watch FILE COUNT       prints the time in ms
//   since 1970 at each change by another change FILE own|other VALUE   saves; "own" as somebody who watches the file
//   himself, and counts what he is told

#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <string>
#include <thread>

#include "core/MergeSave.h"
#include "core/ProtectedFileObject.h"
#include "platform/os/FileTools.h"
#include "platform/os/SaveLock.h"
#include "platform/text/NumberText.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"
#include "platform/watch/FileSubscription.h"

namespace {

using namespace orv;
using std::chrono::milliseconds;

long long Now() {
    return std::chrono::duration_cast<milliseconds>(std::chrono::system_clock::now().time_since_epoch()).count();
}

void Say(const std::string& text) {
    std::puts(text.c_str());
    std::fflush(stdout);
}

int Save(const std::wstring& path, const std::wstring& name, int count) {
    ProtectedFileObject file;
    if (!file.FileOpen(path, true, kOpenRead)) return 1;
    MergeSave merge(file);
    for (int i = 1; i <= count; ++i) {
        if (!file.SetItem(L"Shared", name + IntText(i), i, true) || !merge.Save()) {
            Say("save " + std::to_string(i) + " failed: " + ToUtf8(FsResultText(merge.LastResult())));
            return 1;
        }
    }
    return 0;
}

int Read(const std::wstring& path, const std::wstring& stop) {
    int reads = 0, torn = 0, refused = 0;
    for (; !FileExists(stop); ++reads) {
        ProtectedFileObject file;
        if (file.FileOpen(path, true, kOpenRead)) continue;
        // Such a mount moves an open file aside before another takes its name.
        const bool away = file.LastResult() == FsResult::NotFound || file.LastResult() == FsResult::InUse;
        ++(away ? refused : torn);
    }
    Say(std::to_string(reads) + " " + std::to_string(torn) + " " + std::to_string(refused));
    return torn == 0 ? 0 : 1;
}

int Count(const std::wstring& path) {
    ProtectedFileObject file;
    if (!file.FileOpen(path, true, kOpenRead)) return 1;
    FobjSection cursor;
    std::wstring key, value;
    int items = 0;
    for (bool more = file.GetFirstMapEntry(cursor, L"Shared", key, value); more;
         more = file.GetNextMapEntry(cursor, key, value)) {
        ++items;
    }
    Say(std::to_string(items));
    return 0;
}

int Hold(const std::wstring& path) {
    SaveLock lock(path);
    if (lock.Take() != FsResult::Ok) return 1;
    Say("held");
    for (;;) pause();
}

int Take(const std::wstring& path) {
    const auto start = std::chrono::steady_clock::now();
    SaveLock lock(path);
    if (lock.Take() != FsResult::Ok) return 1;
    Say(std::to_string(std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - start).count()));
    return 0;
}

class Teller : public Subscriber {
public:
    void OnNotify() override {
        Say(std::to_string(Now()));
        ++calls;
    }
    std::atomic<int> calls = 0;
};

int Watch(const std::wstring& path, int count) {
    Teller teller;
    FileSubscription subscription;
    subscription.SetSubscriber(&teller, false);
    subscription.Subscribe(path);
    Say("watching");
    for (int waited = 0; teller.calls < count && waited < 20'000; waited += 10)
        std::this_thread::sleep_for(milliseconds(10));
    return teller.calls == count ? 0 : 1;
}

int Change(const std::wstring& path, bool own, const std::wstring& value) {
    Teller teller;
    FileSubscription subscription;
    FileObject file;
    if (!file.FileOpen(path, kOpenCreateRead) || !file.SetItem(L"Shared", L"Value", value, true)) return 1;
    if (own) {
        subscription.SetSubscriber(&teller, false);
        subscription.Subscribe(path);
        subscription.Unsubscribe();
    }
    const bool saved = file.FileSave(path, kSave);
    const long long when = Now();
    if (own) {
        subscription.Subscribe(path);
        std::this_thread::sleep_for(milliseconds(2'500));  // past the time of a look in turn
        Say(std::to_string(teller.calls));
    } else {
        Say(std::to_string(when));
    }
    return saved ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string command = argc > 2 ? argv[1] : "";
    const std::wstring path = argc > 2 ? PathFromBytes(argv[2]) : L"";
    const auto text = [&](int i) { return argc > i ? PathFromBytes(argv[i]) : std::wstring(); };
    if (command == "save") return Save(path, text(3), ParseInt(text(4)).value_or(0));
    if (command == "read") return Read(path, text(3));
    if (command == "count") return Count(path);
    if (command == "hold") return Hold(path);
    if (command == "take") return Take(path);
    if (command == "watch") return Watch(path, ParseInt(text(3)).value_or(1));
    if (command == "change") return Change(path, text(3) == L"own", text(4));
    return 2;
}
