#pragma once

#include "Document.h"
#include "GeoidChoice.h"

namespace orv {
class ProjectDefinition;
}

namespace orv::cfg {

// What the open project tells, in blocks of a document.

void ReportProject(Document& document, const ProjectDefinition& project);
/// The geoid in force comes back: the project's, or what is registered for its coordinate system.
GeoidChoice ReportCoordinateSystem(Document& document, ProjectDefinition& project);
void ReportFormats(Document& document, const ProjectDefinition& project);
void ReportDecimals(Document& document, const ProjectDefinition& project);
void ReportUnits(Document& document, const ProjectDefinition& project);

/// The geoid that the open project's heights are reduced by.
GeoidChoice GeoidInForce(ProjectDefinition& project);
/// Degrees as the project shows them: decimal or with minutes and seconds.
std::string GeographicText(const ProjectDefinition& project, double degrees, bool latitude);

}  // namespace orv::cfg
