#include "core/ConfigText.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <optional>
#include <random>

#include "platform/text/Utf.h"

namespace orv {

namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16LeMark = "\xFF\xFE";
constexpr std::string_view kUtf16BeMark = "\xFE\xFF";
constexpr std::string_view kEncryptedLine = "[Encrypted]\r\n";

// A stray NUL counts as a blank: a header area of fixed size is filled up with them.
constexpr bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\0';
}

std::string_view Trim(std::string_view text) {
    while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
    return text;
}

std::uint64_t Mix(std::uint64_t a, std::uint64_t b) {
    const auto product = static_cast<unsigned __int128>(a) * b;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

// Drawn once a process, so that nobody can make a file whose keys all fall into one place.
std::uint64_t Seed() {
    static const std::uint64_t seed = [] {
        std::random_device device;
        return (static_cast<std::uint64_t>(device()) << 32) ^ device() ^ 0x9E3779B97F4A7C15ull;
    }();
    return seed;
}

template <class Word>
std::uint64_t Load(const char* data) {
    Word word;
    std::memcpy(&word, data, sizeof(word));
    return word;
}

constexpr std::size_t kWord = sizeof(std::uint64_t);

// The last bytes of a text, `size` modulo eight of them and not 0, as a number with zeros above.
std::uint64_t LastWord(const char* text, std::size_t size) {
    const std::size_t left = size % kWord;
    if (size >= kWord) return Load<std::uint64_t>(text + size - kWord) >> (8 * (kWord - left));
    std::uint64_t word = 0;
    for (std::size_t i = left; i-- > 0;) word = word << 8 | static_cast<unsigned char>(text[i]);
    return word;
}

// Two words a step, as the multiplications wait for each other. With `padded`, zeros fill up the last word.
std::uint64_t Hash(std::string_view text, bool padded, std::uint64_t seed) {
    constexpr std::uint64_t kPrime = 0xA0761D6478BD642Full;
    const std::uint64_t secret = std::rotl(Seed(), 32);
    const char* const data = text.data();
    const std::size_t left = text.size() % kWord, whole = text.size() - left;
    const auto last = [&] { return padded ? Load<std::uint64_t>(data + whole) : LastWord(data, text.size()); };
    std::uint64_t hash = seed ^ (text.size() * kPrime);
    std::size_t at = 0;
    for (; at + 2 * kWord <= whole; at += 2 * kWord) {
        hash = Mix(Load<std::uint64_t>(data + at) ^ secret, Load<std::uint64_t>(data + at + kWord) ^ hash);
    }
    if (at < whole) return Mix(Load<std::uint64_t>(data + at) ^ secret, (left > 0 ? last() : kPrime) ^ hash);
    return left > 0 ? Mix(last() ^ secret, hash ^ kPrime) : hash;
}

std::uint32_t Fold(std::uint64_t hash) {
    return static_cast<std::uint32_t>(hash ^ (hash >> 32));
}

// Names are a few words long: a call to compare them costs as much as the comparison.
inline bool SameText(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    if (a.size() < kWord) return a == b;
    const std::size_t last = a.size() - kWord;
    for (std::size_t at = 0; at < last; at += kWord) {
        if (Load<std::uint64_t>(a.data() + at) != Load<std::uint64_t>(b.data() + at)) return false;
    }
    return Load<std::uint64_t>(a.data() + last) == Load<std::uint64_t>(b.data() + last);
}

std::uint64_t SectionHash(std::string_view name, bool padded = false) {
    return Hash(name, padded, Seed());
}
std::uint32_t ItemHash(std::uint64_t sectionHash, std::string_view key, bool padded = false) {
    return Fold(Mix(Hash(key, padded, ~Seed()), sectionHash));
}

// What a value looks like in the file: quoted where reading would take something off its ends.
std::string OnDisk(std::string_view value) {
    const bool quote = !value.empty() && (IsBlank(value.front()) || IsBlank(value.back()) || value.front() == '"');
    if (!quote) return std::string(value);
    std::string quoted = "\"";
    quoted += value;
    quoted += '"';
    return quoted;
}

// The part of `text` behind the equals sign that is the value.
std::string_view ValuePart(std::string_view text) {
    std::string_view value = Trim(text);
    if (value.size() >= 2 && value.front() == '"' && value.back() == '"') {
        value.remove_prefix(1);
        value.remove_suffix(1);
    }
    return value;
}

std::uint32_t Offset(std::string_view whole, std::string_view part) {
    return static_cast<std::uint32_t>(part.data() - whole.data());
}

std::string_view WithoutLineEnd(std::string_view line) {
    if (!line.empty() && line.back() == '\n') line.remove_suffix(1);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    return line;
}

// The name in a section line, or nothing. It ends at the last bracket if the line does, else at the first.
std::optional<std::string_view> HeaderName(std::string_view trimmed) {
    if (trimmed.empty() || trimmed.front() != '[') return std::nullopt;
    const std::size_t end = trimmed.back() == ']' ? trimmed.size() - 1 : trimmed.find(']');
    if (end == std::string_view::npos || end == 0) return std::nullopt;
    return trimmed.substr(1, end - 1);
}

// Where an enciphered body starts, or npos.
std::size_t FindEnciphered(std::string_view bytes) {
    for (std::size_t at = bytes.find(kEncryptedLine); at != std::string_view::npos;
         at = bytes.find(kEncryptedLine, at + 1)) {
        if (at == 0 || bytes[at - 1] == '\n') return at + kEncryptedLine.size();
    }
    return std::string_view::npos;
}

}  // namespace

