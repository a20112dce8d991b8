#include "rom/journal.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtEndian>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <map>
#include <unistd.h>

namespace {
const QByteArray kMagic = QByteArrayLiteral("ZELVANE JOURNAL\n");
enum Kind : uint8_t { kBegin = 1, kDone = 2, kRolledBack = 3 };
constexpr int kRecordHead = 8; // payload length and its CRC-32
constexpr int64_t kMaxPosition = int64_t(1) << 48; // far past any image, and far from overflowing

uint32_t Crc32(const QByteArray& bytes)
{
    static const std::array<uint32_t, 256> table = [] {
        std::array<uint32_t, 256> t{};
        for (uint32_t n = 0; n < 256; ++n) {
            uint32_t c = n;
            for (int k = 0; k < 8; ++k)
                c = c & 1 ? 0xEDB88320u ^ (c >> 1) : c >> 1;
            t[n] = c;
        }
        return t;
    }();
    uint32_t crc = 0xFFFFFFFFu;
    for (const char byte : bytes)
        crc = table[(crc ^ uint8_t(byte)) & 0xFF] ^ (crc >> 8);
    return crc ^ 0xFFFFFFFFu;
}

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
};

template <typename T> void Put(QByteArray& out, T value)
{
    char bytes[sizeof(T)];
    qToBigEndian(value, bytes);
    out.append(bytes, sizeof(T));
}

QByteArray BeginPayload(const JournalEntry& entry)
{
    QByteArray out;
    Put<uint8_t>(out, kBegin);
    Put<qint64>(out, entry.time);
    const QByteArray command = entry.command.toUtf8().left(0xFFFF);
    Put<uint16_t>(out, uint16_t(command.size()));
    out += command;
    Put<qint64>(out, entry.oldLength);
    Put<uint32_t>(out, uint32_t(entry.ranges.size()));
    for (const JournalRange& range : entry.ranges) {
        Put<qint64>(out, range.position);
        Put<qint64>(out, range.length);
        Put<uint32_t>(out, uint32_t(range.oldBytes.size()));
        out += range.oldBytes;
    }
    return out;
}

std::optional<JournalEntry> ParseBegin(Reader& in)
{
    JournalEntry entry;
    entry.time = in.Number<qint64>();
    entry.command = QString::fromUtf8(in.Bytes(in.Number<uint16_t>()));
    entry.oldLength = in.Number<qint64>();
    const uint32_t count = in.Number<uint32_t>();
    for (uint32_t i = 0; in.ok && i < count; ++i) {
        JournalRange range;
        range.position = in.Number<qint64>();
        range.length = in.Number<qint64>();
        range.oldBytes = in.Bytes(in.Number<uint32_t>());
        if (range.position < 0 || range.position > kMaxPosition || range.length < range.oldBytes.size()
            || range.length > kMaxPosition)
            return std::nullopt;
        entry.ranges.push_back(range);
    }
    if (!in.ok || entry.oldLength < 0 || entry.oldLength > kMaxPosition || in.at != in.bytes.size())
        return std::nullopt;
    return entry;
}

// One record's payload: false when it makes no sense where it stands.
bool ApplyRecord(const QByteArray& payload, std::vector<JournalEntry>& entries)
{
    Reader in{payload};
    const uint8_t kind = in.Number<uint8_t>();
    const bool afterOpen = !entries.empty() && entries.back().state == ChangeState::Open;
    if (kind == kBegin && !afterOpen) {
        std::optional<JournalEntry> entry = ParseBegin(in);
        if (entry)
            entries.push_back(*entry);
        return entry.has_value();
    }
    if ((kind == kDone || kind == kRolledBack) && afterOpen && payload.size() == 1) {
        entries.back().state = kind == kDone ? ChangeState::Done : ChangeState::RolledBack;
        return true;
    }
    return false;
}

QByteArray Record(const QByteArray& payload)
{
    QByteArray out;
    Put<uint32_t>(out, uint32_t(payload.size()));
    Put<uint32_t>(out, Crc32(payload));
    return out + payload;
}

QString StateFolderJournal(const QString& imagePath)
{
    QString state = qEnvironmentVariable("XDG_STATE_HOME");
    if (state.isEmpty())
        state = QDir::homePath() + QStringLiteral("/.local/state");
    const QByteArray key = QCryptographicHash::hash(QFileInfo(imagePath).absoluteFilePath().toUtf8(), QCryptographicHash::Sha1);
    return QStringLiteral("%1/zelvane-art/journals/%2.zelvane-journal").arg(state, QString::fromLatin1(key.toHex()));
}

