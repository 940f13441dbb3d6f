#pragma once

#include <string>
#include <string_view>

#include "platform/Export.h"

namespace orv {

/// Full path of the running program; false if the platform gives none or it is longer than `limit` UTF-16 units.
[[nodiscard]] ORV_EXPORT bool GetProgramPath(std::wstring& path, std::size_t limit = 260);
/// A host that isn't itself the program (a script's interpreter, a test) says here what stands for it; an empty text
/// puts the real one back.
ORV_EXPORT void SetProgramPath(std::wstring_view path);
/// Makes `GetProgramPath` fail until it is set again, for tests.
ORV_EXPORT void SetProgramPathMissing();

/// Path of the module that holds this library's file type table: the program's, as `GetProgramPath`.
[[nodiscard]] ORV_EXPORT bool GetModulePath(std::wstring& path, std::size_t limit = 260);
/// Folder of the running program, with its separator; empty if unknown.
ORV_EXPORT std::wstring GetAppPath();

/// Replaces the folder of the running program by the data root that belongs to it: from a build tree the source tree's
/// data/ (the build writes a file "orv-data-root" beside its programs that holds that path), from an installed
/// `PREFIX/bin/` the folder `PREFIX/share/orv/`; from anywhere else, unless *.ini files lie there, the share/orv/ of
/// the prefix that this library is installed in. True if it changed `folder`; it ends in a separator then.
ORV_EXPORT bool CheckAppPathForDevelopEnvironment(std::wstring& folder);

}  // namespace orv