// ---- the table of places

template <class Same>
std::uint32_t ConfigText::Table::Find(std::uint32_t hash, Same same) const {
    if (slots.empty()) return kNone;
    const std::size_t mask = slots.size() - 1;
    for (std::size_t at = hash & mask;; at = (at + 1) & mask) {
        const Slot& slot = slots[at];
        if (slot.place == kNone) return kNone;
        if (slot.hash == hash && same(slot)) return slot.place;
    }
}

void ConfigText::Table::Rehash(std::size_t size) {
    std::vector<Slot> old(size);
    old.swap(slots);
    used = 0;
    for (const Slot& slot : old) {
        if (slot.place != kNone) Insert(slot.hash, slot.place, slot.begin);
    }
}

void ConfigText::Table::Reserve(std::size_t count) {
    const std::size_t size = std::bit_ceil(count * 2 + 8);
    if (size > slots.size()) Rehash(size);
}

void ConfigText::Table::Insert(std::uint32_t hash, std::uint32_t place, std::uint32_t begin) {
    if ((used + 1) * 3 > slots.size() * 2) Rehash(std::max<std::size_t>(16, slots.size() * 2));
    const std::size_t mask = slots.size() - 1;
    std::size_t at = hash & mask;
    while (slots[at].place != kNone) at = (at + 1) & mask;
    slots[at] = {hash, place, begin};
    ++used;
}

void ConfigText::Table::Erase(std::uint32_t hash, std::uint32_t place) {
    const std::size_t mask = slots.size() - 1;
    std::size_t hole = hash & mask;
    while (slots[hole].place != place) hole = (hole + 1) & mask;
    // Whatever was pushed past the hole moves back into it, so that no probe stops short.
    for (std::size_t at = (hole + 1) & mask; slots[at].place != kNone; at = (at + 1) & mask) {
        const std::size_t home = slots[at].hash & mask;
        if (((at - home) & mask) >= ((at - hole) & mask)) {
            slots[hole] = slots[at];
            hole = at;
        }
    }
    slots[hole] = {};
    --used;
}

void ConfigText::Table::Change(std::uint32_t hash, std::uint32_t from, std::uint32_t to, std::uint32_t begin) {
    const std::size_t mask = slots.size() - 1;
    std::size_t at = hash & mask;
    while (slots[at].place != from) at = (at + 1) & mask;
    slots[at].place = to;
    slots[at].begin = begin;
}

void ConfigText::Table::Clear() {
    slots.clear();
    used = 0;
}

// ---- lines

ConfigText::Line::Line(const Line& other) {
    *this = other;
}

ConfigText::Line& ConfigText::Line::operator=(const Line& other) {
    if (this == &other) return *this;
    own = other.own ? std::make_unique<std::string>(*other.own) : nullptr;
    begin = other.begin;
    size = other.size;
    keyBegin = other.keyBegin;
    keySize = other.keySize;
    valueBegin = other.valueBegin;
    valueSize = other.valueSize;
    previous = other.previous;
    next = other.next;
    previousItem = other.previousItem;
    nextItem = other.nextItem;
    PutIn(other.section);
    hash = other.hash;
    stamp = other.stamp;
    kind = other.kind;
    return *this;
}

ConfigText::ConfigText() : source(std::make_shared<std::string>()) {}

