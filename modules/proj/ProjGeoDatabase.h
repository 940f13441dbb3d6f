#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/FileObject.h"
#include "platform/coord/OrvGeoCoordSysBase.h"

namespace orv {

/// All that the database knows of one system. See docs/formats/coordinate-systems.md.
struct GeoSystem {
    std::wstring definition, base;  ///< what PROJ makes of it
    std::wstring unit;              ///< name of its length unit
    std::wstring projection, ellipsoid, transformation, description;
    std::wstring geoidModel, geoidFile, chartDatum;  ///< registered height reference; the model is a type key
    std::wstring postModel, postFile;                ///< registered grid shift; the model is a type key
    double manualSeparation = 0.0;                   ///< metres
    double postX = 0.0, postY = 0.0, postZ = 0.0;    ///< metres
};

/// The named coordinate systems: those that an installation ships (CoordSystems.geo in the application folder), and
/// over them, item by item, the installation's own (CoordSystems.geo in the system folder), where all changes go.
/// Either file is read again when it has changed on disk. Main thread.
class ProjGeoDatabase : public OrvGeoDatabaseBase {
public:
    bool UnitDefinition(const std::wstring& name, std::wstring& text, std::wstring& mnemonic, double& factor,
                        int& number) override;
    std::wstring UnitOfSystem(const std::wstring& group, const std::wstring& system) override;
    bool ConvertOldLayout(ProjectDefinition& project, std::wstring& group, std::wstring& system) override;
    bool AddGeoidModel(const std::wstring& group, const std::wstring& system, const std::wstring& typeKey,
                       const std::wstring& fileName, bool overwrite) override;
    bool AddManualSeparation(const std::wstring& group, const std::wstring& system, const std::wstring& typeKey,
                             double separation, bool overwrite) override;
    bool AddPostCorrection(const std::wstring& group, const std::wstring& system, double x, double y, double z,
                           const std::wstring& typeKey, const std::wstring& text, bool overwrite) override;
    std::wstring ListEntry(const std::wstring& group, const std::wstring& system) override;
    std::vector<std::wstring> Groups() override;
    std::vector<std::wstring> Systems(const std::wstring& group) override;

    /// None for a name that isn't known, exactly as it is spelled.
    std::optional<GeoSystem> Find(const std::wstring& group, const std::wstring& system);
    /// Registers models as a project names them; a model without a name leaves what is registered alone. True when it
    /// changed the database.
    bool AddModels(const CoordSysNames& names);

private:
    struct Source {
        FileObject file;
        std::wstring path;
        std::uint64_t size = 0;
        std::int64_t modified = 0, modifiedNanoseconds = 0;
        bool unreadable = false;
    };
    /// Where items of one system stand, the first that has one wins.
    struct Place {
        const FileObject* file;
        std::wstring section;
        std::wstring zone;  ///< number that stands for <zone> in values; empty outside a series of zones
    };
    using Items = std::vector<std::pair<std::wstring_view, std::wstring>>;

    void Refresh();
    static void Refresh(Source& source, const std::wstring& folder);
    std::vector<Place> PlacesOf(const std::wstring& group, const std::wstring& system) const;
    static std::wstring Item(const std::vector<Place>& places, std::wstring_view name);
    bool Rename(std::wstring& group, std::wstring& system);
    bool Known(const std::wstring& group, const std::wstring& system);
    bool Store(const std::wstring& group, const std::wstring& system, const Items& items);

    Source own, shipped;
};

}  // namespace orv
