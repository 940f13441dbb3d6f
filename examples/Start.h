#pragma once

#include <core/ConfigKeys.h>
#include <core/DataSearch.h>
#include <core/DataSearchStatusText.h>
#include <core/OrvConfigureInitializer.h>
#include <platform/text/Utf.h>
#include <project/ProjectDefinition.h>

#include <cstdio>
#include <string>

/// What the examples share: the installation and the project of their two arguments, opened as examples/host shows.
inline bool Start(int argc, char** argv) {
    if (argc < 3) return std::puts("arguments: system folder, project") && false;
    static orv::OrvConfigureInitializer registries;
    registries.RegisterComps();
    registries.RegisterGeoidModel();
    orv::DataSearch& search = orv::DataSearch::GetDataSearch();
    if (search.Initialise(orv::FromUtf8(argv[1]) + L"/", true, L"navigate", false, L"", L"") &&
        search.InitProject(orv::FromUtf8(argv[2]), false)) {
        return true;
    }
    const int status = search.GetErrorStatus();
    const std::wstring why = status != orv::kSearchOk ? std::wstring(orv::DataSearchStatusText(status))
                                                      : search.GetProjectDefinition().LastProblem();
    return std::printf("not started: %s\n", orv::ToUtf8(why).c_str()) < 0;
}
