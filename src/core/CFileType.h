#pragma once

#include <string>

#include "platform/Export.h"

namespace orv {

/// Names a class of the host that edits or makes files of a type; nothing here calls it.
using ClassReference = const void*;

/// One kind of file that the suite knows.
class ORV_EXPORT CFileType {
public:
    CFileType(std::wstring fileId, unsigned number, std::wstring withoutDot, int pathLocation, std::wstring name,
              std::wstring text);
    virtual ~CFileType() = default;
    CFileType(const CFileType&) = default;
    CFileType& operator=(const CFileType&) = default;

    const std::wstring& GetFileID() const { return key; }
    const std::wstring& GetExtension() const { return extension; }  ///< without the dot
    /// In the user's language where a translator is active.
    std::wstring GetDescription() const;
    const std::wstring& GetStoredDescription() const { return description; }
    ClassReference GetEditor() const { return editor; }
    void SetEditor(ClassReference value) { editor = value; }
    ClassReference GetFileCreator() const { return creator; }
    void SetFileCreator(ClassReference value) { creator = value; }
    const std::wstring& GetDefaultName() const { return defaultName; }  ///< may hold a placeholder
    int GetLocation() const { return location; }
    void SetLocation(int value) { location = value; }
    unsigned GetID() const { return id; }
    unsigned GetBmpId() const { return bitmapId; }
    void SetFileBmpId(unsigned value) { bitmapId = value; }
    int GetExpFilter() const { return exportFilter; }
    void SetExpFilter(int value) { exportFilter = value; }
    bool CanCreate() const { return canCreate; }
    bool CanSelect() const { return canSelect; }
    bool IsSupported() const { return supported; }
    bool IsViewable() const { return viewable; }
    void SetViewable(bool value) { viewable = value; }
    /// Mind the order: create, select, supported.
    void SetPermissions(bool create, bool select, bool isSupported);
    void Edit(const std::wstring& name);  ///< does nothing: the type's editor belongs to the host

private:
    std::wstring key, extension, description;
    ClassReference editor = nullptr, creator = nullptr;
    std::wstring defaultName;
    int location;
    unsigned id;
    unsigned bitmapId = static_cast<unsigned>(-1);
    int exportFilter = 0;
    bool canCreate = false, canSelect = false, supported = false, viewable = false;
};

}  // namespace orv
