#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/MemFile.h"
#include "core/SmallUtf8.h"
#include "platform/Export.h"

namespace orv {

/// The content of a configuration file: its lines as they were read, and an index over sections and items. Texts are
/// held as UTF-8 in the bytes of the file itself; only lines that were changed own a text. So reading makes no copies,
/// an item reads in a few tens of nanoseconds, and saving writes unchanged stretches as they were.
///
/// Places (of a section, of an item) are stable until what they name is deleted; stamps grow in walking order and are
/// never used again. One thread at a time; const operations may run on several.
class ORV_EXPORT ConfigText {
public:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;
    static constexpr std::uint64_t kMaxBytes = 64u << 20;

    ConfigText();

    /// Takes the bytes of a file: byte order mark, else UTF-8, else Windows-1252. False, and the content is left alone,
    /// if there are too many or they are UTF-16 of the other byte order.
    bool Parse(std::shared_ptr<const std::string> bytes);
    /// The bytes as they are to be saved, in the encoding found (UTF-8 where the old page can't hold a new text).
    std::string Bytes() const { return Bytes(encoding); }
    std::string Bytes(textencoding::type as) const;
    void MakeEmpty();  ///< keeps the lines before the first section
    /// Never gives a stamp again that `other` has given: a cursor from before finds nothing of its own here.
    void ContinueStamps(const ConfigText& other) { nextStamp = std::max(nextStamp, other.nextStamp); }

    textencoding::type Encoding() const { return encoding; }
    /// True if bytes were found that are no text of the file's encoding: what is in memory isn't all that was read.
    bool HasUndecodable() const { return undecodable; }
    /// True if an enciphered body stands behind the line that says so.
    bool HasCipher() const { return lastLine != kNone && lines[lastLine].kind == Kind::Opaque; }
    std::string_view ExtraText() const;  ///< everything before the first section
    std::vector<std::string_view> OddLines() const;

    // Sections, by place.

    std::uint32_t FindSection(std::string_view name) const;
    std::uint32_t FirstSection() const { return firstSection; }
    std::uint32_t NextSection(std::uint32_t section) const { return sections[section].next; }
    /// The section behind `stamp`; `place` is where that one was last seen.
    std::uint32_t SectionAfter(std::uint64_t stamp, std::uint32_t place) const;
    std::uint32_t SectionOfStamp(std::uint64_t stamp, std::uint32_t place) const;
    std::string_view SectionName(std::uint32_t section) const { return sections[section].name; }
    std::uint64_t SectionStamp(std::uint32_t section) const { return sections[section].stamp; }
    std::uint32_t AddSection(std::string_view name);
    void DeleteSection(std::uint32_t section);
    void ClearSection(std::uint32_t section);  ///< removes all in it but its first header line
    void RenameSection(std::uint32_t section, std::string_view name);

    // Items, by place.

    std::uint32_t FindItem(std::uint32_t section, std::string_view key) const;
    /// Both at once.
    struct Found {
        std::uint32_t section = kNone, item = kNone;
    };
    Found Find(std::string_view section, std::string_view key) const { return Find(section, false, key, false); }
    Found Find(const SmallUtf8& section, const SmallUtf8& key) const {
        return Find(section.View(), section.Padded(), key.View(), key.Padded());
    }
    std::uint32_t FirstItem(std::uint32_t section) const { return sections[section].firstItem; }
    std::uint32_t NextItem(std::uint32_t item) const { return lines[item].nextItem; }
    std::uint32_t ItemAfter(std::uint32_t section, std::uint64_t stamp, std::uint32_t place) const;
    std::string_view Key(std::uint32_t item) const {
        const Line& line = lines[item];
        return {Begin(line) + line.keyBegin, line.keySize};
    }
    std::string_view Value(std::uint32_t item) const {
        const Line& line = lines[item];
        return {Begin(line) + line.valueBegin, line.valueSize};
    }
    /// How far memory may be read behind a key or value of an item: to the end of the line or of the whole text.
    const char* ReadableEnd(std::string_view part) const {
        const char* const end = source->data() + source->size();
        const bool inSource = std::less_equal<>()(source->data(), part.data()) && std::less_equal<>()(part.data(), end);
        return inSource ? end : part.data() + part.size();
    }
    std::uint64_t ItemStamp(std::uint32_t item) const { return lines[item].stamp; }
    std::uint32_t AddItem(std::uint32_t section, std::string_view key, std::string_view value);
    void SetValue(std::uint32_t item, std::string_view value);
    void DeleteItem(std::uint32_t item);

