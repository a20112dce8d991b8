#pragma once
// The journal's bytes: a header that names its version, then one record a step of a
// change. Each record carries its length with a check of its own, and its payload with
// another, so a record cut by a crash (only ever the last) is told apart from damage.
#include "rom/rom_patch.h"

#include <QByteArray>
#include <QString>
#include <vector>

struct JournalRange {
    int64_t position = 0;
    int64_t length = 0;   // how many bytes the change wrote (or cut) there
    QByteArray oldBytes;  // what was there, as far as the file then reached
    uint32_t newCrc = 0;  // CRC-32 of what is there after the change, as far as the file then reaches
};

enum class ChangeState { Open, Done, RolledBack };

struct JournalEntry {
    int number = 0;  // a done change's place in the image's history, from 1
    qint64 time = 0; // milliseconds since the epoch
    QString command;
    int64_t oldLength = 0;
    int64_t newLength = 0;
    std::vector<JournalRange> ranges; // never overlapping
    ChangeState state = ChangeState::Open;
};

enum class JournalFormat { Empty, Current, Older, Foreign };

struct JournalContents {
    JournalFormat format = JournalFormat::Empty;
    int firstNumber = 1;        // of the first change it holds
    QString carriesOn;          // the file name of the journal kept before this one
    std::vector<JournalEntry> entries;
    int64_t soundEnd = 0;       // where the records that passed their checks end
    int64_t damageAt = -1;      // where a record that is not the last fails its check
    uint64_t inode = 0;         // of the file it was read from
};

constexpr uint32_t kJournalVersion = 2;
// Far past any image, and far from overflowing.
constexpr int64_t kMaxJournalPosition = int64_t(1) << 40;

// Reads journal bytes; never reads outside them.
JournalContents ParseJournal(const QByteArray& bytes);
// Reads on from where a sound journal's records ended: tail is what follows them.
void ContinueJournal(JournalContents& journal, const QByteArray& tail);

// A new journal's first bytes: its header, with the numbering it carries on.
QByteArray JournalHeader(int firstNumber, const QString& carriesOn);
QByteArray BeginRecord(const JournalEntry& entry);
QByteArray EndRecord(ChangeState state); // Done or RolledBack

uint32_t Crc32(const QByteArray& bytes);
bool IsDamaged(const JournalContents& journal);
