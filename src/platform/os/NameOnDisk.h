#pragma once

#include <string>
#include <string_view>

namespace orv {

enum class LastName {
    Find,       ///< the last component too is matched ignoring case
    AsWritten,  ///< only the folders are
};

/// The bytes under which the system knows `path`. Names are tried as they stand first, then component by component
/// ignoring case; what doesn't exist stays as written. Empty, which no call of the system accepts, for an empty path
/// and for one that holds a NUL: the system would take it for a shorter one.
std::string NameOnDisk(std::wstring_view path, LastName last = LastName::Find);

/// Folder part of a name in bytes, with its separator; "./" if there is none.
std::string FolderOnDisk(const std::string& name);

}  // namespace orv
