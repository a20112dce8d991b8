#include "rom/rom_document.h"

#include "rom/rom_open.h"

#include <QDir>
#include <QFile>
#include <sys/stat.h>

namespace {
QString Shown(const QString& path) { return QDir::toNativeSeparators(path); }

ImageStamp StampOf(const RomDocument& document)
{
    ImageStamp stamp;
    struct stat image {}, journal {};
    if (::fstat(document.file.fd, &image) == 0)
        stamp = {int64_t(image.st_size), int64_t(image.st_mtim.tv_sec) * 1000000000 + image.st_mtim.tv_nsec,
                 int64_t(image.st_ctim.tv_sec) * 1000000000 + image.st_ctim.tv_nsec, uint64_t(image.st_ino)};
    if (::lstat(QFile::encodeName(document.journalPath).constData(), &journal) == 0) {
        stamp.journalSize = int64_t(journal.st_size);
        stamp.journalModified = int64_t(journal.st_mtim.tv_sec) * 1000000000 + journal.st_mtim.tv_nsec;
        stamp.journalInode = uint64_t(journal.st_ino);
    }
    return stamp;
}

void ReadCatalogue(RomDocument& document)
{
    int32_t readPosition = 0;
    const bool tablesWhole = ReadArtTables(document.file, readPosition, document.tables, kArtTableCount);
    const bool palettesWhole = ReadPalettes(document.file, readPosition, document.palettes);
    document.catalogueWhole = tablesWhole && palettesWhole;
}

void ReadJournalAgain(RomDocument& document)
{
    document.journalPath = JournalPathFor(document.canonicalPath);
    document.journal = ReadJournal(document.journalPath, document.journalProblem);
}

// Under the lock: an interrupted change is put back, or stands in the way.
QString SettleUnderLock(RomDocument& document, bool& blocked)
{
    JournalFile journal{document.journalPath, -1, document.journal};
    QString errorText;
    if (document.file.writable && !OpenJournalForChange(journal, document.canonicalPath, {}, errorText)) {
        blocked = true;
        return QStringLiteral("The journal %1 could not be opened: %2").arg(Shown(document.journalPath), errorText);
    }
    const QString settled = SettleInterruptedChange(journal, document.file, blocked);
    document.journal = journal.contents;
    CloseJournalFile(journal);
    return settled;
}

// An image replaced under its name (a fresh copy, say) is the one to open now.
void ReopenIfReplaced(RomDocument& document)
{
    RomFile replacement;
    QString errorText;
    if (!IsSameFileAs(document.file, document.file.fileName) && OpenRomFile(replacement, document.file.fileName, errorText)) {
        CloseRomFile(document.file);
        document.file = replacement;
    }
}

bool ReadAgainIfChanged(RomDocument& document)
{
    if (StampOf(document) == document.seen)
        return false;
    ReadCatalogue(document);
    ReadJournalAgain(document);
    document.seen = StampOf(document);
    ++document.outsideChanges;
    return true;
}

bool ChangeLocked(RomDocument& document, const QString& command, const ChangePlanner& plan, JournalEntry& made,
                  QString& errorText)
{
    ReadAgainIfChanged(document);
    JournalFile journal;
    if (!OpenJournalForChange(journal, document.canonicalPath, document.journal, errorText)) {
        errorText += u'.';
        return false;
    }
    document.journalPath = journal.path;
    bool blocked = false;
    const QString settled = SettleInterruptedChange(journal, document.file, blocked);
    document.journal = journal.contents;
    if (!settled.isEmpty())
        ReadCatalogue(document); // the image changed back
    std::optional<PlannedChange> change;
    if (blocked)
        errorText = settled;
    else
        change = plan(document, errorText);
    const bool done = change && CommitChange(journal, document.file, command, *change, made, errorText);
    document.journal = journal.contents;
    CloseJournalFile(journal);
    if (done)
        made.number = DocumentHistory(document).back().number;
    return done;
}
}

