#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "VesselFile.h"

namespace orv {
class CDataId;
}

namespace orv::cfg {

struct VesselFinding {
    enum Kind { Number, Port, Group, Reference, Maximum } kind;
    std::string section;  ///< empty for the vessel as a whole
    std::string what, remedy;
    std::string Text() const { return (section.empty() ? "" : "[" + section + "] ") + what; }
};

/// What somebody looks for who was called out of bed because data don't come in.
class VesselSurvey {
public:
    VesselSurvey(Session& run, const VesselConfig& file);
    void CheckNumbers();
    void CheckPorts(const FileObject* ports);  ///< null if they aren't known
    void CheckGroups();
    void CheckReferences();
    void CheckMaxima();  ///< needs an open installation

    const std::vector<VesselFinding>& Findings() const { return findings; }
    const std::vector<VesselDevice>& AllDevices() const { return devices; }
    std::size_t Devices() const { return devices.size(); }
    std::size_t Offsets() const { return offsets.size(); }

private:
    void Tell(VesselFinding::Kind kind, const std::wstring& section, const std::string& what,
              const std::string& remedy);
    unsigned GroupOfComputation(unsigned no) const;
    void CheckGaps(std::wstring_view word, const char* remedy);
    void CheckGroup(const std::wstring& section, unsigned group, const std::string& whose);
    void CheckData(const std::wstring& section, const std::wstring& key, const CDataId& data);
    template <class Reference>
    bool Read(const std::wstring& section, const std::wstring& key, std::wstring_view text, Reference& reference);
    void CheckOffset(const std::wstring& section, const std::wstring& key, std::wstring_view text);
    void CheckList(const std::wstring& section, const std::wstring& key, std::wstring_view list, wchar_t separator);
    void CheckItem(const std::wstring& section, const std::wstring& key, const std::wstring& value);

    Session& session;
    const VesselConfig& vessel;
    std::vector<VesselDevice> devices;
    std::map<unsigned, int> devicesOfGroup;
    std::set<std::wstring> offsets;
    unsigned id = 0;
    bool hasId = false;
    std::vector<VesselFinding> findings;
};

}  // namespace orv::cfg