    /// True if the text will read back the same as a key / a section name.
    static bool IsKey(std::string_view key);
    static bool IsSectionName(std::string_view name);

private:
    enum class Kind : std::uint32_t { Free, Other, Header, Item, Shadowed, Opaque };
    static constexpr std::uint32_t kNoSection = (1u << 29) - 1;
    /// One cache line, so that a look-up touches one.
    struct alignas(64) Line {
        std::unique_ptr<std::string> own;   // text of a new or changed line, without its end
        std::uint32_t begin = 0, size = 0;  // place in the file's text, with its end
        std::uint32_t keyBegin = 0, keySize = 0, valueBegin = 0, valueSize = 0;  // inside the line's text
        std::uint32_t hash = 0;
        std::uint32_t section : 29 = kNoSection;
        Kind kind : 3 = Kind::Free;
        std::uint64_t stamp = 0;
        std::uint32_t previousItem = kNone, nextItem = kNone;  // in the walk over its section
        std::uint32_t previous = kNone, next = kNone;          // in the file

        void PutIn(std::uint32_t place) { section = place & kNoSection; }

        Line() = default;
        Line(const Line& other);
        Line& operator=(const Line& other);
        Line(Line&&) noexcept = default;
        Line& operator=(Line&&) noexcept = default;
        ~Line() = default;
    };
    struct Section {
        std::string name;
        std::uint32_t header = kNone;  // its first header line
        std::uint32_t firstItem = kNone, lastItem = kNone;
        std::uint32_t previous = kNone, next = kNone;
        std::uint64_t hash = 0;
        std::uint64_t stamp = 0;  // 0: free place
        bool repeated = false;    // more than one header line, or a key more than once
    };
    /// What was deleted last and what stood before it, so that a walk that deletes where it stands goes on from there.
    struct Gone {
        std::uint64_t stamp = 0, beforeStamp = 0;
        std::uint32_t before = kNone;
    };
    /// Open addressing over places; the hash stands beside the place so that a probe rarely leaves the table.
    struct Slot {
        std::uint32_t hash = 0, place = kNone;
        std::uint32_t begin = 0;  // where the line was read from, to have its text fetched while the line is
    };
    class Table {
    public:
        template <class Same>
        std::uint32_t Find(std::uint32_t hash, Same same) const;
        void Insert(std::uint32_t hash, std::uint32_t place, std::uint32_t begin = 0);
        void Erase(std::uint32_t hash, std::uint32_t place);
        void Change(std::uint32_t hash, std::uint32_t from, std::uint32_t to, std::uint32_t begin);
        void Reserve(std::size_t count);
        void Clear();

    private:
        void Rehash(std::size_t size);
        std::vector<Slot> slots;
        std::size_t used = 0;
    };

    Found Find(std::string_view section, bool sectionPadded, std::string_view key, bool keyPadded) const;
    bool IsItem(const Slot& slot, std::uint32_t section, std::string_view key) const;
    const char* Begin(const Line& line) const { return line.own ? line.own->data() : source->data() + line.begin; }
    std::string_view Text(const Line& line) const;
    std::string_view RawText(const Line& line) const;
    void ParseText();
    void ParseItem(std::uint32_t lineBegin, std::string_view text, std::uint32_t size, std::uint32_t section);
    void AppendOther(std::uint32_t begin, std::uint32_t size, std::uint32_t section, Kind kind);
    std::uint32_t NewLine();
    void LinkLast(std::uint32_t line);
    void LinkAfter(std::uint32_t where, std::uint32_t line);
    void UnlinkLine(std::uint32_t line);
    void AppendToWalk(std::uint32_t section, std::uint32_t item);
    void UnlinkFromWalk(std::uint32_t item);
    std::uint32_t NewSection(std::string_view name, std::uint32_t header);
    void FreeSection(std::uint32_t section);
    void DeleteLinesOf(std::uint32_t section, std::uint32_t keep);
    std::string_view LineEnd() const { return lineFeedOnly ? "\n" : "\r\n"; }

    std::shared_ptr<const std::string> source;  // the file as UTF-8, without byte order mark
    std::uint32_t textBegin = 0;                // where the text starts in it
    std::vector<Line> lines;
    std::vector<std::uint32_t> freeLines;
    std::uint32_t firstLine = kNone, lastLine = kNone;
    std::vector<Section> sections;
    std::vector<std::uint32_t> freeSections;
    std::uint32_t firstSection = kNone, lastSection = kNone;
    Table sectionTable, itemTable;
    Gone goneSection, goneItem;
    std::uint64_t nextStamp = 1;
    textencoding::type encoding = textencoding::utf8;
    bool lineFeedOnly = false;
    bool changed = false;
    bool undecodable = false;
};

}  // namespace orv
