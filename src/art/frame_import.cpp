#include "art/frame_import.h"

#include "art/frame_placement.h"
#include "art/listed_spans.h"
#include "art/save_art.h"
#include "rom/art_lists.h"
#include "view/frame_render.h"

#include <QSet>

namespace {
struct SlotFrame {
    ArtFrame frame;
    int64_t length = 0; // 0 when it cannot be read whole
};

SlotFrame ReadSlotFrame(const RomFile& rom, int32_t offset)
{
    SlotFrame slot;
    if (offset >= 0)
        slot.length = ReadStoredFrame(rom, offset, slot.frame);
    return slot;
}

// The picture draws exactly what the frame draws, at the same frame coordinates.
bool DrawsPixels(const ArtFrame& frame, const PixelGrid& pixels, QPoint origin)
{
    const FramePixels drawn = RenderFramePixels(frame);
    const QRect box = DrawnBox(pixels);
    if (box.isEmpty() || drawn.grid.width == 0)
        return box.isEmpty() && drawn.grid.width == 0;
    if (drawn.origin != origin + box.topLeft() || drawn.grid.width != box.width() || drawn.grid.height != box.height())
        return false;
    for (int y = 0; y < box.height(); ++y)
        for (int x = 0; x < box.width(); ++x)
            if (drawn.grid.At(x, y) != pixels.At(box.left() + x, box.top() + y))
                return false;
    return true;
}

struct Planner {
    const RomDocument& document;
    ImportPlan plan;
    std::vector<ListedSpan> spans = ListedSpans(document);
    int64_t end = RomLength(document.file); // where the next appended frame goes
    QSet<std::pair<int, int>> seen = {};

    bool Refuse(const ImportRequest& request, const QString& reason)
    {
        plan.refusals << QStringLiteral("%1: %2").arg(request.name, reason);
        return false;
    }

    bool Valid(const ImportRequest& request)
    {
        if (request.table < 0 || request.table >= kArtTableCount || request.slot < 0
            || request.slot >= ListedSlotCount(document.tables[size_t(request.table)]))
            return Refuse(request, QStringLiteral("table %1 lists no slot %2").arg(request.table).arg(request.slot));
        if (seen.contains({request.table, request.slot}))
            return Refuse(request, QStringLiteral("table %1 slot %2 is listed twice").arg(request.table).arg(request.slot));
        seen.insert({request.table, request.slot});
        if (!WithinReach(request.origin))
            return Refuse(request, QStringLiteral("its origin lies more than %1 pixels from the frame's 0,0").arg(kMaxOriginDistance));
        return true;
    }

    void Add(const ImportRequest& request)
    {
        ImportedFrame& done = plan.frames.emplace_back();
        if (!Valid(request))
            return;
        const ArtTable& table = document.tables[size_t(request.table)];
        const int32_t entry = table.pointers[size_t(request.slot)];
        const SlotFrame current = ReadSlotFrame(document.file, entry);
        const PlacedPixels placed = PlaceAtOrigin(current.frame, request.pixels, request.origin);
        QString errorText;
        std::optional<FrameSavePlan> save = PlanFrameSave(table, request.slot, placed.placement, placed.pixels, entry, errorText);
        done.position = entry;
        if (!save) {
            Refuse(request, errorText);
            return;
        }
        // The format's value-0 pixel that widens a run of odd width is no difference.
        if (current.length > 0
            && (DrawsPixels(current.frame, request.pixels, request.origin) || DrawsSame(current.frame, save->frame)))
            return;
        if (entry != request.ripOffset) {
            Refuse(request, QStringLiteral("table %1 slot %2 was changed by another program since the rip: its entry points "
                                           "at %3, not %4").arg(request.table).arg(request.slot)
                                .arg(ListLineText(entry), ListLineText(int32_t(request.ripOffset))));
            return;
        }
        done.bytes = save->patches.back().bytes.size();
        const bool inPlace = current.length >= done.bytes
                             && !OtherEntryPointsInto(document, request.table, request.slot, entry, current.length);
        done.way = inPlace ? ImportWay::InPlace : ImportWay::Appended;
        if (!inPlace) {
            const std::optional<int32_t> at = AppendPosition(end, errorText);
            if (!at) {
                Refuse(request, errorText);
                return;
            }
            done.position = *at;
            end += done.bytes;
            save = PlanFrameSave(table, request.slot, placed.placement, placed.pixels, *at, errorText);
        } else {
            done.covers = CoveredBy(spans, entry, done.bytes, request.table, request.slot);
        }
        plan.change.patches.insert(plan.change.patches.end(), save->patches.begin(), save->patches.end());
    }
};
}

ImportPlan PlanImport(const RomDocument& document, const std::vector<ImportRequest>& requests)
{
    Planner planner{document, {}};
    for (const ImportRequest& request : requests)
        planner.Add(request);
    if (!planner.plan.refusals.isEmpty())
        planner.plan.change.patches.clear();
    return planner.plan;
}
