#include "rom/journal_format.h"

#include <QtEndian>
#include <algorithm>
#include <optional>
#include <zlib.h>

namespace {
const QByteArray kMagic = QByteArrayLiteral("ZELVANE JOURNAL2");
const QByteArray kOlderMagic = QByteArrayLiteral("ZELVANE JOURNAL\n");
enum Kind : uint8_t { kHeader = 0, kBegin = 1, kDone = 2, kRolledBack = 3 };
constexpr int kRecordHead = 12; // length, its CRC-32, the payload's CRC-32
constexpr uint32_t kMaxRanges = 1 << 24;

// Reads big-endian fields from a payload; once a field runs past the end, ok is false.
struct Reader {
    const QByteArray& bytes;
    qsizetype at = 0;
    bool ok = true;
    const char* Take(qsizetype count)
    {
        ok = ok && count >= 0 && count <= bytes.size() - at;
        const char* p = ok ? bytes.constData() + at : nullptr;
        at += ok ? count : 0;
        return p;
    }
    template <typename T> T Number()
    {
        const char* p = Take(sizeof(T));
        return p ? qFromBigEndian<T>(p) : T{};
    }
    QByteArray Bytes(qsizetype count)
    {
        const char* p = Take(count);
        return p ? QByteArray(p, count) : QByteArray();
    }
    bool AtEnd() const { return ok && at == bytes.size(); }
};

template <typename T> void Put(QByteArray& out, T value)
{
    char bytes[sizeof(T)];
    qToBigEndian(value, bytes);
    out.append(bytes, sizeof(T));
}

uint32_t Crc(const char* data, qsizetype size)
{
    return uint32_t(::crc32(::crc32(0L, Z_NULL, 0), reinterpret_cast<const Bytef*>(data), uInt(size)));
}

QByteArray Record(const QByteArray& payload)
{
    QByteArray out;
    Put<uint32_t>(out, uint32_t(payload.size()));
    Put<uint32_t>(out, Crc(out.constData(), 4));
    Put<uint32_t>(out, Crc32(payload));
    return out + payload;
}

bool InRange(int64_t value) { return value >= 0 && value <= kMaxJournalPosition; }

std::optional<JournalRange> ParseRange(Reader& in)
{
    JournalRange range;
    range.position = in.Number<qint64>();
    range.length = in.Number<qint64>();
    range.oldBytes = in.Bytes(in.Number<uint32_t>());
    range.newCrc = in.Number<uint32_t>();
    if (!in.ok || !InRange(range.position) || !InRange(range.length) || range.length < range.oldBytes.size()
        || range.position + range.length > kMaxJournalPosition)
        return std::nullopt;
    return range;
}

// Ranges must come in order and never overlap, so that each byte has one old value.
bool RangesInOrder(const std::vector<JournalRange>& ranges)
{
    return std::adjacent_find(ranges.begin(), ranges.end(), [](const JournalRange& a, const JournalRange& b) {
               return b.position < a.position + a.length;
           }) == ranges.end();
}

std::optional<JournalEntry> ParseBegin(Reader& in)
{
    JournalEntry entry;
    entry.time = in.Number<qint64>();
    entry.command = QString::fromUtf8(in.Bytes(in.Number<uint16_t>()));
    entry.oldLength = in.Number<qint64>();
    entry.newLength = in.Number<qint64>();
    const uint32_t count = in.Number<uint32_t>();
    for (uint32_t i = 0; in.ok && i < count && i < kMaxRanges; ++i) {
        std::optional<JournalRange> range = ParseRange(in);
        if (!range)
            return std::nullopt;
        entry.ranges.push_back(std::move(*range));
    }
    if (!in.AtEnd() || count > kMaxRanges || !InRange(entry.oldLength) || !InRange(entry.newLength)
        || !RangesInOrder(entry.ranges))
        return std::nullopt;
    return entry;
}

// One record's payload: false when it makes no sense where it stands.
bool ApplyRecord(const QByteArray& payload, JournalContents& journal)
{
    Reader in{payload};
    const uint8_t kind = in.Number<uint8_t>();
    std::vector<JournalEntry>& entries = journal.entries;
    const bool afterOpen = !entries.empty() && entries.back().state == ChangeState::Open;
    if (kind == kBegin && !afterOpen) {
        std::optional<JournalEntry> entry = ParseBegin(in);
        if (!entry)
            return false;
        entries.push_back(std::move(*entry));
        return true;
    }
    if ((kind == kDone || kind == kRolledBack) && afterOpen && in.AtEnd()) {
        entries.back().state = kind == kDone ? ChangeState::Done : ChangeState::RolledBack;
        return true;
    }
    return false;
}

bool AllZero(const QByteArray& bytes, qsizetype from)
{
    return std::all_of(bytes.cbegin() + from, bytes.cend(), [](char c) { return c == 0; });
}

// The payload of the record at `at`, or why there is none.
enum class Found { Record, TornTail, Damage };
Found NextRecord(const QByteArray& bytes, qsizetype at, QByteArray& payload)
{
    const qsizetype left = bytes.size() - at;
    // A crash may leave the last record cut anywhere, or a tail the disk never filled.
    if (left < kRecordHead || AllZero(bytes, at))
        return Found::TornTail;
    const char* head = bytes.constData() + at;
    if (Crc(head, 4) != qFromBigEndian<uint32_t>(head + 4))
        return Found::Damage;
    const uint32_t length = qFromBigEndian<uint32_t>(head);
    if (length > uint64_t(left - kRecordHead))
        return Found::TornTail;
    payload = bytes.mid(at + kRecordHead, qsizetype(length));
    if (Crc32(payload) == qFromBigEndian<uint32_t>(head + 8))
        return Found::Record;
    return at + kRecordHead + qsizetype(length) == bytes.size() ? Found::TornTail : Found::Damage;
}

bool ApplyHeader(const QByteArray& payload, JournalContents& journal)
{
    Reader in{payload};
    const bool header = in.Number<uint8_t>() == kHeader && in.Number<uint32_t>() == kJournalVersion;
    const int first = int(in.Number<uint32_t>());
    journal.carriesOn = QString::fromUtf8(in.Bytes(in.Number<uint16_t>()));
    if (!header || !in.AtEnd() || first < 1 || first > (1 << 30))
        return false;
    journal.firstNumber = first;
    return true;
}
}

