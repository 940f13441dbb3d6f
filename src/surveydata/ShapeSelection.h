#pragma once

#include <array>
#include <limits>
#include <string>
#include <string_view>

#include "platform/Export.h"

namespace orv {

class CAttributeMap;
class FileObject;

/// File types of the shape types: index is the stored 2D type (0 contour, 1 wireframe, 2 studio model, 3 sketch-up
/// model) or 3D type (0 wireframe, 1 studio model, 2 sketch-up model).
inline constexpr std::array<unsigned, 4> ShapeTypes2D = {4, 83, 59, 108};
inline constexpr std::array<unsigned, 3> ShapeTypes3D = {83, 59, 108};

/// Which shape a vessel or a segment of a dredge tool is drawn with: a file for each view, or a standard shape of a
/// group. Kept as one text "mode,2D type,3D type,same,standard shape,2D shape,3D shape,group" (see
/// docs/formats/vessel.md). Files from before that text are read, too. A value: one thread at a time.
class ORV_EXPORT ShapeSelection {
public:
    int GetShapeMode() const { return shapeMode; }  ///< 1 after a load from the keys of old files
    void SetShapeMode(int mode) { shapeMode = mode; }
    /// With the same shape in both views the 3D one serves, in the numbering of the 2D types.
    int Get2DShapeType() const {
        const bool counts = shapeType3D < std::numeric_limits<int>::max();  // a damaged file holds anything
        return useSameShape ? shapeType3D + (counts ? 1 : 0) : shapeType2D;
    }
    void Set2DShapeType(int type) { shapeType2D = type; }
    int Get3DShapeType() const { return shapeType3D; }
    void Set3DShapeType(int type) { shapeType3D = type; }
    int GetStandardShapeGroup() const { return standardShapeGroup; }  ///< row of fileTypeSubKeys, -1 for none
    void SetStandardShapeGroup(int group) { standardShapeGroup = group; }
    const std::wstring& GetStandardShape() const { return standardShape; }
    void SetStandardShape(const std::wstring& name) { standardShape = name; }
    const std::wstring& Get2DShape() const { return useSameShape ? shape3D : shape2D; }
    void Set2DShape(const std::wstring& name) { shape2D = name; }
    const std::wstring& Get3DShape() const { return shape3D; }
    void Set3DShape(const std::wstring& name) { shape3D = name; }
    bool GetUseSameShape() const { return useSameShape; }
    void SetUseSameShape(bool same) { useSameShape = same; }

    // A load that fails changes nothing. A save fails if a name holds a comma, for the text couldn't be read again.

    bool Load(std::wstring_view text);
    bool Save(std::wstring& text) const;
    bool Load(const FileObject* file, std::wstring_view section);  ///< false for a null file
    bool Save(FileObject* file, std::wstring_view section) const;
    bool Load(const CAttributeMap& attributes, int segment);  ///< segments count from 0
    bool Save(CAttributeMap& attributes, int segment) const;

    bool operator==(const ShapeSelection&) const = default;

private:
    bool LoadOld(const FileObject& file, std::wstring_view section);
    bool LoadOld(const CAttributeMap& attributes, int segment);

    int shapeMode = 0, shapeType2D = 1, shapeType3D = 0, standardShapeGroup = -1;
    std::wstring standardShape, shape2D, shape3D;
    bool useSameShape = true;
};

}  // namespace orv
