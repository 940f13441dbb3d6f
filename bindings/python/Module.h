#pragma once

#include <shared_mutex>

#include "Convert.h"

namespace orv::python {

// Each adds its classes and functions to the module.

void AddConfig(py::module_& module);
void AddPlaces(py::module_& module);
void AddGeoid(py::module_& module);
void AddTide(py::module_& module);
void AddProfile(py::module_& module);
void AddLogNames(py::module_& module);

/// Held shared by whoever asks the open project without holding the interpreter, alone by whoever opens another.
std::shared_mutex& OpeningMutex();

}  // namespace orv::python
