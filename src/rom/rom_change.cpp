#include "rom/rom_change.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <algorithm>

namespace {
// The patches as disjoint runs in order, later bytes over earlier ones, cut at end.
std::vector<RomPatch> DisjointWrites(const std::vector<RomPatch>& patches, int64_t end)
{
    std::vector<std::pair<int64_t, int64_t>> spans;
    for (const RomPatch& patch : patches)
        if (const int64_t stop = std::min<int64_t>(patch.position + patch.bytes.size(), end); stop > patch.position && patch.position >= 0)
            spans.push_back({patch.position, stop});
    std::sort(spans.begin(), spans.end());
    std::vector<RomPatch> runs;
    for (const auto& [start, stop] : spans) {
        if (runs.empty() || start >= runs.back().position + runs.back().bytes.size())
            runs.push_back({start, QByteArray(qsizetype(stop - start), '\0')});
        else if (stop > runs.back().position + runs.back().bytes.size())
            runs.back().bytes.resize(qsizetype(stop - runs.back().position));
    }
    for (const RomPatch& patch : patches) {
        auto run = std::upper_bound(runs.begin(), runs.end(), patch.position,
                                    [](int64_t position, const RomPatch& r) { return position < r.position; });
        if (run == runs.begin() || patch.position < 0)
            continue;
        --run;
        const qsizetype count = qsizetype(std::clamp<int64_t>(end - patch.position, 0, patch.bytes.size()));
        std::copy_n(patch.bytes.constData(), count, run->bytes.data() + (patch.position - run->position));
    }
    return runs;
}

QByteArray ReadRange(const RomFile& rom, int64_t position, int64_t length, int64_t fileLength)
{
    QByteArray bytes(qsizetype(std::clamp<int64_t>(fileLength - position, 0, length)), '\0');
    bytes.truncate(qsizetype(ReadRomBytes(rom, position, bytes.data(), bytes.size())));
    return bytes;
}

// The runs are in order, so a lengthening is the last write, made whole in one go;
// a shortening comes after every write.
bool WriteImage(RomFile& rom, const std::vector<RomPatch>& writes, int64_t newLength, QString& errorText)
{
    for (const RomPatch& write : writes)
        if (!WriteRomBytes(rom, write.position, write.bytes.constData(), write.bytes.size(), errorText))
            return false;
    return (RomLength(rom) == newLength || TruncateRom(rom, newLength, errorText)) && SyncRom(rom, errorText);
}

// What the file gained or lost must lie in the ranges, each range's old bytes as many
// as the old length held, or the entry cannot be a change this program made.
bool IsWellFormed(const JournalEntry& entry)
{
    int64_t covered = std::min(entry.oldLength, entry.newLength);
    for (const JournalRange& range : entry.ranges) {
        if (range.oldBytes.size() != std::clamp<int64_t>(entry.oldLength - range.position, 0, range.length))
            return false;
        if (range.position <= covered)
            covered = std::max(covered, range.position + range.length);
    }
    return covered >= std::max(entry.oldLength, entry.newLength);
}

QString Described(const QString& imagePath, const JournalEntry& entry)
{
    return QStringLiteral("last change to %1 (%2, %3)")
        .arg(QFileInfo(imagePath).fileName(), entry.command,
             QDateTime::fromMSecsSinceEpoch(entry.time).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")));
}
}

ImageState StateAgainst(const RomFile& rom, const JournalEntry& entry)
{
    const int64_t length = RomLength(rom);
    if ((length != entry.oldLength && length != entry.newLength) || !IsWellFormed(entry))
        return ImageState::Unexplained;
    bool allOld = length == entry.oldLength, allNew = length == entry.newLength;
    for (const JournalRange& range : entry.ranges) {
        const QByteArray there = ReadRange(rom, range.position, range.length, length);
        const bool isOld = there.size() <= range.oldBytes.size() && there == range.oldBytes.left(there.size());
        const bool isNew = there.size() == std::clamp<int64_t>(entry.newLength - range.position, 0, range.length)
                           && Crc32(there) == range.newCrc;
        if (!isOld && !isNew)
            return ImageState::Unexplained;
        allOld = allOld && isOld;
        allNew = allNew && isNew;
    }
    return allNew ? ImageState::After : allOld ? ImageState::Before : ImageState::Between;
}

JournalEntry EntryFor(const RomFile& rom, const QString& command, const PlannedChange& change, std::vector<RomPatch>& writes)
{
    const int64_t oldLength = RomLength(rom);
    JournalEntry entry{0, QDateTime::currentMSecsSinceEpoch(), command, oldLength, change.newLength < 0 ? oldLength : change.newLength,
                       {}, ChangeState::Open};
    if (change.newLength < 0)
        for (const RomPatch& patch : change.patches)
            entry.newLength = std::max<int64_t>({entry.newLength, entry.oldLength, patch.position + patch.bytes.size()});
    // What the file gains is written whole, zeros where no patch reaches.
    std::vector<RomPatch> patches{{entry.oldLength, QByteArray(qsizetype(std::max<int64_t>(entry.newLength - entry.oldLength, 0)), '\0')}};
    patches.insert(patches.end(), change.patches.begin(), change.patches.end());
    writes = DisjointWrites(patches, entry.newLength);
    for (const RomPatch& write : writes)
        entry.ranges.push_back({write.position, write.bytes.size(),
                                ReadRange(rom, write.position, write.bytes.size(), entry.oldLength), Crc32(write.bytes)});
    if (entry.newLength < entry.oldLength) {
        const int64_t cut = entry.oldLength - entry.newLength;
        entry.ranges.push_back({entry.newLength, cut, ReadRange(rom, entry.newLength, cut, entry.oldLength), Crc32({})});
    }
    return entry;
}

bool CommitChange(JournalFile& journal, RomFile& rom, const QString& command, const PlannedChange& change,
                  JournalEntry& entry, QString& errorText)
{
    if (!rom.writable) {
        errorText = QStringLiteral("The ROM image %1 is read-only.").arg(rom.fileName);
        return false;
    }
    std::vector<RomPatch> writes;
    entry = EntryFor(rom, command, change, writes);
    QString journalError;
    if (!AppendRecord(journal, BeginRecord(entry), journalError)) {
        errorText = QStringLiteral("Nothing was written: the journal %1 could not be written (%2).")
                        .arg(QDir::toNativeSeparators(journal.path), journalError);
        return false;
    }
    journal.contents.entries.push_back(entry);
    QString writeError, restoreError;
    if (WriteImage(rom, writes, entry.newLength, writeError) && AppendRecord(journal, EndRecord(ChangeState::Done), writeError)) {
        entry.state = journal.contents.entries.back().state = ChangeState::Done;
        return true;
    }
    const PlannedChange restoring = RestoringChange(entry);
    const bool restored = WriteImage(rom, restoring.patches, restoring.newLength, restoreError);
    if (restored && AppendRecord(journal, EndRecord(ChangeState::RolledBack), restoreError)) {
        entry.state = journal.contents.entries.back().state = ChangeState::RolledBack;
        errorText = QStringLiteral("%1\nThe image was left as it was.").arg(writeError);
    } else if (restored) {
        errorText = QStringLiteral("%1\nThe image was put back as it was, but its journal could not record that (%2); "
                                   "it will be recorded when the image is next opened.").arg(writeError, restoreError);
    } else {
        errorText = QStringLiteral("%1\nThe image could not be put back yet (%2); it will be put back when it is next opened.")
                        .arg(writeError, restoreError);
    }
    return false;
}

QString SettleInterruptedChange(JournalFile& journal, RomFile& rom, bool& blocked)
{
    JournalEntry* pending = PendingChange(journal.contents);
    blocked = pending != nullptr;
    if (!pending)
        return {};
    const QString described = Described(rom.fileName, *pending);
    if (StateAgainst(rom, *pending) == ImageState::Unexplained)
        return QStringLiteral("The journal %1 does not match the image: its %2 was interrupted, but the image is in no "
                              "state that change explains. Nothing was put back, and nothing can be written to the image "
                              "until that journal is moved away.")
            .arg(QDir::toNativeSeparators(journal.path), described);
    QString errorText = QStringLiteral("the image is read-only");
    const PlannedChange restoring = RestoringChange(*pending);
    const bool restored = rom.writable && WriteImage(rom, restoring.patches, restoring.newLength, errorText);
    if (restored && AppendRecord(journal, EndRecord(ChangeState::RolledBack), errorText)) {
        pending->state = ChangeState::RolledBack;
        blocked = false;
        return QStringLiteral("The %1 was interrupted. The image was put back as it was before it.").arg(described);
    }
    if (restored)
        return QStringLiteral("The %1 was interrupted. The image was put back as it was before it, but its journal could not "
                              "record that (%2); nothing can be written to the image until it can.")
            .arg(described, errorText);
    return QStringLiteral("The %1 was interrupted and could not be put back: %2. It will be put back when the image is "
                          "opened with the right to write it; until then nothing can be written to it.")
        .arg(described, errorText);
}

PlannedChange RestoringChange(const JournalEntry& entry)
{
    PlannedChange change{{}, entry.oldLength};
    for (const JournalRange& range : entry.ranges)
        if (!range.oldBytes.isEmpty())
            change.patches.push_back({range.position, range.oldBytes});
    return change;
}

PlannedChange RevertingChange(const std::vector<JournalEntry>& done, size_t first)
{
    // Later changes go first, so that each byte ends with what the earliest one found.
    PlannedChange change{{}, first < done.size() ? done[first].oldLength : -1};
    for (size_t n = done.size(); n > first; --n)
        for (const JournalRange& range : done[n - 1].ranges)
            change.patches.push_back({range.position, range.oldBytes});
    change.patches = DisjointWrites(change.patches, change.newLength >= 0 ? change.newLength : kMaxJournalPosition);
    return change;
}