std::string_view ConfigText::RawText(const Line& line) const {
    return std::string_view(*source).substr(line.begin, line.size);
}

std::string_view ConfigText::Text(const Line& line) const {
    return line.own ? std::string_view(*line.own) : RawText(line);
}

std::uint32_t ConfigText::NewLine() {
    if (!freeLines.empty()) {
        const std::uint32_t line = freeLines.back();
        freeLines.pop_back();
        lines[line] = Line();
        return line;
    }
    lines.emplace_back();
    return static_cast<std::uint32_t>(lines.size() - 1);
}

void ConfigText::LinkLast(std::uint32_t line) {
    lines[line].previous = lastLine;
    (lastLine == kNone ? firstLine : lines[lastLine].next) = line;
    lastLine = line;
}

void ConfigText::LinkAfter(std::uint32_t where, std::uint32_t line) {
    Line& added = lines[line];
    added.previous = where;
    added.next = lines[where].next;
    (added.next == kNone ? lastLine : lines[added.next].previous) = line;
    lines[where].next = line;
}

void ConfigText::UnlinkLine(std::uint32_t line) {
    Line& gone = lines[line];
    (gone.previous == kNone ? firstLine : lines[gone.previous].next) = gone.next;
    (gone.next == kNone ? lastLine : lines[gone.next].previous) = gone.previous;
    gone = Line();
    freeLines.push_back(line);
    changed = true;
}

void ConfigText::AppendToWalk(std::uint32_t section, std::uint32_t item) {
    Section& owner = sections[section];
    lines[item].previousItem = owner.lastItem;
    (owner.lastItem == kNone ? owner.firstItem : lines[owner.lastItem].nextItem) = item;
    owner.lastItem = item;
    lines[item].stamp = nextStamp++;
}

void ConfigText::UnlinkFromWalk(std::uint32_t item) {
    const Line& gone = lines[item];
    const std::uint32_t before = gone.previousItem;
    goneItem = {gone.stamp, before == kNone ? 0 : lines[before].stamp, before};
    Section& owner = sections[gone.section];
    (gone.previousItem == kNone ? owner.firstItem : lines[gone.previousItem].nextItem) = gone.nextItem;
    (gone.nextItem == kNone ? owner.lastItem : lines[gone.nextItem].previousItem) = gone.previousItem;
    itemTable.Erase(gone.hash, item);
}

// ---- reading

bool ConfigText::Parse(std::shared_ptr<const std::string> bytes) {
    if (bytes->size() > kMaxBytes) return false;
    const std::string_view all = *bytes;
    if (all.starts_with(kUtf16BeMark)) return false;

    ConfigText fresh;
    fresh.nextStamp = nextStamp;  // cursors from before the read must find nothing of theirs
    const std::size_t cipher = FindEnciphered(all);
    if (cipher != std::string_view::npos && IsUtf8(all.substr(0, cipher))) {
        fresh.source = std::move(bytes);  // cipher text is no text: it stays as it is
    } else if (all.starts_with(kUtf16LeMark)) {
        fresh.encoding = textencoding::utf16le;
        std::optional<std::string> text = Utf16LeToUtf8(all.substr(2));
        if (!text) text = Utf16LeToUtf8(all.substr(2, (all.size() - 2) / 2 * 2));
        fresh.undecodable = all.size() % 2 != 0 || !text || text->find("\xEF\xBF\xBD") != std::string::npos;
        fresh.source = std::make_shared<std::string>(text ? std::move(*text) : std::string());
    } else if (all.starts_with(kUtf8Mark)) {
        fresh.encoding = textencoding::utf8bom;
        fresh.textBegin = static_cast<std::uint32_t>(kUtf8Mark.size());
        fresh.undecodable = !IsUtf8(all);
        if (fresh.undecodable) {
            fresh.source = std::make_shared<std::string>(ToUtf8(FromUtf8(all)));
        } else {
            fresh.source = std::move(bytes);
        }
    } else if (IsUtf8(all)) {
        fresh.source = std::move(bytes);
    } else {
        fresh.encoding = textencoding::windows1252;
        fresh.source = std::make_shared<std::string>(Windows1252ToUtf8(all));
    }
    fresh.ParseText();
    *this = std::move(fresh);
    return true;
}

