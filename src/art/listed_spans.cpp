#include "art/listed_spans.h"

#include "art/art_frame.h"
#include "rom/art_lists.h"


std::vector<ListedSpan> ListedSpans(const RomDocument& document)
{
    std::vector<ListedSpan> spans;
    for (int t = 0; t < kArtTableCount; ++t) {
        const ArtTable& table = document.tables[size_t(t)];
        const int listed = ListedSlotCount(table);
        spans.push_back({table.position, table.position + 4 * int64_t(listed), t, -1, QStringLiteral("table %1's list").arg(t)});
        spans.push_back({document.palettes[size_t(t)].position, document.palettes[size_t(t)].position + kPaletteBytes, t, -1,
                         QStringLiteral("table %1's palette").arg(t)});
        for (int slot = 0; slot < listed; ++slot) {
            const int32_t offset = table.pointers[size_t(slot)];
            ArtFrame frame;
            if (const int64_t length = offset >= 0 ? ReadStoredFrame(document.file, offset, frame) : 0; length > 0)
                spans.push_back({offset, offset + length, t, slot, QStringLiteral("table %1 slot %2's frame").arg(t).arg(slot)});
        }
    }
    return spans;
}

QStringList CoveredBy(const std::vector<ListedSpan>& spans, int64_t position, int64_t length, int table, int slot)
{
    QStringList covered;
    for (const ListedSpan& span : spans)
        if (span.start < position + length && position < span.end && !(span.table == table && span.slot == slot && slot >= 0)
            && !covered.contains(span.what))
            covered << span.what;
    return covered;
}

bool OtherEntryPointsInto(const RomDocument& document, int table, int slot, int64_t position, int64_t length)
{
    for (int t = 0; t < kArtTableCount; ++t) {
        const ArtTable& listed = document.tables[size_t(t)];
        for (int s = 0; s < ListedSlotCount(listed); ++s)
            if ((t != table || s != slot) && listed.pointers[size_t(s)] >= position && listed.pointers[size_t(s)] < position + length)
                return true;
    }
    return false;
}