bool OpenDocument(RomDocument& document, const QString& fileName, QStringList& notes, QString& errorText)
{
    RomFile opened;
    if (!OpenRomFile(opened, fileName, errorText))
        return false;
    CloseDocument(document);
    document.file = opened;
    document.canonicalPath = CanonicalImagePath(fileName);
    ReadJournalAgain(document);
    QString busy;
    if (const int lock = PendingChange(document.journal) ? LockImage(document.file, 0, busy) : -1; lock >= 0) {
        ReadJournalAgain(document); // as it stands under the lock
        bool blocked = false;
        const QString settled = SettleUnderLock(document, blocked);
        UnlockImage(lock);
        if (!settled.isEmpty())
            notes << settled;
    }
    ReadCatalogue(document);
    document.seen = StampOf(document);
    return true;
}

void CloseDocument(RomDocument& document)
{
    CloseRomFile(document.file);
    document = RomDocument{};
}

bool IsDocumentOpen(const RomDocument& document) { return IsRomOpen(document.file); }

bool RefreshDocument(RomDocument& document)
{
    if (!IsDocumentOpen(document))
        return false;
    ReopenIfReplaced(document);
    return ReadAgainIfChanged(document);
}

bool ChangeDocument(RomDocument& document, const QString& command, const ChangePlanner& plan, JournalEntry& made,
                    QString& errorText)
{
    if (!IsDocumentOpen(document) || !document.file.writable) {
        errorText = QStringLiteral("The ROM image %1 is read-only.").arg(document.file.fileName);
        return false;
    }
    ReopenIfReplaced(document); // before the lock, which is the file's own
    const int lock = LockImage(document.file, document.writerWaitMs, errorText);
    if (lock < 0)
        return false;
    const bool done = ChangeLocked(document, command, plan, made, errorText);
    document.seen = StampOf(document);
    UnlockImage(lock);
    return done;
}

std::vector<JournalEntry> DocumentHistory(const RomDocument& document) { return DoneChanges(document.journal); }

bool IsLastChange(const RomDocument& document, int number)
{
    const std::vector<JournalEntry> done = DocumentHistory(document);
    return !done.empty() && done.back().number == number && StateAgainst(document.file, done.back()) == ImageState::After;
}

bool RevertDocument(RomDocument& document, int n, JournalEntry& made, QString& errorText)
{
    auto plan = [n](const RomDocument& doc, QString& refusal) -> std::optional<PlannedChange> {
        const std::vector<JournalEntry> done = DocumentHistory(doc);
        const int first = doc.journal.firstNumber, last = first + int(done.size()) - 1;
        if (IsDamaged(doc.journal))
            refusal = QStringLiteral("the journal %1 is damaged after change %2, so what came later cannot be taken back.")
                          .arg(Shown(doc.journalPath)).arg(last);
        else if (n >= 1 && n < first)
            refusal = QStringLiteral("change %1 is in the kept journal %2, which is never applied again.").arg(n).arg(doc.journal.carriesOn);
        else if (n < first || n > last)
            refusal = QStringLiteral("the journal of %1 keeps %2 changes; there is no change %3.")
                          .arg(doc.file.fileName).arg(done.size()).arg(n);
        else if (!IsLastChange(doc, last))
            refusal = QStringLiteral("the image is not as its last journaled change (%1, %2) left it: another program changed it since.")
                          .arg(last).arg(done.back().command);
        else
            return RevertingChange(done, size_t(n - first));
        return std::nullopt;
    };
    return ChangeDocument(document, QStringLiteral("revert to before change %1").arg(n), plan, made, errorText);
}

QStringList JournalNotes(const RomDocument& document)
{
    const QString journal = Shown(document.journalPath);
    const JournalContents& contents = document.journal;
    QStringList notes;
    if (!document.journalProblem.isEmpty())
        notes << QStringLiteral("The journal cannot be read: %1.").arg(document.journalProblem);
    if (contents.format == JournalFormat::Older)
        notes << QStringLiteral("The journal %1 is of an older format, which cannot show that it describes this image: "
                                "it is never applied, and the next change keeps it aside.").arg(journal);
    if (contents.format == JournalFormat::Foreign)
        notes << QStringLiteral("%1 is not a journal: it is never applied, and the next change keeps it aside.").arg(journal);
    if (IsDamaged(contents))
        notes << QStringLiteral("The journal %1 is damaged from byte %2 on: the changes after that place are not "
                                "known, and none can be reverted. The next change keeps it aside, unchanged.")
                     .arg(journal).arg(contents.damageAt);
    return notes;
}
