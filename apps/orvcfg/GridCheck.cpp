#include "GridCheck.h"

#include <algorithm>

#include "GridForms.h"
#include "platform/text/CaseFold.h"
#include "platform/text/PathText.h"

namespace orv::cfg {

std::vector<GridFinding> CheckGridFile(const std::wstring& path, bool surely) {
    const std::string file = PathToBytes(path);
    MappedFile content;
    std::string why;
    if (!content.Open(path, why)) return {{GridFinding::Bad, file, "can't be read: " + why}};
    const std::optional<RecognisedGrid> grid = RecogniseGrid(content.Bytes(), why);
    if (!grid && !surely) return {};
    if (!grid) {
        return {{GridFinding::Bad, file, "no grid of a known form" + (why.empty() ? "" : " (" + why + ")")}};
    }
    const std::string form(grid->form->name);
    std::vector<GridFinding> found;
    if (grid->facts.fault.empty()) {
        std::int64_t nodes = 0;
        for (const GridPart& part : grid->facts.parts) nodes += part.Nodes();
        found.push_back({GridFinding::Good, file, form + ", " + std::to_string(nodes) + " nodes"});
    } else if (grid->form->ifShort.empty()) {
        found.push_back({GridFinding::Bad, file, form + ": " + grid->facts.fault + "; the model refuses it"});
    } else {
        found.push_back({GridFinding::Warning, file,
                         form + ": " + grid->facts.fault + "; the model accepts it all the same, and " +
                             std::string(grid->form->ifShort)});
    }
    for (const std::string& remark : grid->facts.remarks) found.push_back({GridFinding::Warning, file, remark});
    return found;
}

std::vector<GridFinding> CheckGridSet(unsigned short typeId, const std::wstring& folder,
                                      const std::vector<std::wstring>& there) {
    std::vector<GridFinding> found;
    if (there.empty()) return found;
    for (const GridForm& form : GridForms()) {
        for (const GridHome& home : form.homes) {
            if (home.typeId != typeId) continue;
            for (const std::wstring_view name : home.names) {
                const bool has = std::any_of(there.begin(), there.end(),
                                             [&](const std::wstring& own) { return EqualNoCase(own, name); });
                if (name.starts_with(L'*') || has) continue;
                found.push_back(
                    {GridFinding::Warning, PathToBytes(folder + std::wstring(name)), "missing: what needs it fails"});
            }
        }
    }
    return found;
}

}  // namespace orv::cfg
