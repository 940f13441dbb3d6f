#include "geoid/GeoidModel.h"

#include "core/ConfigKeys.h"
#include "platform/coord/OrvGeoCoordSysBase.h"
#include "platform/notify/Notices.h"

namespace orv {

namespace {

// One note a thread, told apart by the model it speaks of: models carry no state that `Calculate` would write.
struct Failure {
    const GeoidModel* model = nullptr;
    GeoidReason reason = GeoidReason::None;
};
thread_local Failure lastFailure;

const wchar_t* Indent(const wchar_t* indent) {
    return indent ? indent : L"";
}

}  // namespace

std::wstring_view GeoidReasonText(GeoidReason reason) {
    switch (reason) {
        case GeoidReason::None:
            return L"";
        case GeoidReason::NoFile:
            return L"the model's file can't be opened";
        case GeoidReason::BadHeader:
            return L"the header of the model's file can't be used";
        case GeoidReason::Outside:
            return L"the position lies outside the model";
        case GeoidReason::NoData:
            return L"the model has no data at the position";
        case GeoidReason::NotSupported:
            return L"the model has no such operation";
    }
    return L"";
}

GeoidModel::GeoidModel() : unitLabel(L"m") {}
GeoidModel::GeoidModel(const GeoidModel& other) = default;
GeoidModel& GeoidModel::operator=(const GeoidModel& other) = default;

GeoidModel::~GeoidModel() {
    // The next model may be made at this address.
    if (lastFailure.model == this) lastFailure = {};
}

bool GeoidModel::Init(OrvGeoCoordSysBase* coordSys) {
    double factor = 1.0;
    std::wstring label = L"m";
    if (coordSys) coordSys->Unit(factor, label);
    // Everything that leaves a model is divided by it.
    if (!(factor > 0.0)) return false;
    unitFactor = factor;
    unitLabel = std::move(label);
    return true;
}

bool GeoidModel::Calculate(double, double, double&, double&, bool) {
    return Answer(GeoidReason::NotSupported);
}

bool GeoidModel::Calculate(double, double, double, double, double&, std::wstring&) {
    return Answer(GeoidReason::NotSupported);
}

bool GeoidModel::CalculateLocalEllipsCorrection(double, double, double&, double&, bool) {
    return Answer(GeoidReason::NotSupported);
}

bool GeoidModel::SetFileName(std::wstring name) {
    fileName = std::move(name);
    return Answer(GeoidReason::NotSupported);
}

void GeoidModel::SetGeoidChartDatum(std::wstring datum) {
    chartDatum = std::move(datum);
}

bool GeoidModel::CheckGeoidModelFiles(const std::wstring&, std::wstring&, bool) {
    return Answer(GeoidReason::NotSupported);
}

void GeoidModel::DumpGeoidXml(std::wostream&, const wchar_t*) {}

unsigned GeoidModel::ReportAlert(const std::wstring& text) const {
    Notify(Notice::Alert, text);
    return 0;
}

GeoidReason GeoidModel::LastReason() const {
    return lastFailure.model == this ? lastFailure.reason : GeoidReason::None;
}

bool GeoidModel::Answer(int code) const {
    switch (code) {
        case kGeoidOk:
            return Answer(GeoidReason::None);
        case kGeoidBadHeader:
            return Answer(GeoidReason::BadHeader);
        case kGeoidNoData:
            return Answer(GeoidReason::NoData);
        default:
            return Answer(GeoidReason::Outside);
    }
}

bool GeoidModel::Answer(GeoidReason reason) const {
    if (reason != GeoidReason::None) {
        lastFailure = {this, reason};
    } else if (lastFailure.model == this) {
        lastFailure = {};
    }
    return reason == GeoidReason::None;
}

void GeoidModel::DumpOneFile(std::wostream& stream, const wchar_t* indent, int keyIndex, const std::wstring* path) {
    DumpOpening(stream, indent, keyIndex);
    if (path) DumpLine(stream, indent, L"<filename>" + *path + L"</filename>");
    DumpClosing(stream, indent);
}

void GeoidModel::DumpOpening(std::wostream& stream, const wchar_t* indent, int keyIndex) {
    const std::wstring_view key = GeoidmodelTypeKeys[static_cast<std::size_t>(keyIndex)];
    stream << Indent(indent) << L"<geoidmodel>\n";
    DumpLine(stream, indent, L"<name>" + std::wstring(key) + L"</name>");
}

void GeoidModel::DumpClosing(std::wostream& stream, const wchar_t* indent) {
    stream << Indent(indent) << L"</geoidmodel>\n";
}

void GeoidModel::DumpLine(std::wostream& stream, const wchar_t* indent, std::wstring_view line) {
    stream << Indent(indent) << L"  " << line << L'\n';
}

void GeoidModel::DumpFileLine(std::wostream& stream, const wchar_t* indent, const std::wstring& path) {
    DumpLine(stream, indent, L"  <filename>" + path + L"</filename>");
}

void GeoidModel::DumpFileBlock(std::wostream& stream, const wchar_t* indent, std::wstring_view tag,
                               const std::wstring& path) {
    DumpLine(stream, indent, L"<" + std::wstring(tag) + L">");
    DumpFileLine(stream, indent, path);
    DumpLine(stream, indent, L"</" + std::wstring(tag) + L">");
}

}  // namespace orv
