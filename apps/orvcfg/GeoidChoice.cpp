#include "GeoidChoice.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <limits>

#include "Session.h"
#include "Suggest.h"
#include "core/ConfigKeys.h"
#include "geoid/GeoidModelList.h"
#include "platform/notify/Notices.h"
#include "platform/os/FileTools.h"
#include "platform/text/CaseFold.h"
#include "platform/text/NumberText.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

// No grid is called so: a model that is asked for it tells its folder.
constexpr std::wstring_view kNoSuchGrid = L"orvcfg-looks-for-the-folder";

/// What the files of a model are called: fixed names, or any with the form's usual extension. Models share folders, and
/// the common project files lie beside the grids of some.
struct ModelFiles {
    unsigned short typeId;
    std::initializer_list<std::wstring_view> patterns;
};
const ModelFiles kModelFiles[] = {
    {4, {L"nlgeo04.grd", L"x2c.grd", L"y2c.grd"}},
    {5, {L"hBG03.grd", L"xyGridLb72.grd"}},
    {6, {L"*.grd"}},
    {7, {L"*.inf"}},
    {8, {L"hpgnlo.inf", L"hpgnla.inf"}},
    {13, {L"nlgeo04.grd", L"x2c.grd", L"y2c.grd"}},
    {14, {L"*.01"}},
    {18, {L"Und_min1x1_egm2008_isw=82_WGS84_TideFree_SE"}},
    {19, {L"*.bin"}},
    {22, {L"LAT2006.01"}},
    {23, {L"*.byn"}},
    {24, {L"*.gri", L"*.txt", L"*.csv"}},
    {25, {L"*.txt", L"*.csv"}},
    {26, {L"*.ggf"}},
    {27, {L"*.txt"}},
    {28, {L"*.gtx"}},
    {29, {L"*.gsb"}},
};

std::string Where(const std::wstring& path, const std::wstring& name) {
    std::string text;
    const std::wstring file = path.empty() || EndsInSeparator(path) ? name : GetNameFromPath(path);
    if (!file.empty()) text += ", file " + PathToBytes(file);
    if (const std::wstring folder = GetFolderFromPath(path); !folder.empty()) {
        text += ", folder " + PathToBytes(folder);
    }
    return text;
}

}  // namespace

OpenedGeoid OpenGeoid(const GeoidChoice& choice) {
    OpenedGeoid opened;
    const int type = GeoidTypeForKey(choice.key);
    if (type >= 0) opened.model = GeoidModelList::GetGeoidModelList().Create(static_cast<unsigned short>(type));
    if (!opened.model) {
        opened.problem = "it isn't part of this program";
        return opened;
    }
    opened.model->Init(nullptr);
    opened.model->SetGeoidChartDatum(choice.chartDatum);
    const bool loaded = opened.model->SetFileName(choice.file);
    opened.path = opened.model->DataFile();
    const GeoidReason reason = loaded ? GeoidReason::None : opened.model->LastReason();
    // Models with files of fixed names take none here and say so.
    const bool fixed = reason == GeoidReason::NotSupported;
    if (reason == GeoidReason::None || (fixed && (opened.path.empty() || FileExists(opened.path)))) return opened;
    if (fixed) {
        opened.problem = ToUtf8(GeoidReasonText(GeoidReason::NoFile)) + Where(opened.path, {});
        return opened;
    }
    opened.problem = choice.file.empty() ? "it needs the name of a grid file" : ToUtf8(GeoidReasonText(reason));
    opened.problem += Where(opened.path, choice.file);
    return opened;
}

std::string ShortReason(const OpenedGeoid& opened, double latitude, double longitude, std::wstring_view reason) {
    constexpr double noGrid = std::numeric_limits<double>::quiet_NaN();
    double value = 0.0;
    std::wstring text;
    if (!opened.model || opened.model->Calculate(latitude, longitude, noGrid, noGrid, value, text)) {
        return ToUtf8(reason);
    }
    return ToUtf8(GeoidReasonText(opened.model->LastReason()));
}

std::wstring GeoidKey(unsigned short typeId) {
    return typeId < GeoidmodelTypeKeys.size() ? std::wstring(GeoidmodelTypeKeys[typeId]) : std::wstring();
}

std::optional<unsigned short> GeoidTypeArgument(Session& session, std::string_view text) {
    const std::wstring wanted = FromUtf8(text);
    const std::optional<unsigned> id = ParseUnsigned(text);
    std::vector<std::wstring> known;
    std::vector<unsigned short> named;
    for (const GeoidModelList::Registration& model : GeoidModelList::GetGeoidModelList().Registrations()) {
        const std::wstring key = GeoidKey(model.typeId);
        if (id == model.typeId || EqualNoCase(key, wanted)) return model.typeId;
        if (EqualNoCase(model.name, wanted)) named.push_back(model.typeId);
        known.push_back(key);
    }
    if (named.size() == 1) return named.front();
    std::string remedy = DidYouMean(wanted, known);
    if (remedy.empty()) remedy = "\"orvcfg geoid list\" shows the models.";
    session.Problem({},
                    (named.empty() ? "No geoid model \"" : "More than one geoid model is registered as \"") +
                        std::string(text) + "\"",
                    remedy);
    return std::nullopt;
}

std::wstring GeoidModelFolder(unsigned short typeId) {
    const NoticeRecorder silent;  // that the grid is missing is no news
    const std::unique_ptr<GeoidModel> model = GeoidModelList::GetGeoidModelList().Create(typeId);
    if (!model) return {};
    model->Init(nullptr);
    model->SetFileName(std::wstring(kNoSuchGrid));
    return GetFolderFromPath(model->DataFile());
}

std::vector<std::wstring> GeoidFileNames(unsigned short typeId) {
    const auto* const files = std::find_if(std::begin(kModelFiles), std::end(kModelFiles),
                                           [&](const ModelFiles& model) { return model.typeId == typeId; });
    if (files == std::end(kModelFiles)) return {};
    return {files->patterns.begin(), files->patterns.end()};
}

std::optional<std::vector<std::wstring>> GeoidGridNames(unsigned short typeId) {
    const std::vector<std::wstring> patterns = GeoidFileNames(typeId);
    if (patterns.empty()) return std::nullopt;
    std::vector<std::wstring> names;
    const std::wstring folder = GeoidModelFolder(typeId);
    for (const std::wstring& pattern : patterns) {
        for (const FolderEntry& entry : FindFiles(folder, pattern)) {
            if (!entry.isFolder) names.push_back(entry.name);
        }
    }
    return names;
}

}  // namespace orv::cfg
