#include "rom/art_lists.h"

QString ListLineText(int32_t value) { return QString::number(uint32_t(value), 16).toUpper(); }

QStringList ArtListLines(const std::array<ArtTable, kArtTableRecords>& tables)
{
    QStringList lines;
    for (const ArtTable& table : tables) {
        if (table.position == 0)
            break;
        lines << ListLineText(table.position);
    }
    return lines;
}

int ListedSlotCount(const ArtTable& table)
{
    int count = 0;
    while (count < kTableSlots && table.pointers[size_t(count)] != 0)
        ++count;
    return count;
}

QStringList FrameListLines(const ArtTable& table)
{
    QStringList lines;
    for (int i = 0; i < ListedSlotCount(table); ++i)
        lines << ListLineText(table.pointers[size_t(i)]);
    return lines;
}
