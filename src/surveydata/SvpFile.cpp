#include "surveydata/SvpFile.h"

#include <algorithm>

#include "core/COrvString.h"
#include "platform/text/NumberText.h"

namespace orv {

namespace {

constexpr std::wstring_view kPointsSection = L"POINTS";
constexpr std::wstring_view kOffsetSection = L"OFFSET";
constexpr std::wstring_view kOffsetKey = L"SVOffset";

std::wstring PointKey(int number) {
    return L"Point(" + IntText(number) + L")";
}

SvpPoint ParsePoint(const std::wstring& text) {
    const COrvString items(text, L',', false);
    SvpPoint sample;
    items.GetItem(0, sample.depth);
    items.GetItem(1, sample.soundVelocity);
    items.GetItem(2, sample.auxValue1);
    items.GetItem(3, sample.auxValue2);
    return sample;
}

std::wstring PointText(const SvpPoint& sample) {
    return FixedText(sample.depth, 6) + L"," + FixedText(sample.soundVelocity, 6) + L"," +
           FixedText(sample.auxValue1, 6) + L"," + FixedText(sample.auxValue2, 6);
}

SvpPoint SampleOf(const Point& point) {
    return {point.y, point.x, 0, 0};
}

}  // namespace

void SvpFile::SetSVOffset(float offset) {
    SVOffset = offset;
    modified = true;
}

bool SvpFile::FileOpen(const FileObject& file) {
    points.clear();
    fileName = file.GetFileName();
    SVOffset = 0;
    file.GetItem(kOffsetSection, kOffsetKey, SVOffset);
    std::wstring text;
    for (int number = 1; file.GetItem(kPointsSection, PointKey(number), text); ++number) {
        points.push_back(ParsePoint(text));
    }
    modified = false;
    return true;
}

bool SvpFile::SavePoints(FileObject& file) const {
    file.DeleteSection(kPointsSection);  // or the end of a longer list would stay behind this one
    if (!file.CreateSection(kPointsSection, true)) return false;
    for (int index = 0; index < GetNumPoints(); ++index) {
        const std::wstring text = PointText(points[static_cast<std::size_t>(index)]);
        if (!file.SetItem(kPointsSection, PointKey(index + 1), text, true)) return false;
    }
    return true;
}

bool SvpFile::FileSave(FileObject& file) {
    if (!modified) return false;
    const bool saved = SavePoints(file);
    modified = false;
    if (!file.CreateSection(kOffsetSection, true)) return false;
    return file.SetItem(kOffsetSection, kOffsetKey, static_cast<double>(SVOffset), true) && saved;
}

int SvpFile::InsertElement(const Point& point) {
    return InsertElement(SampleOf(point));
}

int SvpFile::InsertElement(const SvpPoint& sample) {
    const auto place =
        std::find_if(points.begin(), points.end(), [&](const SvpPoint& p) { return !(p.depth > sample.depth); });
    int index = static_cast<int>(place - points.begin());
    // In an unsorted list a sample below the last one goes a step further down.
    if (index < GetNumPoints() && points.back().depth > sample.depth) ++index;
    InsertElement(index, sample);
    return index;
}

void SvpFile::AddElement(const Point& point) {
    AddElement(SampleOf(point));
}

void SvpFile::InsertElement(int index, const SvpPoint& sample) {
    modified = true;
    points.insert(points.begin() + index, sample);
}

void SvpFile::AddElement(const SvpPoint& sample) {
    modified = true;
    points.push_back(sample);
}

void SvpFile::DeleteElement(int index) {
    if (!Has(index)) return;
    points.erase(points.begin() + index);
    modified = true;
}

Point SvpFile::GetPoint(int index, bool withOffset) const {
    Point point;
    GetPoint(index, point, withOffset);
    return point;
}

bool SvpFile::GetPoint(int index, Point& point, bool withOffset) const {
    SvpPoint sample;
    if (!GetPoint(index, sample, withOffset)) return false;
    point = {sample.soundVelocity, sample.depth, 0};
    return true;
}

bool SvpFile::GetPoint(int index, SvpPoint& sample, bool withOffset) const {
    if (!Has(index)) return false;
    sample = points[static_cast<std::size_t>(index)];
    if (withOffset) sample.soundVelocity += static_cast<double>(SVOffset);
    return true;
}

int SvpFile::FindInsertionPoint(int start, const SvpPoint& sample) const {
    const auto depthAt = [&](int index) { return points[static_cast<std::size_t>(index)].depth; };
    const int count = GetNumPoints();
    int place = start;
    while (place > 0 && place <= count && sample.depth >= depthAt(place - 1)) --place;
    while (place < count && depthAt(place) > sample.depth) ++place;
    if (place != count && depthAt(count - 1) > sample.depth) ++place;
    return place;
}

bool SvpFile::ModifyPoint(int& index, const Point& point, bool mergeEqualDepth) {
    return ModifyPoint(index, SampleOf(point), mergeEqualDepth);
}

bool SvpFile::ModifyPoint(int& index, const SvpPoint& sample, bool mergeEqualDepth) {
    if (index < 0 || points.empty()) return false;
    const int count = GetNumPoints();
    const int old = std::min(index, count + 1);  // further behind the end is the same
    int place = FindInsertionPoint(old, sample);
    modified = true;
    if (place == old) {
        At(std::min(place, count - 1)) = sample;
    } else if (place < count && At(place).depth == sample.depth) {
        At(place).soundVelocity = sample.soundVelocity;
        if (mergeEqualDepth) DeleteElement(old);
    } else {
        InsertElement(std::min(place, count), sample);
        DeleteElement(place >= old ? old : old + 1);  // above its old place it has pushed itself down
        if (place >= old) --place;
    }
    index = std::min(place, GetNumPoints() - 1);
    return true;
}

bool SvpFile::GetExtents(Page& page) const {
    page.Invalidate();
    if (points.size() < 2) return false;
    for (int index = 0; index < GetNumPoints(); ++index) page.Extend(GetPoint(index, true));
    return true;
}

bool SvpFile::GetCenterPoint(Point& point) const {
    Page page;
    if (!GetExtents(page)) return false;
    point = page.Center();
    return true;
}

bool SvpFile::GetCenterPoint(SvpPoint& sample) const {
    Point center;
    if (!GetCenterPoint(center)) return false;
    sample.soundVelocity = center.x;
    sample.depth = center.y;
    return true;
}

}  // namespace orv
