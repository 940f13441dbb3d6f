#include "surveydata/ShapeSelection.h"

#include <algorithm>

#include "core/COrvString.h"
#include "core/ConfigKeys.h"
#include "core/FileObject.h"
#include "platform/attributes/CAttributeMap.h"
#include "platform/text/NumberText.h"

namespace orv {

namespace {

constexpr std::wstring_view kShapeSelection = L"ShapeSelection";
constexpr std::wstring_view kType2D = L"2DModelType", kType3D = L"3DModelType", kStudioModel = L"3DStudioModel";
constexpr std::wstring_view kVesselContour = L"VesselContour", kVesselWireframe = L"VesselWireframe";
constexpr int kWithoutGroup = 7;

/// The old files say type and name only; both views share a file where the types name the same kind of file.
bool SameKind(int type2D, int type3D) {
    return type3D >= 0 && type3D < static_cast<int>(ShapeTypes3D.size()) && type2D == type3D + 1;
}

}  // namespace

bool ShapeSelection::Load(std::wstring_view text) {
    const COrvString items(text, L',', true);
    if (items.Size() < kWithoutGroup) return false;
    ShapeSelection read = *this;
    if (!items.GetItem(0, read.shapeMode) || !items.GetItem(1, read.shapeType2D) ||
        !items.GetItem(2, read.shapeType3D) || !items.GetItem(3, read.useSameShape) ||
        !items.GetItem(4, read.standardShape) || !items.GetItem(5, read.shape2D) || !items.GetItem(6, read.shape3D)) {
        return false;
    }
    if (!items.GetItem(kWithoutGroup, read.standardShapeGroup)) {
        const auto row = std::find(fileTypeSubKeys.begin(), fileTypeSubKeys.end(), items[kWithoutGroup]);
        if (row != fileTypeSubKeys.end()) read.standardShapeGroup = static_cast<int>(row - fileTypeSubKeys.begin());
    }
    *this = std::move(read);
    return true;
}

bool ShapeSelection::Save(std::wstring& text) const {
    for (const std::wstring* name : {&standardShape, &shape2D, &shape3D}) {
        if (name->find(L',') != name->npos) return false;
    }
    COrvString items(L',');
    items += shapeMode;
    items += shapeType2D;
    items += shapeType3D;
    items += useSameShape ? 1 : 0;
    items.AddItem(standardShape);
    items.AddItem(shape2D);
    items.AddItem(shape3D);
    items += standardShapeGroup;
    text = items.GetString();
    return true;
}

bool ShapeSelection::Load(const FileObject* file, std::wstring_view section) {
    if (!file) return false;
    std::wstring text;
    if (file->GetItem(section, kShapeSelection, text) && !text.empty()) return Load(text);
    ShapeSelection old = *this;
    if (!old.LoadOld(*file, section)) return false;
    *this = std::move(old);
    return true;
}

bool ShapeSelection::LoadOld(const FileObject& file, std::wstring_view section) {
    shapeMode = 1;
    std::wstring contour, wireframe, studioModel;
    if (!file.HasKey(section, kType2D)) {
        if (!file.GetItem(section, kVesselContour, contour)) return false;
        file.GetItem(section, kVesselWireframe, wireframe);
        useSameShape = !wireframe.empty();
        shapeType2D = useSameShape ? 1 : 0;
        shapeType3D = 0;
        shape2D = useSameShape ? wireframe : contour;
        if (useSameShape) shape3D = wireframe;
        return true;
    }
    if (!file.GetItem(section, kType2D, shapeType2D) || !file.GetItem(section, kType3D, shapeType3D) ||
        !file.GetItem(section, kVesselContour, contour) || !file.GetItem(section, kVesselWireframe, wireframe) ||
        !file.GetItem(section, kStudioModel, studioModel)) {
        return false;
    }
    if (shapeType2D == 0) shape2D = contour;
    if (shapeType2D == 1) shape2D = wireframe;
    if (shapeType3D == 0) shape3D = wireframe;
    if (shapeType3D == 1) shape3D = studioModel;
    useSameShape = shapeType2D == 1 && shapeType3D == 0;
    return true;
}

bool ShapeSelection::Save(FileObject* file, std::wstring_view section) const {
    std::wstring text;
    return file && Save(text) && file->SetItem(section, kShapeSelection, text, true);
}

bool ShapeSelection::Load(const CAttributeMap& attributes, int segment) {
    std::wstring text;
    if (attributes.GetAttribValue(kShapeSelection, segment, text) && !text.empty()) return Load(text);
    ShapeSelection old = *this;
    if (!old.LoadOld(attributes, segment)) return false;
    *this = std::move(old);
    return true;
}

bool ShapeSelection::LoadOld(const CAttributeMap& attributes, int segment) {
    constexpr int kSegmentsAlike = 2;  // driver version from which the head is a segment like the others
    shapeMode = 1;
    int version = 0;
    attributes.GetAttribValue(L"DriverVersion", version);
    std::wstring contour, wireframe, studioModel, sketchUpModel;
    bool found;
    if (version == kSegmentsAlike) {
        found = attributes.GetAttribValue(L"SectionShape", segment, contour);
    } else {
        found = attributes.GetAttribValue(segment == 0 ? L"DredgeHeadShape" : L"Section" + IntText(segment) + L"Shape",
                                          contour);
    }
    if (!found) return false;
    attributes.GetAttribValue(L"WireframeName", segment, wireframe);
    attributes.GetAttribValue(kStudioModel, segment, studioModel);
    attributes.GetAttribValue(L"SketchUpModel", segment, sketchUpModel);
    shapeType2D = wireframe.empty() ? 0 : 1;
    attributes.GetAttribValue(kType2D, segment, shapeType2D);
    shapeType3D = 0;
    attributes.GetAttribValue(kType3D, segment, shapeType3D);
    const std::wstring* const shapes[] = {&contour, &wireframe, &studioModel, &sketchUpModel};
    if (shapeType2D >= 0 && shapeType2D <= 3) shape2D = *shapes[shapeType2D];
    if (shapeType3D >= 0 && shapeType3D <= 2) shape3D = *shapes[shapeType3D + 1];
    useSameShape = SameKind(shapeType2D, shapeType3D);
    return true;
}

bool ShapeSelection::Save(CAttributeMap& attributes, int segment) const {
    std::wstring text;
    if (!Save(text)) return false;
    attributes.Add(kShapeSelection, kAttribString, 0, segment);
    return attributes.SetAttribValue(kShapeSelection, segment, text);
}

}  // namespace orv
