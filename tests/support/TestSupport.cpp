#include "support/TestSupport.h"

#include <clocale>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <locale>
#include <sstream>

#include "platform/text/PathText.h"

namespace orv::test {

namespace fs = std::filesystem;

TempFolder::TempFolder() {
    std::string pattern = (fs::temp_directory_path() / "orv-test-XXXXXX").string();
    if (!mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder");
    path = PathFromBytes(pattern) + L"/";
}

TempFolder::~TempFolder() {
    std::error_code ignored;
    fs::remove_all(PathToBytes(path), ignored);
}

void WriteBytes(std::wstring_view path, std::string_view bytes) {
    std::ofstream out(PathToBytes(path), std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!out) throw std::runtime_error("can't write " + PathToBytes(path));
}

std::string ReadBytes(std::wstring_view path) {
    std::ifstream in(PathToBytes(path), std::ios::binary);
    std::ostringstream all;
    all << in.rdbuf();
    return all.str();
}

void SetMode(std::wstring_view path, unsigned mode) {
    fs::permissions(PathToBytes(path), static_cast<fs::perms>(mode));
}

void MakeFolders(std::wstring_view path) {
    fs::create_directories(PathToBytes(path));
}

bool Exists(std::wstring_view path) {
    return fs::exists(PathToBytes(path));
}

ScopedZone::ScopedZone(const char* zone) {
    const char* now = std::getenv("TZ");
    had = now != nullptr;
    if (had) old = now;
    setenv("TZ", zone, 1);
    tzset();
}

ScopedZone::~ScopedZone() {
    if (had) {
        setenv("TZ", old.c_str(), 1);
    } else {
        unsetenv("TZ");
    }
    tzset();
}

namespace {
struct CommaPunct : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};
struct WideCommaPunct : std::numpunct<wchar_t> {
    wchar_t do_decimal_point() const override { return L','; }
    wchar_t do_thousands_sep() const override { return L'.'; }
    std::string do_grouping() const override { return "\3"; }
};
}  // namespace

struct CommaLocale::State {
    std::locale oldCpp;
    std::string oldC;
};

CommaLocale::CommaLocale() : state(new State) {
    state->oldC = std::setlocale(LC_ALL, nullptr);
    state->oldCpp = std::locale::global(std::locale(std::locale(std::locale(), new CommaPunct), new WideCommaPunct));
    std::setlocale(LC_ALL, "de_DE.UTF-8");
}

CommaLocale::~CommaLocale() {
    std::locale::global(state->oldCpp);
    std::setlocale(LC_ALL, state->oldC.c_str());
    delete state;
}

}  // namespace orv::test
