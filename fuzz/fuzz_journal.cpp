// The journal reader on arbitrary files, and what undo and revert make of what it read.
#include "rom/journal.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    int64_t soundEnd = -1;
    const std::vector<JournalEntry> entries = ParseJournal(bytes, &soundEnd);
    if (soundEnd < 0 || soundEnd > int64_t(size))
        std::abort();
    for (const JournalEntry& entry : entries)
        RestoringPatches(entry);
    RevertingPatches(entries, 1);
    return 0;
}
