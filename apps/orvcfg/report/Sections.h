#pragma once

#include <string>
#include <vector>

#include "../doctor/Doctor.h"

namespace orv::cfg {

/// What the sections of a page are made of.
struct PageContent {
    Session& session;
    const Diagnosis& diagnosis;
};

struct PageSection {
    std::string title, html;
};
using PageSections = std::vector<PageSection>;

// Sources: ProjectSections.cpp
PageSections FindingSections(PageContent& content);
PageSections ProjectSections(PageContent& content);
PageSections HeightSections(PageContent& content);
PageSections PortSections(PageContent& content);
PageSections VesselSections(PageContent& content);
// FileSections.cpp
PageSections FileSections(PageContent& content);
PageSections HouseSections(PageContent& content);
// SurveySections.cpp
PageSections TideSections(PageContent& content);
PageSections ProfileSections(PageContent& content);

}  // namespace orv::cfg
