#pragma once

#include <string>

#include "GridForms.h"

namespace orv::cfg {

class Document;

/// What a grid file is and holds: its form, bounds, values, and the digest that tells it from all others.
void ReportGrid(Document& document, const std::wstring& path, const MappedFile& content, const RecognisedGrid& grid,
                const std::string& name);

}  // namespace orv::cfg
