#pragma once

#include <string>
#include <string_view>

#include "platform/Export.h"

/// Paths as texts: nothing here touches the disk. Paths in memory carry '/'; '\' is accepted wherever one comes in.
/// Any thread may call.
namespace orv {

inline constexpr wchar_t kPathSeparator = L'/';
inline constexpr bool IsPathSeparator(wchar_t c) {
    return c == L'/' || c == L'\\';
}

/// Each '\' becomes '/'.
ORV_EXPORT std::wstring ToNativePath(std::wstring_view path);

/// True for a path that needs no base folder: it holds a ':' or two backslashes in a row, or starts with '/'.
ORV_EXPORT bool IsAbsolutePath(std::wstring_view path);
ORV_EXPORT bool EndsInSeparator(std::wstring_view path);
/// `path` with a separator at its end; an empty path stays empty.
ORV_EXPORT std::wstring WithSeparator(std::wstring_view path);
/// `path` without one separator at its end, but for the root folder.
ORV_EXPORT std::wstring WithoutSeparator(std::wstring_view path);

/// Cuts a path into the folder (ends in its separator, empty if there is none), the name without extension and the
/// extension without its dot. The extension starts at the last dot of the last component; a name that begins with its
/// only dot has none.
ORV_EXPORT void SplitPath(std::wstring_view path, std::wstring& folder, std::wstring& name, std::wstring& extension);

/// Name without folder and extension. For a folder path (one that ends in a separator) its last component, whole: a
/// project may be called "Job.1".
ORV_EXPORT std::wstring GetTitleFromPath(std::wstring_view path);

/// Last component with its extension.
ORV_EXPORT std::wstring GetNameFromPath(std::wstring_view path);
/// Everything up to and including the last separator.
ORV_EXPORT std::wstring GetFolderFromPath(std::wstring_view path);

/// True if `name` holds none of the characters < > : " / \ | ? * that users may not put into names.
ORV_EXPORT bool IsAllowedName(std::wstring_view name);

/// True if `name` matches `pattern`, in which '*' stands for any text, ignoring case. "*.*" matches every name.
ORV_EXPORT bool MatchesPattern(std::wstring_view name, std::wstring_view pattern);

/// The path as the operating system takes it, and back. Bytes that aren't UTF-8 come in as U+DC80..U+DCFF and go out as
/// they were, so that such a file stays within reach.
ORV_EXPORT std::string PathToBytes(std::wstring_view path);
ORV_EXPORT std::wstring PathFromBytes(std::string_view bytes);

}  // namespace orv
