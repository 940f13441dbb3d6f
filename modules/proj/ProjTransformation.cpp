#include "ProjTransformation.h"

#include <proj.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <vector>

#include "platform/text/Utf.h"

namespace orv {

namespace {

struct PjDeleter {
    void operator()(PJ* pj) const { proj_destroy(pj); }
};
using PjPtr = std::unique_ptr<PJ, PjDeleter>;

bool IsOperation(std::string_view definition) {
    return definition.find("+proj=") != definition.npos && definition.find("+type=crs") == definition.npos;
}

PjPtr Build(PJ_CONTEXT* context, const std::string& base, const std::string& definition) {
    if (IsOperation(definition)) return PjPtr(proj_create(context, definition.c_str()));
    const PjPtr source(proj_create(context, base.c_str()));
    const PjPtr target(proj_create(context, definition.c_str()));
    if (!source || !target) return nullptr;
    // A datum that can't be related to the base must fail: silence would put a vessel some hundred metres off.
    const char* const options[] = {"ALLOW_BALLPARK=NO", nullptr};
    const PjPtr way(proj_create_crs_to_crs_from_pj(context, source.get(), target.get(), nullptr, options));
    return way ? PjPtr(proj_normalize_for_visualization(context, way.get())) : nullptr;
}

}  // namespace

/// PROJ's objects of one thread.
struct ThreadProj {
    struct Entry {
        std::uint64_t serial;
        std::weak_ptr<const ProjTransformation> owner;
        PjPtr pj;  // null if this thread couldn't build it
        bool radians;
    };

    struct ContextDeleter {
        void operator()(PJ_CONTEXT* context) const { proj_context_destroy(context); }
    };
    std::unique_ptr<PJ_CONTEXT, ContextDeleter> context{proj_context_create()};
    std::vector<Entry> entries;  // behind the context, so that they go first
    std::string lastMessage;

    ThreadProj() {
        proj_context_set_enable_network(context.get(), 0);
        proj_log_func(context.get(), this,
                      [](void* self, int, const char* text) { static_cast<ThreadProj*>(self)->lastMessage = text; });
    }

    static ThreadProj& Mine() {
        static thread_local ThreadProj mine;
        return mine;
    }

    const Entry& Find(const ProjTransformation& transformation) {
        for (const Entry& entry : entries) {
            if (entry.serial == transformation.serial) return entry;
        }
        std::erase_if(entries, [](const Entry& entry) { return entry.owner.expired(); });
        PjPtr pj = Build(context.get(), transformation.base, transformation.definition);
        const bool radians = pj && proj_angular_input(pj.get(), PJ_FWD) != 0;
        entries.push_back({transformation.serial, transformation.weak_from_this(), std::move(pj), radians});
        return entries.back();
    }
};

namespace {

/// One pass through PROJ; false for an error or a result that is no number.
bool Pass(PJ* pj, PJ_DIRECTION direction, PJ_COORD& point) {
    proj_errno_reset(pj);
    point = proj_trans(pj, direction, point);
    return proj_errno(pj) == 0 && std::isfinite(point.xyz.x) && std::isfinite(point.xyz.y);
}

std::uint64_t NextSerial() {
    static std::atomic<std::uint64_t> last{0};
    return ++last;
}

}  // namespace

ProjTransformation::ProjTransformation(std::string from, std::string text)
    : serial(NextSerial()), base(std::move(from)), definition(std::move(text)) {}

std::shared_ptr<const ProjTransformation> ProjTransformation::Make(std::wstring_view base, std::wstring_view definition,
                                                                   std::wstring& problem) {
    std::shared_ptr<const ProjTransformation> made(new ProjTransformation(ToUtf8(base), ToUtf8(definition)));
    ThreadProj& mine = ThreadProj::Mine();
    mine.lastMessage.clear();
    if (mine.Find(*made).pj) return made;
    problem = L"PROJ can't build \"" + std::wstring(definition) + L"\"";
    if (!mine.lastMessage.empty()) problem += L": " + FromUtf8(mine.lastMessage);
    return nullptr;
}

bool ProjTransformation::Forward(double latitude, double longitude, double height, double& x, double& y) const {
    if (!(std::abs(latitude) <= 90.0) || !std::isfinite(longitude) || !std::isfinite(height)) return false;
    const ThreadProj::Entry& entry = ThreadProj::Mine().Find(*this);
    if (!entry.pj) return false;
    PJ_COORD point = proj_coord(longitude, latitude, height, 0);
    if (entry.radians) {
        point.lp.lam = proj_torad(longitude);
        point.lp.phi = proj_torad(latitude);
    }
    if (!Pass(entry.pj.get(), PJ_FWD, point)) return false;
    x = point.xyz.x;
    y = point.xyz.y;
    return true;
}

bool ProjTransformation::Inverse(double x, double y, double height, double& latitude, double& longitude) const {
    if (!std::isfinite(x) || !std::isfinite(y) || !std::isfinite(height)) return false;
    const ThreadProj::Entry& entry = ThreadProj::Mine().Find(*this);
    if (!entry.pj) return false;
    // The height is known above the geographic side's ellipsoid, a datum shift starts from the grid's: the two differ
    // by some tens of metres that hardly change with the height itself, so the second pass is exact.
    double gridHeight = height;
    PJ_COORD point{};
    for (int pass = 0; pass < 3; ++pass) {
        point = proj_coord(x, y, gridHeight, 0);
        if (!Pass(entry.pj.get(), PJ_INV, point)) return false;
        const double miss = height - point.xyz.z;
        if (!(std::abs(miss) > 1e-6)) break;
        gridHeight += miss;
    }
    latitude = entry.radians ? proj_todeg(point.lp.phi) : point.lp.phi;
    longitude = entry.radians ? proj_todeg(point.lp.lam) : point.lp.lam;
    return true;
}

std::wstring ProjTransformation::EllipsoidName() const {
    if (IsOperation(definition)) return {};
    PJ_CONTEXT* context = ThreadProj::Mine().context.get();
    const PjPtr system(proj_create(context, definition.c_str()));
    const PjPtr ellipsoid(system ? proj_get_ellipsoid(context, system.get()) : nullptr);
    return ellipsoid ? FromUtf8(proj_get_name(ellipsoid.get())) : std::wstring();
}

std::wstring ProjTransformation::ProjectionName() const {
    if (IsOperation(definition)) return {};
    PJ_CONTEXT* context = ThreadProj::Mine().context.get();
    const PjPtr system(proj_create(context, definition.c_str()));
    const PjPtr projection(system ? proj_crs_get_coordoperation(context, system.get()) : nullptr);
    return projection ? FromUtf8(proj_get_name(projection.get())) : std::wstring();
}

}  // namespace orv