void ConfigText::ParseText() {
    const std::string_view all = *source;
    // Typical lines run to some thirty characters and more; what is too small grows.
    lines.reserve(all.size() / 40 + 16);
    itemTable.Reserve(all.size() / 40);
    std::uint32_t section = kNoSection;
    bool firstEnd = true;
    for (std::size_t begin = textBegin; begin < all.size();) {
        const auto* found = static_cast<const char*>(std::memchr(all.data() + begin, '\n', all.size() - begin));
        const std::size_t end = found ? static_cast<std::size_t>(found - all.data()) + 1 : all.size();
        const std::string_view raw = all.substr(begin, end - begin);
        const std::string_view text = WithoutLineEnd(raw);
        if (found && firstEnd) {
            lineFeedOnly = raw.size() - text.size() == 1;
            firstEnd = false;
        }
        const auto lineBegin = static_cast<std::uint32_t>(begin);
        const auto size = static_cast<std::uint32_t>(raw.size());
        begin = end;

        std::string_view trimmed = text;
        while (!trimmed.empty() && IsBlank(trimmed.front())) trimmed.remove_prefix(1);
        const char first = trimmed.empty() ? ';' : trimmed.front();
        if (first == '[') {
            if (const auto name = HeaderName(Trim(trimmed))) {
                const std::uint32_t line = NewLine();
                lines[line].kind = Kind::Header;
                lines[line].begin = lineBegin;
                lines[line].size = size;
                LinkLast(line);
                const std::uint32_t known = FindSection(*name);
                if (known == kNone) {
                    section = NewSection(*name, line);
                } else {
                    section = known;
                    sections[section].repeated = true;
                }
                lines[line].PutIn(section);
                if (raw == kEncryptedLine && end < all.size()) {
                    AppendOther(static_cast<std::uint32_t>(end), static_cast<std::uint32_t>(all.size() - end), section,
                                Kind::Opaque);
                    break;
                }
                continue;
            }
        }
        if (first == ';' || section == kNoSection) {
            AppendOther(lineBegin, size, section, Kind::Other);
        } else {
            ParseItem(lineBegin, text, size, section);
        }
    }
}

void ConfigText::AppendOther(std::uint32_t begin, std::uint32_t size, std::uint32_t section, Kind kind) {
    // Neighbours are held together: a file of blank lines must not cost a record each.
    if (lastLine != kNone && kind == Kind::Other && lines[lastLine].kind == Kind::Other &&
        lines[lastLine].section == section && lines[lastLine].begin + lines[lastLine].size == begin) {
        lines[lastLine].size += size;
        return;
    }
    const std::uint32_t line = NewLine();
    lines[line].kind = kind;
    lines[line].begin = begin;
    lines[line].size = size;
    lines[line].PutIn(section);
    LinkLast(line);
}

void ConfigText::ParseItem(std::uint32_t lineBegin, std::string_view text, std::uint32_t size, std::uint32_t section) {
    const std::size_t equals = text.find('=');
    const std::string_view key = equals == std::string_view::npos ? std::string_view() : Trim(text.substr(0, equals));
    if (key.empty()) return AppendOther(lineBegin, size, section, Kind::Other);
    const std::string_view value = ValuePart(text.substr(equals + 1));

    const std::uint32_t hash = ItemHash(sections[section].hash, key);
    const std::uint32_t earlier = itemTable.Find(hash, [&](const Slot& slot) { return IsItem(slot, section, key); });
    const std::uint32_t item = NewLine();
    Line& line = lines[item];
    line.kind = Kind::Item;
    line.begin = lineBegin;
    line.size = size;
    line.keyBegin = Offset(text, key);
    line.keySize = static_cast<std::uint32_t>(key.size());
    line.valueBegin = Offset(text, value);
    line.valueSize = static_cast<std::uint32_t>(value.size());
    line.PutIn(section);
    line.hash = hash;
    LinkLast(item);
    if (earlier == kNone) {
        AppendToWalk(section, item);
        itemTable.Insert(hash, item, lineBegin);
        return;
    }
    // A key that comes again overwrites the value; it keeps its first place in the walk.
    Line& shadowed = lines[earlier];
    line.previousItem = shadowed.previousItem;
    line.nextItem = shadowed.nextItem;
    line.stamp = shadowed.stamp;
    Section& owner = sections[section];
    (line.previousItem == kNone ? owner.firstItem : lines[line.previousItem].nextItem) = item;
    (line.nextItem == kNone ? owner.lastItem : lines[line.nextItem].previousItem) = item;
    shadowed.previousItem = shadowed.nextItem = kNone;
    shadowed.kind = Kind::Shadowed;
    owner.repeated = true;
    itemTable.Change(hash, earlier, item, lineBegin);
}

