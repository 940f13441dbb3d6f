#include "geoid/GeoidFolders.h"

#include <filesystem>
#include <sstream>

#include "core/DataSearch.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::test {

GeoidFolders::GeoidFolders() {
    Write(folder / L"settings/ORV.ini", "[DataPath]\nGeneral=" + ToUtf8(folder / L"general/") + "\n");
    // What else an installation holds isn't there; the paths are known all the same.
    DataSearch::GetDataSearch().Initialise(folder / L"settings/", false, L"", false, L"", folder / L"common/");
}

void GeoidFolders::Write(const std::wstring& path, std::string_view bytes) {
    MakeFolders(GetFolderFromPath(path));
    // A file that is replaced rather than overwritten needn't be flushed by the disk: thousands are, in some tests.
    std::filesystem::remove(PathToBytes(path));
    WriteBytes(path, bytes);
}

std::unique_ptr<GeoidModel> MakeModel(unsigned short typeId, double metresPerUnit) {
    RegisterGeoidModels();
    std::unique_ptr<GeoidModel> model = GeoidModelList::GetGeoidModelList().Create(typeId);
    UnitOnly unit(metresPerUnit);
    EXPECT_TRUE(model->Init(&unit));
    return model;
}

double HeightAt(GeoidModel& model, double latitude, double longitude, double easting, double northing,
                std::wstring* text) {
    double value = kUntouched;
    std::wstring unused;
    const bool ok = model.Calculate(latitude, longitude, easting, northing, value, text ? *text : unused);
    return ok ? value : kUntouched;
}

std::wstring Dump(GeoidModel& model, const wchar_t* indent) {
    std::wostringstream out;
    model.DumpGeoidXml(out, indent);
    return out.str();
}

}  // namespace orv::test
