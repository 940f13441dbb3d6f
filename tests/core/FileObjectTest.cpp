#include "core/FileObject.h"

#include <rapidcheck.h>

#include <map>

#include "platform/os/FileSystem.h"
#include "platform/text/Utf.h"
#include "support/TestSupport.h"

namespace orv {
namespace {

using test::ReadBytes;
using test::TempFolder;
using test::WriteBytes;

constexpr std::string_view kSample =
    "; made by hand\r\n"
    "extra = line\r\n"
    "\r\n"
    "[Ports]\r\n"
    "; the gyro\r\n"
    "COM1 = 4800,8,N\r\n"
    "@.Item(3)=a;b, c \r\n"
    "Empty=\r\n"
    "Quoted=\" lead\"\r\n"
    "\r\n"
    "[Options]\n"
    "Flag=TRUE\r\n"
    "Depth=12.5\r\n"
    "Count=-3";

FileObject Opened(std::string_view text) {
    FileObject file;
    EXPECT_TRUE(file.FileOpen(memfile(text.data(), text.size(), textencoding::utf8), L"/x/Sample.ini"));
    return file;
}

std::string Saved(const FileObject& file) {
    memfile out;
    EXPECT_TRUE(file.FileSave(out));
    return out.Bytes();
}

std::wstring Text(const FileObject& file, std::wstring_view section, std::wstring_view key) {
    std::wstring out = L"<untouched>";
    file.GetItem(section, key, out);
    return out;
}

std::wstring SectionNames(const FileObject& file) {
    FobjSection cursor;
    std::wstring name, all;
    for (bool more = file.GetFirstSectionEntry(cursor, name); more; more = file.GetNextSectionEntry(cursor, name)) {
        all += name + L"|";
    }
    return all;
}

TEST(FileObject, ReadsItemsOfEachType) {
    const FileObject file = Opened(kSample);
    EXPECT_EQ(Text(file, L"Ports", L"COM1"), L"4800,8,N");
    EXPECT_EQ(Text(file, L"Ports", L"@.Item(3)"), L"a;b, c");
    EXPECT_EQ(Text(file, L"Ports", L"Quoted"), L" lead");
    EXPECT_EQ(Text(file, L"Ports", L"Empty"), L"");
    bool flag = false;
    double depth = 0;
    int count = 0;
    EXPECT_TRUE(file.GetItem(L"Options", L"Flag", flag) && flag);
    EXPECT_TRUE(file.GetItem(L"Options", L"Depth", depth) && depth == 12.5);
    EXPECT_TRUE(file.GetItem(L"Options", L"Count", count) && count == -3);
    EXPECT_EQ(file.GetExtraInfo(), (std::vector<std::wstring>{L"; made by hand", L"extra = line"}));
    EXPECT_EQ(file.GetFileTitle(), L"Sample");
}

TEST(FileObject, FailedQueryLeavesOutputAloneAndTellsWhy) {
    const FileObject file = Opened(kSample);
    struct Row {
        const wchar_t *section, *key;
        int status;
    };
    for (const Row& row : {Row{L"Nowhere", L"Flag", kFileNoSection}, Row{L"options", L"Flag", kFileNoSection},
                           Row{L"Options", L"flag", kFileNoKey}, Row{L"Options", L"Flag", kFileNoConvert}}) {
        int out = 77;
        EXPECT_FALSE(file.GetItem(row.section, row.key, out)) << ToUtf8(row.key);
        EXPECT_EQ(out, 77);
        EXPECT_EQ(file.GetErrorStatus(), row.status);
    }
    unsigned negative = 5;
    EXPECT_FALSE(file.GetItem(L"Options", L"Count", negative));
    FileObject unopened;
    int out = 1;
    EXPECT_FALSE(unopened.GetItem(L"A", L"b", out));
    EXPECT_EQ(unopened.GetErrorStatus(), kFileNoFile);
    unopened.ThrowExceptions(true);
    EXPECT_THROW(unopened.GetItem(L"A", L"b", out), std::wstring);
}

TEST(FileObject, EditingOneItemChangesOneLine) {
    FileObject file = Opened(kSample);
    EXPECT_EQ(Saved(file), kSample);
    EXPECT_TRUE(file.SetItem(L"Ports", L"COM1", L"4800,8,N", true));
    EXPECT_EQ(Saved(file), kSample) << "the same value is no change";

    EXPECT_TRUE(file.SetItem(L"Ports", L"COM1", L"9600,8,N", true));
    std::string expected(kSample);
    expected.replace(expected.find("4800"), 4, "9600");
    EXPECT_EQ(Saved(file), expected);

    EXPECT_TRUE(file.SetItem(L"Options", L"New", 4, true));
    EXPECT_EQ(Saved(file), expected + "\r\nNew=4\r\n") << "a last line without end gets one";
    EXPECT_TRUE(file.DeleteItem(L"Options", L"New", false));
    EXPECT_EQ(Saved(file).substr(0, expected.size()), expected);
}

TEST(FileObject, ValuesReadBackAsTheyWereSet) {
    struct Row {
        const wchar_t *set, *held;
    };
    for (const Row& row : {Row{L" lead and trail ", L" lead and trail "}, Row{L"\"quoted\"", L"\"quoted\""},
                           Row{L"\"", L"\""}, Row{L"\"half", L"\"half"}, Row{L"two\r\nlines\n", L"two lines "},
                           Row{L"=;[x]", L"=;[x]"}, Row{L"\x1F6A2 \u00C4", L"\x1F6A2 \u00C4"}, Row{L"\t", L"\t"}}) {
        FileObject file;
        ASSERT_TRUE(file.SetItem(L"S", L"k", row.set, true));
        EXPECT_EQ(Text(file, L"S", L"k"), row.held);
        EXPECT_EQ(Text(Opened(Saved(file)), L"S", L"k"), row.held) << ToUtf8(row.set);
    }
    FileObject file;
    for (const wchar_t* key : {L"", L"a=b", L"[a", L";a", L" a", L"a ", L"a\nb"}) {
        EXPECT_FALSE(file.SetItem(L"S", key, L"v", true)) << ToUtf8(key);
    }
    EXPECT_FALSE(file.SetItem(L"a\nb", L"k", L"v", true));
    EXPECT_FALSE(file.SetItem(L"S", L"k", L"v", false));
    EXPECT_EQ(Saved(file), "");
    EXPECT_TRUE(file.SetItem(L"S", L"on", true, true) && file.SetItem(L"S", L"text", L"10", true));
    EXPECT_EQ(Saved(file), "[S]\r\non=1\r\ntext=10\r\n") << "a literal is a text, not a bool";
}

TEST(FileObject, RepeatedSectionsAndKeysAreOne) {
    const std::string text = "[A]\r\nk=1\r\nz=9\r\n[B]\r\nx=1\r\n[A]\r\nk=2\r\nm=3\r\n";
    FileObject file = Opened(text);
    EXPECT_EQ(Text(file, L"A", L"k"), L"2");
    FobjSection cursor;
    std::wstring key, value;
    ASSERT_TRUE(file.GetFirstMapEntry(cursor, L"A", key, value));
    EXPECT_EQ(key + value, L"k2") << "the first place, the last value";
    EXPECT_TRUE(file.SetItem(L"A", L"k", L"5", true));
    EXPECT_EQ(Saved(file), "[A]\r\nk=1\r\nz=9\r\n[B]\r\nx=1\r\n[A]\r\nk=5\r\nm=3\r\n");
    EXPECT_TRUE(file.DeleteItem(L"A", L"k", false));
    EXPECT_FALSE(Opened(Saved(file)).HasKey(L"A", L"k")) << "the overwritten line must not come back";
    EXPECT_TRUE(file.DeleteSection(L"A"));
    EXPECT_EQ(Saved(file), "[B]\r\nx=1\r\n");
}

TEST(FileObject, CursorsSurviveChanges) {
    FileObject file = Opened("[A]\nx=1\ny=2\nz=3\n[B]\nx=1\n[C]\nx=1\n");
    FobjSection cursor;
    std::wstring name, key, value;
    ASSERT_TRUE(file.GetFirstSectionEntry(cursor, name));
    std::wstring keys;
    for (bool more = file.GetFirstMapEntry(cursor, name, key, value); more;
         more = file.GetNextMapEntry(cursor, key, value)) {
        keys += key;
        EXPECT_TRUE(file.DeleteItem(L"A", key, false));     // what it stands on
        EXPECT_TRUE(file.SetItem(L"D", key, value, true));  // a section behind
    }
    EXPECT_EQ(keys, L"xyz");
    EXPECT_TRUE(cursor.SetAt(L"at", L"here"));
    EXPECT_EQ(Text(file, L"A", L"at"), L"here");
    EXPECT_TRUE(file.DeleteSection(cursor, L"A"));
    EXPECT_FALSE(cursor.SetAt(L"at", L"gone"));
    EXPECT_TRUE(file.DeleteSection(L"B"));         // the next one too
    EXPECT_TRUE(file.CreateSection(L"E", false));  // takes a place that has become free
    ASSERT_TRUE(file.GetNextSectionEntry(cursor, name));
    EXPECT_EQ(name, L"C");
    EXPECT_EQ(SectionNames(file), L"C|D|E|");
    ASSERT_TRUE(file.FileOpen(memfile("[X]\n[Y]\n", 8, textencoding::utf8), L"other"));
    EXPECT_FALSE(cursor.SetAt(L"k", L"v")) << "a cursor from before a reading finds nothing of its own";
}

TEST(FileObject, SectionOperations) {
    FileObject file = Opened("[A]\nx=1\n[B]\ny=2\n");
    EXPECT_FALSE(file.CreateSection(L"A", false));
    EXPECT_TRUE(file.CreateSection(L"A", true));
    EXPECT_EQ(Text(file, L"A", L"x"), L"1") << "an accepted section keeps its content";
    EXPECT_FALSE(file.RenameSection(L"A", L"B"));
    EXPECT_FALSE(file.RenameSection(L"Z", L"Y"));
    EXPECT_TRUE(file.RenameSection(L"A", L"Y"));
    EXPECT_EQ(SectionNames(file), L"Y|B|");
    EXPECT_EQ(Text(file, L"Y", L"x"), L"1");
    EXPECT_FALSE(file.CopySection(L"B", L"Nowhere"));
    EXPECT_EQ(Text(file, L"B", L"y"), L"2");
    EXPECT_TRUE(file.CopySection(L"B", L"Y") && file.CopySection(L"B", L"B"));
    EXPECT_EQ(Saved(file), "[Y]\nx=1\n[B]\nx=1\n");
    EXPECT_FALSE(file.DeleteSection(L"A"));
    EXPECT_TRUE(file.DeleteItem(L"B", L"none", true));
    EXPECT_FALSE(file.DeleteItem(L"B", L"none", false));
    FileObject copy = file;
    copy.MakeEmpty();
    EXPECT_EQ(copy.GetFileName(), L"/x/Sample.ini");
    EXPECT_EQ(SectionNames(copy), L"");
    EXPECT_EQ(SectionNames(file), L"Y|B|") << "a copy stands alone";
}

TEST(FileObject, EncodingIsKept) {
    struct Row {
        const char* name;
        std::string bytes;
    };
    const auto wide = [](std::string text) { return "\xFF\xFE" + Utf8ToUtf16Le(text); };
    const Row rows[] = {{"utf-8", "[S]\r\nname=\xC3\x84\r\n"},
                        {"utf-8 with mark", "\xEF\xBB\xBF[S]\r\nname=\xC3\x84\r\n"},
                        {"old code page", "[S]\r\nname=\xC4\r\n"},
                        {"utf-16", wide("[S]\r\nname=\xC3\x84\r\n")}};
    TempFolder folder;
    const auto savedBytes = [&](FileObject& file) {
        EXPECT_TRUE(file.FileSave(folder / L"a.ini", kSave));
        return ReadBytes(folder / L"a.ini");
    };
    for (const Row& row : rows) {
        FileObject file = Opened(row.bytes);
        EXPECT_EQ(Text(file, L"S", L"name"), L"\u00C4") << row.name;
        EXPECT_EQ(savedBytes(file), row.bytes) << row.name;
        EXPECT_TRUE(file.SetItem(L"S", L"name", L"\u00D6", true));
        FileObject again;
        ASSERT_TRUE(savedBytes(file).size() == row.bytes.size() && again.FileOpen(folder / L"a.ini", kOpenRead));
        EXPECT_EQ(Text(again, L"S", L"name"), L"\u00D6") << row.name;
    }
    FileObject old = Opened(rows[2].bytes);
    EXPECT_TRUE(old.SetItem(L"S", L"name", L"\u4E2D", true));
    EXPECT_EQ(savedBytes(old), "[S]\r\nname=\xE4\xB8\xAD\r\n") << "what the old page can't hold isn't lost";
    FileObject twisted = Opened("[S]\r\na=\xC3\xB6\r\nname=\xC4\r\n");
    const std::wstring before = Text(twisted, L"S", L"a");
    EXPECT_TRUE(twisted.SetItem(L"S", L"name", L"x", true));
    EXPECT_EQ(Text(Opened(savedBytes(twisted)), L"S", L"a"), before) << "not taken for UTF-8 the next time";
}

TEST(FileObject, OpensAndSavesByName) {
    TempFolder folder;
    const std::wstring path = folder / L"a.ini";
    FileObject file;
    EXPECT_FALSE(file.FileOpen(path, kOpenRead));
    EXPECT_EQ(file.GetErrorStatus(), kFileOk) << "a failed open sets no status";
    EXPECT_FALSE(file.FileSave(L"", kSave));
    EXPECT_EQ(file.GetErrorStatus(), kFileNoName);
    ASSERT_TRUE(file.FileOpen(path, kOpenCreateRead));
    EXPECT_TRUE(file.FileInitialised());
    EXPECT_TRUE(test::Exists(path));
    ASSERT_TRUE(file.SetItem(L"S", L"k", 1, true) && file.FileSave(L"", kSave));
    ASSERT_TRUE(file.FileOpen(path, kOpenCreateRead));
    EXPECT_EQ(Text(file, L"S", L"k"), L"1") << "an existing file isn't emptied";
    file.FileClose();
    EXPECT_FALSE(file.FileInitialised());
    EXPECT_FALSE(file.FileOpen(folder / L"none/b.ini", kOpenCreateRead));
    WriteBytes(folder / L"big-endian.ini", "\xFE\xFF\0[\0S\0]");
    EXPECT_FALSE(file.FileOpen(folder / L"big-endian.ini", kOpenRead));
}

TEST(FileObject, DamagedTextIsPutAsideBeforeItIsOverwritten) {
    TempFolder folder;
    const std::string damaged = "\xEF\xBB\xBF[S]\r\nk=\xC3(\r\n";
    WriteBytes(folder / L"a.ini", damaged);
    FileObject file;
    ASSERT_TRUE(file.FileOpen(folder / L"a.ini", kOpenRead));
    ASSERT_TRUE(file.FileSave(L"", kSave) && file.FileSave(L"", kSave)) << "the second save keeps nothing more";
    std::vector<FolderEntry> entries;
    ASSERT_EQ(Files().List(folder.Path(), entries), FsResult::Ok);
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[1].name.substr(0, 14), L"a.ini.damaged-");
    EXPECT_EQ(ReadBytes(folder / entries[1].name), damaged);

