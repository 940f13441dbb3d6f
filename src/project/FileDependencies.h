#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/Export.h"

namespace orv {

/// Which files a configuration file drags along: what a copy or an archive of a project has to take. Each file is
/// listed where it is met, before what it needs itself; one that is needed twice stands there twice. Whether a file
/// exists isn't asked: what doesn't open needs nothing.
///
/// Files that list each other end where a file would lie below itself. One thread at a time.
class ORV_EXPORT FileDependencies {
public:
    /// A file that needs others needs at most a few levels of them; what goes beyond these is a file that was damaged
    /// or made to exhaust its reader, and `IsComplete` tells of it.
    static constexpr std::size_t kMaxLevels = 64, kMaxFollowed = 10'000, kMaxFiles = 1'000'000;

    /// Adds a file by its full path, and what it needs; an empty path is passed over.
    void Add(const std::wstring& path);
    /// By file type and name. False for an empty name and where the type has no folder (see `Unresolved`).
    bool Add(unsigned type, const std::wstring& file);

    int GetSize() const { return static_cast<int>(files.size()); }
    /// Throws std::invalid_argument for an index out of range.
    std::wstring operator[](int index) const;

    /// How deep a file lies: 0 for what was added from outside. The next file of a higher level is needed by this one.
    int GetLevel(int index) const;
    /// False when the walk was cut short at one of the limits.
    bool IsComplete() const { return complete; }

    /// A file that is needed but can't be named in full.
    struct Unresolved {
        int after;  ///< how many files stand in the list ahead of it
        int level;
        unsigned type;
        std::wstring name;
    };
    const std::vector<Unresolved>& GetUnresolved() const { return unresolved; }

private:
    struct Entry {
        std::wstring path;
        int level;
    };
    void Follow(const std::wstring& path);
    const Entry& At(int index) const;

    std::vector<Entry> files;
    std::vector<Unresolved> unresolved;
    std::vector<std::wstring> chain;  // files that are being followed, the outermost first
    std::size_t followed = 0;
    bool complete = true;
};

}  // namespace orv
