#pragma once
// Where an image's journal lives and how it is opened. The journal is named from the
// image's canonical path, so every name of one image finds one journal. Its name is
// never followed: a journal that is a symbolic link is refused, and a new one is only
// ever created, never taken over.
#include "rom/journal_format.h"

struct JournalFile {
    QString path;
    int fd = -1;
    JournalContents contents;
    bool keepBeforeWriting = false; // damaged, older or foreign: kept aside at the first record
};

// The image's path with links, "." and ".." resolved; the absolute path when it does
// not exist.
QString CanonicalImagePath(const QString& path);
// NAME.zelvane-journal beside the image, or a file in the user's state folder when the
// image's folder cannot be written (whichever already exists first).
QString JournalPathFor(const QString& canonicalImage);

// What the journal holds, for a reader; problem says why it could not be read (none
// when there is no journal).
JournalContents ReadJournal(const QString& journalPath, QString& problem);

// Opens the journal for one change; the caller holds the image's lock. A torn last
// record is cut. known, when it was read from the same file and was sound, is read on
// from its end rather than from the start: records before it are never rewritten.
bool OpenJournalForChange(JournalFile& journal, const QString& canonicalImage, const JournalContents& known,
                          QString& errorText);
// Adds one record at the end and flushes it; on failure the journal ends as before.
// Before its first record, a damaged journal, one of an older format or one that is
// not a journal is kept as it is under a name of its own, and a new journal carries on
// its numbering.
bool AppendRecord(JournalFile& journal, const QByteArray& record, QString& errorText);
void CloseJournalFile(JournalFile& journal);

// The changes of a journal that were done, numbered as its history numbers them.
std::vector<JournalEntry> DoneChanges(const JournalContents& journal);
// The journal's last change, when it was interrupted and not yet put back.
const JournalEntry* PendingChange(const JournalContents& journal);
JournalEntry* PendingChange(JournalContents& journal);
