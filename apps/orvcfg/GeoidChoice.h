#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "geoid/GeoidModel.h"

namespace orv::cfg {

class Session;

/// A geoid model with its file, as a project or the command line names them.
struct GeoidChoice {
    std::wstring key;  ///< of GeoidmodelTypeKeys
    std::wstring file, chartDatum;
};

/// A model made for a choice, and how it stands.
struct OpenedGeoid {
    std::unique_ptr<GeoidModel> model;
    std::wstring path;    ///< the file it reads, with its folder; empty if it has none
    std::string problem;  ///< why it can't be used, with file and folder; empty if it can
};

/// Metres, without a coordinate system.
OpenedGeoid OpenGeoid(const GeoidChoice& choice);

/// Why a position has no separation: what the model itself says if it refuses the position, else `reason`. The
/// coordinate module's reasons name model, file and folder each time, which is too much for a line of many.
std::string ShortReason(const OpenedGeoid& opened, double latitude, double longitude, std::wstring_view reason);

/// Type id that a text means: the id itself, a key, or a registered name that only one model has; case is ignored.
/// None, after a problem with near names has been told.
std::optional<unsigned short> GeoidTypeArgument(Session& session, std::string_view text);
/// What a registered model is known by in projects.
std::wstring GeoidKey(unsigned short typeId);
/// Folder that a model reads its grids from; empty if it doesn't tell.
std::wstring GeoidModelFolder(unsigned short typeId);
/// What the model's files are called there: names, or patterns such as "*.gtx" where projects tell the name. Empty for
/// a model without files.
std::vector<std::wstring> GeoidFileNames(unsigned short typeId);
/// Files in that folder that are called as the model's files are; none for a model whose files may be called anything.
std::optional<std::vector<std::wstring>> GeoidGridNames(unsigned short typeId);

}  // namespace orv::cfg
