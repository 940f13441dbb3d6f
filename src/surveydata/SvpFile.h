#pragma once

#include <string>
#include <vector>

#include "core/FileObject.h"
#include "platform/values/Point.h"
#include "surveydata/SvpPoint.h"

namespace orv {

/// A sound velocity profile: samples from the surface (index 0) down, and one correction that is added to every
/// velocity on request. The editing operations keep the order; a file's own order is kept as it is. See
/// docs/formats/svp.md.
///
/// A plain value; opens no file itself. One thread at a time. A Point of a sample has its velocity as x, its depth as
/// y and 0 as z.
class ORV_EXPORT SvpFile {
public:
    std::wstring GetFilename() const { return fileName; }
    int GetNumPoints() const { return static_cast<int>(points.size()); }
    bool IsModified() const { return modified; }
    float GetSVOffset() const { return SVOffset; }
    void SetSVOffset(float offset);

    /// Takes the content of a file that is already open. Always true: what is missing is empty, or 0.
    bool FileOpen(const FileObject& file);
    /// Puts the profile into the file object, whose saving is up to the caller. False, and nothing is written, for an
    /// unmodified profile: ask IsModified first.
    bool FileSave(FileObject& file);
    void Clear() { points.clear(); }  ///< modified flag and offset stay

    int InsertElement(const Point& point);  ///< in its place by depth, in front of its like; returns the index
    int InsertElement(const SvpPoint& sample);
    void AddElement(const Point& point);  ///< at the end, whatever its depth
    void DeleteElement(int index);        ///< out of range: nothing

    /// An index out of range gives a point of zeros here, false below. `withOffset` adds the file's correction.
    Point GetPoint(int index, bool withOffset) const;
    bool GetPoint(int index, Point& point, bool withOffset) const;
    bool GetPoint(int index, SvpPoint& sample, bool withOffset) const;

    /// Gives the sample at `index` new values and moves it where its depth belongs; `index` becomes its new place. On
    /// the depth of another sample only that one's velocity is replaced, and the edited sample goes if
    /// `mergeEqualDepth` is set. An index behind the end, as an editor has it whose last sample another view has just
    /// deleted, edits the last sample or adds one, by its depth. False, and nothing changes, for a negative one and in
    /// an empty profile.
    bool ModifyPoint(int& index, const Point& point, bool mergeEqualDepth);
    bool ModifyPoint(int& index, const SvpPoint& sample, bool mergeEqualDepth);

    bool GetExtents(Page& page) const;  ///< with the offset; false, and `page` invalid, below two samples
    bool GetCenterPoint(Point& point) const;
    bool GetCenterPoint(SvpPoint& sample) const;  ///< depth and velocity only

    /// Thins a dense profile to a sample a band of depth: 1 m wide at the surface, then 5, 10, 20 and 50 m. Bands of
    /// four and more samples get the value of their median line, others keep their samples. The offset plays no part.
    /// False for an empty profile. A profile whose ends are no depths (not finite, beyond 1e15) stays as it is.
    bool ReduceProfile();

private:
    bool Has(int index) const { return index >= 0 && index < GetNumPoints(); }
    SvpPoint& At(int index) { return points[static_cast<std::size_t>(index)]; }
    void InsertElement(int index, const SvpPoint& sample);
    void AddElement(const SvpPoint& sample);
    int FindInsertionPoint(int start, const SvpPoint& sample) const;
    bool SavePoints(FileObject& file) const;

    std::wstring fileName;
    std::vector<SvpPoint> points;
    float SVOffset = 0;
    bool modified = false;
};

}  // namespace orv