std::string_view ConfigText::ExtraText() const {
    if (firstLine == kNone || lines[firstLine].kind != Kind::Other || lines[firstLine].section != kNoSection) return {};
    return Text(lines[firstLine]);
}

std::vector<std::string_view> ConfigText::OddLines() const {
    std::vector<std::string_view> odd;
    for (std::uint32_t at = firstLine; at != kNone; at = lines[at].next) {
        const Line& line = lines[at];
        if (line.kind != Kind::Other) continue;
        std::string_view text = Text(line);
        while (!text.empty()) {
            const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
            const std::string_view one = WithoutLineEnd(text.substr(0, end));
            const std::string_view trimmed = Trim(one);
            if (!trimmed.empty() && trimmed.front() != ';' && (line.section != kNoSection || trimmed.front() == '[')) {
                odd.push_back(one);
            }
            text.remove_prefix(end);
        }
    }
    return odd;
}

// ---- writing

std::string ConfigText::Bytes(textencoding::type as) const {
    std::string text;
    if (!changed) {
        text.assign(*source, textBegin);
    } else {
        text.reserve(source->size() + 4096);
        std::uint32_t from = 0, to = 0;  // stretch of unchanged lines not yet written
        const auto flush = [&] {
            text.append(*source, from, to - from);
            from = to = 0;
        };
        for (std::uint32_t at = firstLine; at != kNone; at = lines[at].next) {
            const Line& line = lines[at];
            if (!line.own) {
                if (line.begin != to || from == to) {
                    flush();
                    from = line.begin;
                }
                to = line.begin + line.size;
                // A file whose last line had no end gets one when something follows.
                if (line.next != kNone && (line.size == 0 || (*source)[to - 1] != '\n') && line.kind != Kind::Opaque) {
                    flush();
                    text += text.ends_with('\r') ? std::string_view("\n") : LineEnd();
                }
                continue;
            }
            flush();
            text += *line.own;
            text += LineEnd();
        }
        flush();
    }
    if (FindEnciphered(text) != std::string_view::npos) return text;
    switch (as) {
        case textencoding::utf8bom:
            return std::string(kUtf8Mark) + text;
        case textencoding::utf16le:
            return std::string(kUtf16LeMark) + Utf8ToUtf16Le(text);
        case textencoding::windows1252:
            // Bytes that would be taken for UTF-8 on the next reading aren't left in the old page.
            if (auto old = Utf8ToWindows1252(text); old && (!IsUtf8(*old) || *old == text)) return std::move(*old);
            break;
        case textencoding::utf8:
            break;
    }
    // A text that starts with the character of the mark needs the mark itself in front, or it would lose its own.
    return text.starts_with(kUtf8Mark) ? std::string(kUtf8Mark) + text : text;
}

// ---- sections

std::uint32_t ConfigText::FindSection(std::string_view name) const {
    return sectionTable.Find(Fold(SectionHash(name)),
                             [&](const Slot& slot) { return SameText(sections[slot.place].name, name); });
}

std::uint32_t ConfigText::SectionOfStamp(std::uint64_t stamp, std::uint32_t place) const {
    if (stamp == 0) return kNone;
    if (place < sections.size() && sections[place].stamp == stamp) return place;
    for (std::uint32_t at = firstSection; at != kNone; at = sections[at].next) {
        if (sections[at].stamp == stamp) return at;
    }
    return kNone;
}

std::uint32_t ConfigText::SectionAfter(std::uint64_t stamp, std::uint32_t place) const {
    if (stamp != 0 && place < sections.size() && sections[place].stamp == stamp) return sections[place].next;
    if (stamp != 0 && goneSection.stamp == stamp) {
        if (goneSection.before == kNone) return firstSection;
        if (sections[goneSection.before].stamp == goneSection.beforeStamp) return sections[goneSection.before].next;
    }
    for (std::uint32_t at = firstSection; at != kNone; at = sections[at].next) {
        if (sections[at].stamp > stamp) return at;
    }
    return kNone;
}

