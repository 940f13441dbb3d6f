#pragma once

#include <map>
#include <memory>
#include <string>

#include "core/CFileType.h"
#include "platform/Export.h"

namespace orv {

class FileObject;

inline constexpr unsigned kFileTypeCount = 147;  ///< bound of file type ids
inline constexpr unsigned kNoFileType = static_cast<unsigned>(-1);

/// The registry of file types: a fixed table, with the descriptions of the file type definition file. Filled by
/// `Initialise` on the main thread; queries after that from any thread.
class ORV_EXPORT CFileTypeList {
public:
    using Map = std::map<std::wstring, std::unique_ptr<CFileType>, std::less<>>;
    struct Iterator {
        Map::const_iterator at;
        bool beforeFirst = false;
    };

    /// Fills the registry. Again: permissions and rows stay, display attributes are set anew. A missing definition file
    /// leaves all descriptions empty.
    void Initialise();

    CFileType* GetFileType(const std::wstring& key) const;      ///< null if unknown
    CFileType* GetFileTypeSafe(const std::wstring& key) const;  ///< the row `Unknown` rather than null
    CFileType* GetFileTypeID(unsigned id) const;                ///< first in key order, or null
    CFileType* GetFileTypeExt(
        const std::wstring& extension) const;           ///< first in key order, exact, without dot, or null
    unsigned GetFileID(const std::wstring& key) const;  ///< all ones if unknown
    std::wstring GetFileKey(unsigned id) const;         ///< empty if unknown
    std::wstring GetFileExtension(unsigned id) const;   ///< without dot; empty if unknown
    /// All false if unknown. Mind the orders of these two.
    void GetFilePermissions(const std::wstring& key, bool& supported, bool& create, bool& select) const;
    void SetFileClientPermissions(const std::wstring& key, bool supported, bool select, bool create);

    /// Stands before the first row: `GetNext` gives it.
    void GetFirst(Iterator& iterator) const { iterator = {types.begin(), true}; }
    bool GetFirst(Iterator& iterator, std::wstring& key, CFileType*& type) const;  ///< false if the registry is empty
    bool GetNext(Iterator& iterator, std::wstring& key, CFileType*& type) const;   ///< false at the end
    bool UserGeneralUsed() const;  ///< whether any row has the user's general folder (location 5)

private:
    void AddFileType(const FileObject& ini, const std::wstring& key, unsigned id, const std::wstring& extension,
                     int location, const std::wstring& defaultName, ClassReference editor, ClassReference creator,
                     unsigned bitmapId, int exportFilter, bool viewable);
    bool Give(Map::const_iterator iterator, std::wstring& key, CFileType*& type) const;
    Map types;
    CFileType* unknown = nullptr;
};

/// The one instance.
ORV_EXPORT CFileTypeList& GetFileTypeList();

}  // namespace orv
