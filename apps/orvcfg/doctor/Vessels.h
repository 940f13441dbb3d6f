#pragma once

#include <functional>
#include <initializer_list>

#include "../VesselSurvey.h"

namespace orv::cfg {

class Examination;

/// Surveys each vessel of the project and tells what of these kinds comes of it.
void TellVessels(Examination& examination, std::initializer_list<VesselFinding::Kind> kinds,
                 const std::function<void(VesselSurvey&)>& check);

}  // namespace orv::cfg
