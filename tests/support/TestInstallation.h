#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "core/DataSearch.h"
#include "support/TestSupport.h"

namespace orv::test {

/// One item of a configuration file.
struct Item {
    std::wstring_view section, key;
    std::wstring value;
};

/// Puts items into a protected file, which is made if it is missing, and signs it.
void WriteItems(const std::wstring& path, std::initializer_list<Item> items);
void DeleteItem(const std::wstring& path, std::wstring_view section, std::wstring_view key);

/// A whole small installation in a temporary folder, made through the library's own operations, and a DataSearch of
/// its own that stands in the place of the single one as long as it lives. Nothing of it outlives the test but the
/// registry of file types, which all installations share: their file type definitions are the same.
///
/// It ships an application definition "navigate" that allows everything and a project name "Harbour"; nothing is
/// initialised. All folders end in a separator.
class TestInstallation {
public:
    TestInstallation();
    ~TestInstallation();
    TestInstallation(const TestInstallation&) = delete;
    TestInstallation& operator=(const TestInstallation&) = delete;

    std::wstring ProgramFolder() const { return root / L"program/"; }  ///< the program in it is called "surveyor"
    std::wstring SystemFolder() const { return root / L"system/"; }
    std::wstring GeneralFolder() const { return root / L"general/"; }
    std::wstring ProjectsRoot() const { return root / L"projects/"; }
    std::wstring ProjectFolder() const { return ProjectsRoot() + L"Harbour/"; }
    std::wstring CommonFolder() const { return ProjectsRoot() + L"Projects Common Files/"; }
    std::wstring GeneralFolder(int location) const;  ///< its sub-folder for location 9, 11 and the like
    std::wstring AppDefPath(std::wstring_view name = L"navigate") const;
    std::wstring UserDefPath() const { return ProgramFolder() + L"operator.upd"; }

    void Setting(std::wstring_view key, std::wstring value) const;  ///< in the folders' section of ORV.ini
    void RemoveSetting(std::wstring_view key) const;
    void AppDef(std::initializer_list<Item> items) const { WriteItems(AppDefPath(), items); }
    void UserDef(std::initializer_list<Item> items) const;  ///< makes it and enters it in ORV.ini

    DataSearch& Search() const { return DataSearch::GetDataSearch(); }
    /// Starts the installation with "navigate", and with the user definition if wanted.
    bool Start(bool userDef = false) const;
    void Restart() const;  ///< throws the DataSearch away and takes a fresh one

private:
    void WriteSettings() const;
    void WriteFileTypes() const;
    void WriteUnits() const;
    TempFolder root;
};

}  // namespace orv::test
