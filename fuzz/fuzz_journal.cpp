// The journal reader on arbitrary files, and what undo and revert make of what it read.
#include "rom/journal_file.h"
#include "rom/rom_change.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    const JournalContents journal = ParseJournal(bytes);
    if (journal.soundEnd < 0 || journal.soundEnd > int64_t(size) || journal.damageAt > int64_t(size))
        std::abort();
    for (const JournalEntry& entry : journal.entries)
        RestoringChange(entry);
    RevertingChange(DoneChanges(journal), 0);
    return 0;
}
