#pragma once
// One open image: the file, its journal, its catalogue (the 14 art tables and
// palettes) and the changes its journal keeps. It is the only writer of the image: every
// change is planned and made under the image's lock, against the image as it is then,
// so that several programs may share one image and no change is lost.
#include "palette/palette.h"
#include "rom/art_table.h"
#include "rom/rom_change.h"

#include <functional>
#include <optional>

// What the image and its journal looked like when this document last saw them.
struct ImageStamp {
    int64_t size = -1, modified = 0, statusChanged = 0;
    uint64_t inode = 0;
    int64_t journalSize = -1, journalModified = 0;
    uint64_t journalInode = 0;
    bool operator==(const ImageStamp&) const = default;
};

struct RomDocument {
    RomFile file;
    QString canonicalPath;
    QString journalPath;
    std::array<ArtTable, kArtTableRecords> tables{};
    std::array<Palette, kPaletteRecords> palettes{};
    bool catalogueWhole = true; // every table ended properly and every palette was there
    JournalContents journal;    // as last read
    QString journalProblem;     // why the journal could not be read, if it could not
    ImageStamp seen;
    int outsideChanges = 0;     // how often another program was seen changing the image
    int writerWaitMs = 5000;    // how long a change waits for another writer
};

// Opens the image, settles a change its journal shows interrupted (unless another
// program is writing it right now: a reader never waits) and reads the catalogue.
// notes gets what became of an interrupted change: put back, or why not.
bool OpenDocument(RomDocument& document, const QString& fileName, QStringList& notes, QString& errorText);
void CloseDocument(RomDocument& document);
bool IsDocumentOpen(const RomDocument& document);

// Reads the catalogue and the journal again when another program changed the image or
// its journal since this document last looked (or replaced the image). True then.
bool RefreshDocument(RomDocument& document);

// Plans a change on the image as it stands under the lock; nothing, with errorText,
// refuses it.
using ChangePlanner = std::function<std::optional<PlannedChange>(const RomDocument&, QString& errorText)>;

// Makes one journaled change under the image's lock. made gets the change, numbered as
// the history numbers it. Refused, with errorText, when the lock stays taken, the
// journal cannot be used, an interrupted change stands in the way, or plan refuses.
bool ChangeDocument(RomDocument& document, const QString& command, const ChangePlanner& plan, JournalEntry& made,
                    QString& errorText);

// The changes that were done, numbered from the journal's first number.
std::vector<JournalEntry> DocumentHistory(const RomDocument& document);
// Whether the image is still as done change number left it, with no change since.
bool IsLastChange(const RomDocument& document, int number);

// Puts the image back as it was before change n, byte for byte and in length, as a
// new change. Refused when n is not a change the journal can take back, or when the
// image is not as the journal's last change left it.
bool RevertDocument(RomDocument& document, int n, JournalEntry& made, QString& errorText);

// What the user should know of the journal: damage, a kept older journal, a link.
QStringList JournalNotes(const RomDocument& document);