std::uint32_t ConfigText::NewSection(std::string_view name, std::uint32_t header) {
    std::uint32_t place;
    if (freeSections.empty()) {
        place = static_cast<std::uint32_t>(sections.size());
        sections.emplace_back();
    } else {
        place = freeSections.back();
        freeSections.pop_back();
    }
    Section& section = sections[place];
    section.name = name;
    section.header = header;
    section.hash = SectionHash(name);
    section.stamp = nextStamp++;
    section.previous = lastSection;
    (lastSection == kNone ? firstSection : sections[lastSection].next) = place;
    lastSection = place;
    sectionTable.Insert(Fold(section.hash), place);
    return place;
}

std::uint32_t ConfigText::AddSection(std::string_view name) {
    // A blank line sets sections apart, as people write them.
    if (lastLine != kNone && !Trim(WithoutLineEnd(Text(lines[lastLine]))).empty() &&
        !Text(lines[lastLine]).ends_with("\n\r\n") && !Text(lines[lastLine]).ends_with("\n\n")) {
        const std::uint32_t blank = NewLine();
        lines[blank].kind = Kind::Other;
        lines[blank].PutIn(lines[lastLine].section);
        lines[blank].own = std::make_unique<std::string>();
        LinkLast(blank);
    }
    const std::uint32_t header = NewLine();
    lines[header].kind = Kind::Header;
    lines[header].own = std::make_unique<std::string>("[" + std::string(name) + "]");
    LinkLast(header);
    const std::uint32_t section = NewSection(name, header);
    lines[header].PutIn(section);
    changed = true;
    return section;
}

void ConfigText::FreeSection(std::uint32_t place) {
    Section& section = sections[place];
    const std::uint32_t before = section.previous;
    goneSection = {section.stamp, before == kNone ? 0 : sections[before].stamp, before};
    (section.previous == kNone ? firstSection : sections[section.previous].next) = section.next;
    (section.next == kNone ? lastSection : sections[section.next].previous) = section.previous;
    sectionTable.Erase(Fold(section.hash), place);
    section = Section();
    freeSections.push_back(place);
}

void ConfigText::DeleteLinesOf(std::uint32_t place, std::uint32_t keep) {
    const bool everywhere = sections[place].repeated;
    for (std::uint32_t at = everywhere ? firstLine : sections[place].header; at != kNone;) {
        const std::uint32_t next = lines[at].next;
        if (lines[at].section == place) {
            if (lines[at].kind == Kind::Item) UnlinkFromWalk(at);
            if (at != keep) UnlinkLine(at);
        } else if (!everywhere) {
            break;
        }
        at = next;
    }
}

void ConfigText::DeleteSection(std::uint32_t section) {
    DeleteLinesOf(section, kNone);
    FreeSection(section);
}

void ConfigText::ClearSection(std::uint32_t section) {
    DeleteLinesOf(section, sections[section].header);
    sections[section].repeated = false;
    changed = true;
}

void ConfigText::RenameSection(std::uint32_t place, std::string_view name) {
    Section& section = sections[place];
    sectionTable.Erase(Fold(section.hash), place);
    section.name = name;
    section.hash = SectionHash(name);
    sectionTable.Insert(Fold(section.hash), place);
    // Items are found by the names of both.
    for (std::uint32_t item = section.firstItem; item != kNone; item = lines[item].nextItem) {
        itemTable.Erase(lines[item].hash, item);
        lines[item].hash = ItemHash(section.hash, Key(item));
        itemTable.Insert(lines[item].hash, item);
    }
    for (std::uint32_t at = section.repeated ? firstLine : section.header; at != kNone; at = lines[at].next) {
        if (lines[at].section != place || lines[at].kind != Kind::Header) continue;
        lines[at].own = std::make_unique<std::string>("[" + std::string(name) + "]");
        if (!section.repeated) break;
    }
    changed = true;
}

void ConfigText::MakeEmpty() {
    while (firstSection != kNone) DeleteSection(firstSection);
    changed = true;
}

// ---- items

std::uint32_t ConfigText::FindItem(std::uint32_t section, std::string_view key) const {
    return itemTable.Find(ItemHash(sections[section].hash, key),
                          [&](const Slot& slot) { return IsItem(slot, section, key); });
}

bool ConfigText::IsItem(const Slot& slot, std::uint32_t section, std::string_view key) const {
    return lines[slot.place].section == section && SameText(Key(slot.place), key);
}