QString ExistingJournalPath(const QString& imagePath)
{
    for (const QString& path : {imagePath + QStringLiteral(".zelvane-journal"), StateFolderJournal(imagePath)})
        if (QFileInfo(path).isFile())
            return path;
    return {};
}

// Syncing the folder keeps the name of a new journal across a crash.
void SyncFolder(const QString& path)
{
    const int fd = ::open(QFile::encodeName(QFileInfo(path).absolutePath()).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd >= 0) {
        ::fsync(fd);
        ::close(fd);
    }
}

bool Append(Journal& journal, const QByteArray& record, QString& errorText)
{
    if (!WriteFileAt(journal.fd, journal.end, record.constData(), record.size(), errorText) || !SyncFile(journal.fd, errorText)) {
        (void)::ftruncate(journal.fd, off_t(journal.end)); // a torn record would only be skipped
        return false;
    }
    journal.end += record.size();
    return true;
}

bool OpenJournal(Journal& journal, const QString& imagePath, QString& errorText)
{
    if (journal.fd >= 0)
        return true;
    journal.path = JournalPathFor(imagePath);
    QDir().mkpath(QFileInfo(journal.path).absolutePath());
    journal.fd = ::open(QFile::encodeName(journal.path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    QByteArray bytes;
    if (journal.fd >= 0) {
        bytes.resize(qsizetype(std::max<off_t>(::lseek(journal.fd, 0, SEEK_END), 0)));
        bytes.truncate(qsizetype(std::max<ssize_t>(::pread(journal.fd, bytes.data(), size_t(bytes.size()), 0), 0)));
    }
    if (journal.fd < 0) {
        errorText = QString::fromLocal8Bit(std::strerror(errno));
        return false;
    }
    // What follows the sound records is a record torn by a crash; it goes.
    ParseJournal(bytes, &journal.end);
    (void)::ftruncate(journal.fd, off_t(journal.end));
    if (journal.end > 0)
        return true;
    const bool made = WriteFileAt(journal.fd, 0, kMagic.constData(), kMagic.size(), errorText) && SyncFile(journal.fd, errorText);
    journal.end = made ? kMagic.size() : 0;
    SyncFolder(journal.path);
    return made;
}

JournalEntry EntryFor(const RomFile& rom, const QString& command, const std::vector<RomPatch>& patches, int64_t newLength)
{
    JournalEntry entry{QDateTime::currentMSecsSinceEpoch(), command, RomLength(rom), {}, ChangeState::Open};
    auto keep = [&](int64_t position, int64_t length) {
        QByteArray old(qsizetype(std::clamp<int64_t>(entry.oldLength - position, 0, length)), '\0');
        old.truncate(qsizetype(ReadRomBytes(rom, position, old.data(), old.size())));
        entry.ranges.push_back({position, length, old});
    };
    for (const RomPatch& patch : patches)
        keep(patch.position, patch.bytes.size());
    if (newLength >= 0 && newLength < entry.oldLength)
        keep(newLength, entry.oldLength - newLength);
    return entry;
}

bool WriteChange(RomFile& rom, const std::vector<RomPatch>& patches, int64_t newLength, QString& errorText)
{
    for (const RomPatch& patch : patches)
        if (!WriteRomBytes(rom, patch.position, patch.bytes.constData(), patch.bytes.size(), errorText))
            return false;
    return (newLength < 0 || TruncateRom(rom, newLength, errorText)) && SyncRom(rom, errorText);
}

bool RestoreChange(RomFile& rom, const JournalEntry& entry, QString& errorText)
{
    return WriteChange(rom, RestoringPatches(entry), entry.oldLength, errorText);
}
}

std::vector<JournalEntry> ParseJournal(const QByteArray& bytes, int64_t* soundEnd)
{
    std::vector<JournalEntry> entries;
    qsizetype at = bytes.startsWith(kMagic) ? kMagic.size() : 0;
    while (at > 0 && bytes.size() - at >= kRecordHead) {
        const uint32_t length = qFromBigEndian<uint32_t>(bytes.constData() + at);
        if (length > uint64_t(bytes.size() - at - kRecordHead))
            break;
        const QByteArray payload = bytes.mid(at + kRecordHead, qsizetype(length));
        if (Crc32(payload) != qFromBigEndian<uint32_t>(bytes.constData() + at + 4) || !ApplyRecord(payload, entries))
            break;
        at += kRecordHead + qsizetype(length);
    }
    if (soundEnd)
        *soundEnd = at;
    return entries;
}

QString JournalPathFor(const QString& imagePath)
{
    const QString existing = ExistingJournalPath(imagePath);
    if (!existing.isEmpty())
        return existing;
    const QByteArray folder = QFile::encodeName(QFileInfo(imagePath).absolutePath());
    return ::access(folder.constData(), W_OK) == 0 ? imagePath + QStringLiteral(".zelvane-journal") : StateFolderJournal(imagePath);
}

std::vector<JournalEntry> ReadJournalFile(const QString& journalPath)
{
    QFile file(journalPath);
    if (journalPath.isEmpty() || !file.open(QIODevice::ReadOnly))
        return {};
    return ParseJournal(file.readAll());
}

std::vector<JournalEntry> DoneChanges(const QString& imagePath)
{
    std::vector<JournalEntry> entries = ReadJournalFile(JournalPathFor(imagePath));
    std::erase_if(entries, [](const JournalEntry& entry) { return entry.state != ChangeState::Done; });
    return entries;
}

void CloseJournal(Journal& journal)
{
    if (journal.fd >= 0)
        ::close(journal.fd);
    journal = Journal{};
}

bool CommitChange(Journal& journal, RomFile& rom, const QString& command, const std::vector<RomPatch>& patches,
                  int64_t newLength, JournalEntry& entry, QString& errorText)
{
    if (!rom.writable) {
        errorText = QStringLiteral("The ROM image %1 is read-only.").arg(rom.fileName);
        return false;
    }
    entry = EntryFor(rom, command, patches, newLength);
    QString journalError;
    if (!OpenJournal(journal, rom.fileName, journalError) || !Append(journal, Record(BeginPayload(entry)), journalError)) {
        errorText = QStringLiteral("Nothing was written: the journal %1 could not be written (%2).")
                        .arg(QDir::toNativeSeparators(journal.path), journalError);
        return false;
    }
    QString writeError, restoreError;
    if (WriteChange(rom, patches, newLength, writeError)
        && Append(journal, Record(QByteArray(1, char(kDone))), writeError)) {
        entry.state = ChangeState::Done;
        return true;
    }
    if (RestoreChange(rom, entry, restoreError) && Append(journal, Record(QByteArray(1, char(kRolledBack))), restoreError)) {
        entry.state = ChangeState::RolledBack;
        errorText = QStringLiteral("%1\nThe image was left as it was.").arg(writeError);
    } else {
        errorText = QStringLiteral("%1\nThe image could not be put back yet (%2); it will be put back when it is next opened.")
                        .arg(writeError, restoreError);
    }
    return false;
}

std::vector<RomPatch> RestoringPatches(const JournalEntry& entry)
{
    std::vector<RomPatch> patches;
    for (auto range = entry.ranges.rbegin(); range != entry.ranges.rend(); ++range)
        if (!range->oldBytes.isEmpty())
            patches.push_back({range->position, range->oldBytes});
    return patches;
}

std::vector<RomPatch> RevertingPatches(const std::vector<JournalEntry>& done, int n)
{
    // Later changes go first, so that each byte ends with what the earliest one found.
    std::map<int64_t, char> bytes;
    for (auto entry = done.rbegin(); entry != done.rend() - std::clamp(n - 1, 0, int(done.size())); ++entry)
        for (const JournalRange& range : entry->ranges)
            for (qsizetype i = 0; i < range.oldBytes.size(); ++i)
                bytes[range.position + i] = range.oldBytes[i];
    std::vector<RomPatch> patches;
    for (const auto& [position, byte] : bytes) {
        if (patches.empty() || patches.back().position + patches.back().bytes.size() != position)
            patches.push_back({position, {}});
        patches.back().bytes.append(byte);
    }
    return patches;
}

QString RecoverInterruptedChange(const QString& imagePath, RomFile& rom)
{
    const QString journalPath = ExistingJournalPath(imagePath);
    const std::vector<JournalEntry> entries = ReadJournalFile(journalPath);
    if (entries.empty() || entries.back().state != ChangeState::Open)
        return {};
    const JournalEntry& interrupted = entries.back();
    const QString name = QFileInfo(imagePath).fileName();
    const QString when = QDateTime::fromMSecsSinceEpoch(interrupted.time).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    QString errorText;
    Journal journal;
    const bool restored = RestoreChange(rom, interrupted, errorText) && OpenJournal(journal, imagePath, errorText)
                          && Append(journal, Record(QByteArray(1, char(kRolledBack))), errorText);
    CloseJournal(journal);
    if (restored)
        return QStringLiteral("The last change to %1 (%2, %3) was interrupted. The image was put back as it was before it.")
            .arg(name, interrupted.command, when);
    return QStringLiteral("The last change to %1 (%2, %3) was interrupted and could not be put back: %4. It will be put "
                          "back when the image is opened with the right to write it.")
        .arg(name, interrupted.command, when, errorText);
}
