// Configuration text beside GLib's GKeyFile: parse, look-up, write, crash-safe save, checksum, memory.

#include <benchmark/benchmark.h>
#include <glib.h>
#include <malloc.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "core/ChecksumSum.h"
#include "core/ConfigText.h"
#include "core/FileObject.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"
#include "support/TestSupport.h"

namespace {

struct KeyFileFree {
    void operator()(GKeyFile* file) const { g_key_file_free(file); }
};
using KeyFile = std::unique_ptr<GKeyFile, KeyFileFree>;

struct Name {
    std::string section, key;
    std::wstring wideSection, wideKey;
};

/// `sections` of 60 keys: texts, integers and doubles in turn, about 62 bytes a line.
std::string MakeText(int sections) {
    std::string text;
    for (int s = 0; s < sections; ++s) {
        text += "[Section number " + std::to_string(s) + "]\n";
        for (int k = 0; k < 60; ++k) {
            text += "Key_" + std::to_string(k) + "_of_the_positioning_device_" + std::to_string(s) + "=";
            if (k % 3 == 0)
                text += "Positioning, heading and motion of the reference point at the keel " + std::to_string(s * k);
            if (k % 3 == 1) text += std::to_string(s * 1000 + k);
            if (k % 3 == 2) text += std::to_string(s * 1.25 + k / 7.0);
            text += "\n";
        }
    }
    return text;
}

constexpr std::size_t kNames = 1024;

std::vector<Name> NamesOf(int sections, int kind) {
    std::vector<Name> names;
    unsigned state = 12345;
    for (std::size_t i = 0; i < kNames; ++i) {
        state = state * 1664525u + 1013904223u;
        const int s = static_cast<int>((state >> 8) % static_cast<unsigned>(sections));
        const int k = static_cast<int>((state >> 20) % 20u) * 3 + (kind < 3 ? kind : 0);
        Name name;
        name.section = "Section number " + std::to_string(s);
        name.key = "Key_" + std::to_string(k) + (kind < 3 ? "_of_the_positioning_device_" : "_of_the_missing_device_") +
                   std::to_string(s);
        name.wideSection = orv::FromUtf8(name.section);
        name.wideKey = orv::FromUtf8(name.key);
        names.push_back(name);
    }
    return names;
}

KeyFile LoadPeer(const std::string& text) {
    KeyFile file(g_key_file_new());
    g_key_file_load_from_data(file.get(), text.data(), text.size(), G_KEY_FILE_KEEP_COMMENTS, nullptr);
    return file;
}

orv::FileObject LoadOurs(const std::string& text) {
    orv::FileObject file;
    file.FileOpen(orv::memfile(text.data(), text.size(), orv::textencoding::utf8), L"bench.ini");
    return file;
}

constexpr int kLarge = 400, kSmall = 2;

const std::string& Text(int sections) {
    static const std::string large = MakeText(kLarge), small = MakeText(1);
    return sections == kLarge ? large : small;
}

void ParseOurs(benchmark::State& state, int sections) {
    for (auto _ : state) benchmark::DoNotOptimize(LoadOurs(Text(sections)));
}
void ParsePeer(benchmark::State& state, int sections) {
    for (auto _ : state) benchmark::DoNotOptimize(LoadPeer(Text(sections)));
}

void OpenOurs(benchmark::State& state, int sections) {
    orv::test::TempFolder folder;
    orv::test::WriteBytes(folder / L"a.ini", Text(sections));
    for (auto _ : state) {
        orv::FileObject file;
        file.FileOpen(folder / L"a.ini", orv::kOpenRead);
        benchmark::DoNotOptimize(file);
    }
}
void OpenPeer(benchmark::State& state, int sections) {
    orv::test::TempFolder folder;
    orv::test::WriteBytes(folder / L"a.ini", Text(sections));
    const std::string path = orv::PathToBytes(folder / L"a.ini");
    for (auto _ : state) {
        KeyFile file(g_key_file_new());
        g_key_file_load_from_file(file.get(), path.c_str(), G_KEY_FILE_KEEP_COMMENTS, nullptr);
        benchmark::DoNotOptimize(file);
    }
}

enum Kind { kText = 0, kInt = 1, kDouble = 2, kMissing = 3 };

void GetOurs(benchmark::State& state, int kind) {
    const orv::FileObject file = LoadOurs(Text(kLarge));
    const std::vector<Name> names = NamesOf(kLarge, kind);
    std::size_t i = 0;
    std::wstring text;
    int number = 0;
    double real = 0;
    for (auto _ : state) {
        const Name& name = names[i++ % kNames];
        if (kind == kText) benchmark::DoNotOptimize(file.GetItem(name.wideSection, name.wideKey, text));
        if (kind == kInt) benchmark::DoNotOptimize(file.GetItem(name.wideSection, name.wideKey, number));
        if (kind == kDouble) benchmark::DoNotOptimize(file.GetItem(name.wideSection, name.wideKey, real));
        if (kind == kMissing) benchmark::DoNotOptimize(file.GetItem(name.wideSection, name.wideKey, text));
    }
}
void GetPeer(benchmark::State& state, int kind) {
    const KeyFile file = LoadPeer(Text(kLarge));
    const std::vector<Name> names = NamesOf(kLarge, kind);
    std::size_t i = 0;
    for (auto _ : state) {
        const Name& name = names[i++ % kNames];
        if (kind == kInt) {
            benchmark::DoNotOptimize(
                g_key_file_get_integer(file.get(), name.section.c_str(), name.key.c_str(), nullptr));
        } else if (kind == kDouble) {
            benchmark::DoNotOptimize(
                g_key_file_get_double(file.get(), name.section.c_str(), name.key.c_str(), nullptr));
        } else {
            char* text = g_key_file_get_string(file.get(), name.section.c_str(), name.key.c_str(), nullptr);
            benchmark::DoNotOptimize(text);
            g_free(text);
        }
    }
}

// Each round changes one item, so that nobody can hand out the bytes that were read.
void WriteOurs(benchmark::State& state) {
    orv::FileObject file = LoadOurs(Text(kLarge));
    int round = 0;
    for (auto _ : state) {
        file.SetItem(L"Section number 7", L"Key_1_of_the_positioning_device_7", ++round, true);
        orv::memfile out;
        file.FileSave(out);
        benchmark::DoNotOptimize(out);
    }
}
void WritePeer(benchmark::State& state) {
    const KeyFile file = LoadPeer(Text(kLarge));
    int round = 0;
    for (auto _ : state) {
        g_key_file_set_integer(file.get(), "Section number 7", "Key_1_of_the_positioning_device_7", ++round);
        char* text = g_key_file_to_data(file.get(), nullptr, nullptr);
        benchmark::DoNotOptimize(text);
        g_free(text);
    }
}

void SaveOurs(benchmark::State& state) {
    orv::test::TempFolder folder;
    orv::FileObject file = LoadOurs(Text(kLarge));
    for (auto _ : state) benchmark::DoNotOptimize(file.FileSave(folder / L"a.ini", orv::kSave));
}
void SavePeer(benchmark::State& state) {
    orv::test::TempFolder folder;
    const KeyFile file = LoadPeer(Text(kLarge));
    const std::string path = orv::PathToBytes(folder / L"a.ini");
    for (auto _ : state) benchmark::DoNotOptimize(g_key_file_save_to_file(file.get(), path.c_str(), nullptr));
}

void ChecksumOurs(benchmark::State& state) {
    orv::ConfigText content;
    content.Parse(std::make_shared<std::string>(Text(kLarge)));
    for (auto _ : state) benchmark::DoNotOptimize(orv::SumOfContent(content, orv::SumMode::Xor));
}
/// The plain pass: every character of every name, key and value, added up.
void ChecksumPeer(benchmark::State& state) {
    const orv::FileObject file = LoadOurs(Text(kLarge));
    std::vector<std::wstring> texts;
    orv::FobjSection cursor;
    std::wstring section, key, value;
    for (bool more = file.GetFirstSectionEntry(cursor, section); more;
         more = file.GetNextSectionEntry(cursor, section)) {
        texts.push_back(section);
        for (bool item = file.GetFirstMapEntry(cursor, section, key, value); item;
             item = file.GetNextMapEntry(cursor, key, value)) {
            texts.push_back(key + value);
        }
    }
    for (auto _ : state) {
        unsigned sum = 0;
        for (const std::wstring& text : texts) {
            for (const wchar_t c : text) sum += static_cast<unsigned>(c);
        }
        benchmark::DoNotOptimize(sum);
    }
}

std::size_t HeapInUse() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

void PrintMemory() {
    const std::size_t before = HeapInUse();
    const auto ours = std::make_unique<orv::FileObject>(LoadOurs(Text(kLarge)));
    const std::size_t between = HeapInUse();
    const KeyFile peer = LoadPeer(Text(kLarge));
    const std::size_t after = HeapInUse();
    std::printf("memory of %zu bytes of text: ours %.2f MB, peer %.2f MB, ours/peer %.2f\n", Text(kLarge).size(),
                static_cast<double>(between - before) / 1e6, static_cast<double>(after - between) / 1e6,
                static_cast<double>(between - before) / static_cast<double>(after - between));
}

const int registered = [] {
    PrintMemory();
    benchmark::RegisterBenchmark("parse_1500k/ours", ParseOurs, kLarge);
    benchmark::RegisterBenchmark("parse_1500k/peer", ParsePeer, kLarge);
    benchmark::RegisterBenchmark("open_4k/ours", OpenOurs, kSmall);
    benchmark::RegisterBenchmark("open_4k/peer", OpenPeer, kSmall);
    const char* kinds[] = {"get_text", "get_int", "get_double", "get_missing"};
    for (int kind = 0; kind < 4; ++kind) {
        benchmark::RegisterBenchmark((std::string(kinds[kind]) + "/ours").c_str(), GetOurs, kind);
        benchmark::RegisterBenchmark((std::string(kinds[kind]) + "/peer").c_str(), GetPeer, kind);
    }
    benchmark::RegisterBenchmark("write_1500k/ours", WriteOurs);
    benchmark::RegisterBenchmark("write_1500k/peer", WritePeer);
    benchmark::RegisterBenchmark("save_1500k/ours", SaveOurs);
    benchmark::RegisterBenchmark("save_1500k/peer", SavePeer);
    benchmark::RegisterBenchmark("checksum_1500k/ours", ChecksumOurs);
    benchmark::RegisterBenchmark("checksum_1500k/peer", ChecksumPeer);
    return 0;
}();

}  // namespace
