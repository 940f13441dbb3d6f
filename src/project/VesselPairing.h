#pragma once

#include <set>
#include <string>

namespace orv {

class VesselConfig;

/// The state of one exchange between a vessel file and another: how many devices each has, and which sections are
/// paired. What is paired once is out of the question in all later steps. Made for one exchange.
struct VesselPairing {
    VesselPairing(VesselConfig& otherVessel, unsigned otherDevices, unsigned ownDevices)
        : other(otherVessel), otherCount(otherDevices), ownCount(ownDevices) {}
    bool IsHandled(const std::wstring& otherSection) const { return handled.count(otherSection) > 0; }
    bool IsOwnHandled(const std::wstring& section) const { return ownHandled.count(section) > 0; }
    void Handle(const std::wstring& otherSection, const std::wstring& section = {}) {
        handled.insert(otherSection);
        if (!section.empty()) ownHandled.insert(section);
    }

    VesselConfig& other;
    unsigned otherCount, ownCount;

private:
    std::set<std::wstring> handled, ownHandled;
};

}  // namespace orv
