// What a vessel carries: its size, its offset points and its devices.
#include <project/VesselConfig.h>

#include "Start.h"

int main(int argc, char** argv) {
    if (!Start(argc, argv)) return 1;

    // quote: vessel
    std::wstring path = L"Sounder[navigate]";
    orv::DataSearch::GetDataSearch().GetFullPath(orv::kFileTypeVesselConfig, path);
    orv::VesselConfig vessel;
    if (!vessel.FileOpen(path, orv::kOpenRead)) {
        std::printf("%s: %s\n", orv::ToUtf8(path).c_str(), orv::ToUtf8(FsResultText(vessel.LastResult())).c_str());
        return 1;
    }
    double length = 0, draft = 0;  // what the file doesn't hold stays as it is
    vessel.GetVesselLength(length);
    vessel.GetVesselDraft(draft);
    std::printf("%s: %.1f m long, draft %.2f m\n", orv::ToUtf8(vessel.GetVesselName()).c_str(), length, draft);
    // quote end

    for (unsigned no = 1; no <= vessel.GetNumOffsets(); ++no) {
        std::wstring name;
        double x = 0, y = 0, z = 0;  // metres: starboard, forward, up
        if (vessel.GetOffset(no, name, x, y, z)) {
            std::printf("  offset %2u  %7.3f %7.3f %7.3f  %s\n", no, x, y, z, orv::ToUtf8(name).c_str());
        }
    }
    for (unsigned no = 1; vessel.HaveDevice(no); ++no) {
        std::wstring driver, port, section, options, guid, copied;
        unsigned group = 0, portGroup = 0;
        int subSystem = 0;
        vessel.GetDeviceAttribs(no, driver, group, port, section, subSystem, options, portGroup, guid, copied);
        std::printf("  device %2u  %s on %s\n", no, orv::ToUtf8(driver).c_str(), orv::ToUtf8(port).c_str());
    }
    return 0;
}