ConfigText::Found ConfigText::Find(std::string_view section, bool sectionPadded, std::string_view key,
                                   bool keyPadded) const {
    const std::uint64_t sectionHash = SectionHash(section, sectionPadded);
    const char* const text = source->data();
    Found found;
    found.section = sectionTable.Find(Fold(sectionHash),
                                      [&](const Slot& slot) { return SameText(sections[slot.place].name, section); });
    if (found.section == kNone) return found;
    found.item = itemTable.Find(ItemHash(sectionHash, key, keyPadded), [&](const Slot& slot) {
        __builtin_prefetch(text + slot.begin);
        return IsItem(slot, found.section, key);
    });
    return found;
}

std::uint32_t ConfigText::ItemAfter(std::uint32_t section, std::uint64_t stamp, std::uint32_t place) const {
    if (stamp != 0 && place < lines.size() && lines[place].stamp == stamp && lines[place].kind == Kind::Item &&
        lines[place].section == section) {
        return lines[place].nextItem;
    }
    if (stamp != 0 && goneItem.stamp == stamp) {
        const std::uint32_t before = goneItem.before;
        if (before == kNone) return sections[section].firstItem;
        if (lines[before].kind == Kind::Item && lines[before].stamp == goneItem.beforeStamp) {
            return lines[before].nextItem;
        }
    }
    for (std::uint32_t at = sections[section].firstItem; at != kNone; at = lines[at].nextItem) {
        if (lines[at].stamp > stamp) return at;
    }
    return kNone;
}

std::uint32_t ConfigText::AddItem(std::uint32_t section, std::string_view key, std::string_view value) {
    const std::uint32_t after =
        sections[section].lastItem != kNone ? sections[section].lastItem : sections[section].header;
    const std::uint32_t item = NewLine();
    Line& line = lines[item];
    line.kind = Kind::Item;
    line.PutIn(section);
    line.own = std::make_unique<std::string>(key);
    *line.own += '=';
    line.keySize = static_cast<std::uint32_t>(key.size());
    line.valueBegin = line.keySize + 1;
    line.hash = ItemHash(sections[section].hash, key);
    LinkAfter(after, item);
    AppendToWalk(section, item);
    itemTable.Insert(line.hash, item);
    SetValue(item, value);
    changed = true;
    return item;
}

void ConfigText::SetValue(std::uint32_t item, std::string_view value) {
    if (Value(item) == value) return;  // not even the way it is written changes
    Line& line = lines[item];
    const std::string_view text = WithoutLineEnd(Text(line));
    std::uint32_t prefix = line.valueBegin;
    if (prefix > 0 && text[prefix - 1] == '"' && line.valueBegin + line.valueSize < text.size() &&
        text[line.valueBegin + line.valueSize] == '"') {
        --prefix;
    }
    if (line.valueSize == 0 && prefix == line.valueBegin) {
        // An empty value has no place of its own behind blanks: it starts right after the equals sign.
        prefix = static_cast<std::uint32_t>(text.find('=', line.keyBegin + line.keySize)) + 1;
    }
    std::string changedText(text.substr(0, prefix));
    const std::string written = OnDisk(value);
    const bool quoted = written.size() != value.size();
    line.valueBegin = prefix + (quoted ? 1u : 0u);
    line.valueSize = static_cast<std::uint32_t>(value.size());
    changedText += written;
    if (line.own) {
        *line.own = std::move(changedText);
    } else {
        line.own = std::make_unique<std::string>(std::move(changedText));
    }
    changed = true;
}

void ConfigText::DeleteItem(std::uint32_t item) {
    const std::uint32_t section = lines[item].section;
    if (sections[section].repeated) {
        // The earlier lines of the key go too, or the next reading would bring an old value back.
        const std::string key(Key(item));
        for (std::uint32_t at = firstLine; at != kNone;) {
            const std::uint32_t next = lines[at].next;
            if (lines[at].kind == Kind::Shadowed && lines[at].section == section && Key(at) == key) UnlinkLine(at);
            at = next;
        }
    }
    UnlinkFromWalk(item);
    UnlinkLine(item);
}

bool ConfigText::IsKey(std::string_view key) {
    constexpr std::string_view kNever("=\r\n\0", 4);
    return !key.empty() && key.find_first_of(kNever) == std::string_view::npos && key.front() != '[' &&
           key.front() != ';' && !IsBlank(key.front()) && !IsBlank(key.back());
}

bool ConfigText::IsSectionName(std::string_view name) {
    constexpr std::string_view kNever("\r\n\0", 3);
    return !name.empty() && name.find_first_of(kNever) == std::string_view::npos;
}

}  // namespace orv