uint32_t Crc32(const QByteArray& bytes) { return Crc(bytes.constData(), bytes.size()); }

bool IsDamaged(const JournalContents& journal) { return journal.damageAt >= 0; }

JournalContents ParseJournal(const QByteArray& bytes)
{
    JournalContents journal;
    if (bytes.isEmpty())
        return journal;
    if (!bytes.startsWith(kMagic)) {
        journal.format = bytes.startsWith(kOlderMagic) ? JournalFormat::Older : JournalFormat::Foreign;
        return journal;
    }
    journal.format = JournalFormat::Current;
    qsizetype at = kMagic.size();
    QByteArray payload;
    const Found header = NextRecord(bytes, at, payload);
    if (header != Found::Record || !ApplyHeader(payload, journal)) {
        journal.damageAt = header == Found::TornTail ? -1 : at;
        journal.soundEnd = at;
        return journal;
    }
    journal.soundEnd = at + kRecordHead + payload.size();
    ContinueJournal(journal, bytes.mid(qsizetype(journal.soundEnd)));
    return journal;
}

void ContinueJournal(JournalContents& journal, const QByteArray& tail)
{
    const int64_t base = journal.soundEnd;
    qsizetype at = 0;
    QByteArray payload;
    for (;;) {
        const Found found = NextRecord(tail, at, payload);
        if (found == Found::Record && !ApplyRecord(payload, journal))
            journal.damageAt = base + at;
        if (found != Found::Record || IsDamaged(journal)) {
            journal.damageAt = found == Found::Damage ? base + at : journal.damageAt;
            break;
        }
        at += kRecordHead + payload.size();
    }
    journal.soundEnd = base + at;
}

QByteArray JournalHeader(int firstNumber, const QString& carriesOn)
{
    QByteArray payload;
    Put<uint8_t>(payload, kHeader);
    Put<uint32_t>(payload, kJournalVersion);
    Put<uint32_t>(payload, uint32_t(firstNumber));
    const QByteArray name = carriesOn.toUtf8().left(0xFFFF);
    Put<uint16_t>(payload, uint16_t(name.size()));
    return kMagic + Record(payload + name);
}

QByteArray BeginRecord(const JournalEntry& entry)
{
    QByteArray out;
    Put<uint8_t>(out, kBegin);
    Put<qint64>(out, entry.time);
    const QByteArray command = entry.command.toUtf8().left(0xFFFF);
    Put<uint16_t>(out, uint16_t(command.size()));
    out += command;
    Put<qint64>(out, entry.oldLength);
    Put<qint64>(out, entry.newLength);
    Put<uint32_t>(out, uint32_t(entry.ranges.size()));
    for (const JournalRange& range : entry.ranges) {
        Put<qint64>(out, range.position);
        Put<qint64>(out, range.length);
        Put<uint32_t>(out, uint32_t(range.oldBytes.size()));
        out += range.oldBytes;
        Put<uint32_t>(out, range.newCrc);
    }
    return Record(out);
}

QByteArray EndRecord(ChangeState state)
{
    return Record(QByteArray(1, char(state == ChangeState::Done ? kDone : kRolledBack)));
}
