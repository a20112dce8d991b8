#pragma once
// One change to the image through its journal. Before the image is touched, the
// journal holds the old bytes of every range the change writes, a check of the new
// bytes and both lengths, flushed to the disk; then the image is written and flushed;
// then the change is marked done. A change found interrupted is put back only when the
// image is in a state that change explains.
#include "rom/journal_file.h"

// The change a command plans: bytes to write, later ones over earlier ones, and the
// file's new length (-1: as long as the writes make it).
struct PlannedChange {
    std::vector<RomPatch> patches;
    int64_t newLength = -1;
};

// How the image stands against a journaled change.
enum class ImageState { Before, After, Between, Unexplained };
ImageState StateAgainst(const RomFile& rom, const JournalEntry& entry);

// The journal entry for a change on the image as it is now, and the writes that make
// it: never overlapping, none past the new length.
JournalEntry EntryFor(const RomFile& rom, const QString& command, const PlannedChange& change,
                      std::vector<RomPatch>& writes);

// Journals and makes the change; the caller holds the image's lock and the journal is
// open for the change. When anything fails the image is put back (or will be at the
// next opening) and errorText says which.
bool CommitChange(JournalFile& journal, RomFile& rom, const QString& command, const PlannedChange& change,
                  JournalEntry& entry, QString& errorText);

// Settles an interrupted change under the lock: puts it back when the image is in a
// state it explains and the image may be written. Empty when there was none; otherwise
// what happened, for the user. blocked tells whether it still stands in the way.
QString SettleInterruptedChange(JournalFile& journal, RomFile& rom, bool& blocked);

// What puts the image back as it was before the nth done change (from the first in
// done): for every byte written since, the byte the first change to write it found.
PlannedChange RevertingChange(const std::vector<JournalEntry>& done, size_t first);
// What puts the image back as it was before one change.
PlannedChange RestoringChange(const JournalEntry& entry);
