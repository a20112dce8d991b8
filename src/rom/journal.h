#pragma once
// The image's rollback journal. Before a change touches the image, the journal holds
// the old bytes of every range the change writes and the file's old length, flushed to
// the disk; then the image is written and flushed; then the change is marked done. An
// image whose last change is not marked done is put back when it is next opened. The
// journal keeps every change, so any of them can be taken back later.
#include "rom/rom_patch.h"

#include <QByteArray>
#include <QString>
#include <vector>

struct JournalRange {
    int64_t position = 0;
    int64_t length = 0;  // how many bytes the change wrote (or cut) there
    QByteArray oldBytes; // what was there, as far as the file then reached
};

enum class ChangeState { Open, Done, RolledBack };

struct JournalEntry {
    qint64 time = 0; // milliseconds since the epoch
    QString command;
    int64_t oldLength = 0;
    std::vector<JournalRange> ranges;
    ChangeState state = ChangeState::Open;
};

// Reads journal bytes; stops at the first record that is cut short or damaged, and
// says where the sound part ends. Never reads outside bytes.
std::vector<JournalEntry> ParseJournal(const QByteArray& bytes, int64_t* soundEnd = nullptr);

// Beside the image (NAME.zelvane-journal), or in the user's state folder when the
// image's folder cannot be written.
QString JournalPathFor(const QString& imagePath);
// The changes a journal holds; none when there is no journal.
std::vector<JournalEntry> ReadJournalFile(const QString& journalPath);
// The changes to imagePath that were done, in the order they were made: the ones its
// history numbers from 1.
std::vector<JournalEntry> DoneChanges(const QString& imagePath);

struct Journal {
    QString path; // set at the first change
    int fd = -1;
    int64_t end = 0;
};
void CloseJournal(Journal& journal);

// Writes patches as one change. newLength >= 0 also sets the file's length, and the
// bytes it cuts are kept as a range. When anything fails the image is put back (or
// will be at the next opening) and errorText says which. entry gets the change.
bool CommitChange(Journal& journal, RomFile& rom, const QString& command, const std::vector<RomPatch>& patches,
                  int64_t newLength, JournalEntry& entry, QString& errorText);

// What puts the image back as it was before entry: its old bytes, and its old length.
std::vector<RomPatch> RestoringPatches(const JournalEntry& entry);

// What puts the image back as it was before the nth done change (from 1): for every
// byte written since, the byte the first change to write it found there.
std::vector<RomPatch> RevertingPatches(const std::vector<JournalEntry>& done, int n);

// Puts back a change that the journal of imagePath shows interrupted. Empty message
// when there was none; otherwise what was done, for the user.
QString RecoverInterruptedChange(const QString& imagePath, RomFile& rom);