    WriteBytes(folder / L"a.ini", damaged);  // as a file that can't be rewritten looks at the next start
    FileObject again;
    ASSERT_TRUE(again.FileOpen(folder / L"a.ini", kOpenRead) && again.FileSave(L"", kSave));
    ASSERT_EQ(Files().List(folder.Path(), entries), FsResult::Ok);
    EXPECT_EQ(entries.size(), 2u) << "one copy of the same bytes is enough";
}

// A walk sees everything once and in order, whatever it deletes on its way.
TEST(FileObject, WalksThatDelete) {
    for (unsigned pattern = 0; pattern < 256; ++pattern) {
        std::string text;
        for (const char name : std::string("abcdefgh")) text += std::string("[") + name + "]\nk" + name + "=1\n";
        FileObject file = Opened(text + "[items]\na=\nb=\nc=\nd=\ne=\nf=\ng=\nh=\n");
        std::wstring seen, name, value;
        FobjSection cursor;
        unsigned n = 0;
        for (bool more = file.GetFirstSectionEntry(cursor, name); more && name.size() == 1; ++n) {
            seen += name;
            if (pattern >> n & 1) file.DeleteSection(cursor, name);
            if (pattern >> (n + 3) % 8 & 1 && n > 1) file.DeleteSection(std::wstring(1, L"abcdefgh"[n - 2]));
            more = file.GetNextSectionEntry(cursor, name);
        }
        n = 0;
        for (bool more = file.GetFirstMapEntry(cursor, L"items", name, value); more; ++n) {
            seen += name;
            if (pattern >> n & 1) file.DeleteItem(L"items", name, false);
            if (pattern >> (n + 3) % 8 & 1 && n > 1) {
                file.DeleteItem(L"items", std::wstring(1, L"abcdefgh"[n - 2]), true);
            }
            more = file.GetNextMapEntry(cursor, name, value);
        }
        ASSERT_EQ(seen, L"abcdefghabcdefgh") << pattern;
    }
}

// Any sequence of changes must leave an object that agrees with a plain map, and whose text reads back the same.
TEST(FileObject, AgreesWithAPlainMap) {
    EXPECT_TRUE(rc::check([] {
        FileObject file = Opened("; top\r\n[s1]\r\nk1=v\r\n; c\r\nk2=w\r\n[s0]\r\nk1=x\r\n[s1]\r\nk1=y\r\n");
        std::map<std::wstring, std::map<std::wstring, std::wstring>> model = {{L"s1", {{L"k1", L"y"}, {L"k2", L"w"}}},
                                                                              {L"s0", {{L"k1", L"x"}}}};
        const int steps = *rc::gen::inRange(1, 60);
        for (int i = 0; i < steps; ++i) {
            const std::wstring section = L"s" + std::to_wstring(*rc::gen::inRange(0, 4));
            const std::wstring other = L"s" + std::to_wstring(*rc::gen::inRange(0, 4));
            const std::wstring key = L"k" + std::to_wstring(*rc::gen::inRange(0, 6));
            const std::wstring value = *rc::gen::element<std::wstring>(L"", L" a", L"b ", L"\"", L"c=d", L"\u00E9");
            switch (*rc::gen::inRange(0, 6)) {
                case 0:
                case 1:
                    RC_ASSERT(file.SetItem(section, key, value, true));
                    model[section][key] = value;
                    break;
                case 2:
                    RC_ASSERT(file.DeleteItem(section, key, false) ==
                              (model.count(section) && model[section].erase(key)));
                    break;
                case 3:
                    RC_ASSERT(file.DeleteSection(section) == (model.erase(section) == 1));
                    break;
                case 4:
                    RC_ASSERT(file.RenameSection(section, other) == (model.count(section) && !model.count(other)));
                    if (model.count(section) && !model.count(other)) {
                        model[other] = model[section];
                        model.erase(section);
                    }
                    break;
                default:
                    RC_ASSERT(file.CopySection(other, section) == (model.count(section) == 1));
                    if (model.count(section)) model[other] = std::map(model[section]);
            }
        }
        for (const FileObject& at : {FileObject(file), Opened(Saved(file))}) {
            std::map<std::wstring, std::map<std::wstring, std::wstring>> found;
            FobjSection cursor;
            std::wstring section, key, value;
            for (bool more = at.GetFirstSectionEntry(cursor, section); more;
                 more = at.GetNextSectionEntry(cursor, section)) {
                found[section];
                for (bool item = at.GetFirstMapEntry(cursor, section, key, value); item;
                     item = at.GetNextMapEntry(cursor, key, value)) {
                    found[section][key] = value;
                    RC_ASSERT(Text(at, section, key) == value);
                }
            }
            RC_ASSERT(found == model);
        }
        RC_ASSERT(file.GetExtraInfo() == std::vector<std::wstring>{L"; top"});
    }));
}

}  // namespace
}  // namespace orv
