#include "art/save_art.h"

#include "rom/hex_answer.h"

void SetFramePointer(ArtTable& table, int f, int32_t position)
{
    if (f >= 0 && f < kTableSlots)
        table.pointers[size_t(f)] = position;
}

RomPatch FramePointerPatch(const ArtTable& table, int f)
{
    QByteArray bytes(4, '\0');
    PutBigEndian32(reinterpret_cast<uint8_t*>(bytes.data()), uint32_t(table.pointers[size_t(f)]) + kCartridgeBase);
    return {int64_t(table.position) + 4 * int64_t(f), bytes};
}

std::optional<int32_t> AppendPosition(int64_t fileLength, QString& errorText)
{
    if (fileLength < 0 || fileLength >= int64_t(kCartridgeBase)) {
        errorText = QStringLiteral("Nothing was saved: the end of this file lies beyond what a table entry can address.");
        return std::nullopt;
    }
    return int32_t(fileLength);
}

std::optional<int32_t> TypedSavePosition(const QString& answer, int64_t fileLength, QString& errorText)
{
    const HexAnswer typed = ReadHexAnswer(answer);
    if (typed.digits == 0) {
        errorText = QStringLiteral("Nothing was saved: type the position as hexadecimal digits, such as 1F0000.");
        return std::nullopt;
    }
    if (typed.tooLarge || typed.value > uint64_t(INT32_MAX) || typed.value >= kCartridgeBase) {
        errorText = QStringLiteral("Nothing was saved: %1 is too large for a position in the ROM.").arg(answer.trimmed());
        return std::nullopt;
    }
    if (int64_t(typed.value) > fileLength) {
        errorText = QStringLiteral("Nothing was saved: %1 lies beyond the end of the file (%2).")
                        .arg(QString::number(typed.value, 16).toUpper(), QString::number(fileLength, 16).toUpper());
        return std::nullopt;
    }
    return int32_t(typed.value);
}

std::optional<FrameSavePlan> PlanFrameSave(const ArtTable& table, int f, const ArtFrame& placement,
                                           const PixelGrid& pixels, int32_t position, QString& errorText)
{
    if (f < 0 || f >= kTableSlots) {
        errorText = QStringLiteral("There is no frame %1 in this table.").arg(f);
        return std::nullopt;
    }
    FrameSavePlan plan{placement, {}};
    if (const FrameFit fit = EncodeGrid(plan.frame, pixels); fit != FrameFit::Fits) {
        errorText = FrameFitText(fit) + QStringLiteral(" Nothing was saved.");
        return std::nullopt;
    }
    ArtTable pointed = table;
    SetFramePointer(pointed, f, position);
    plan.patches = {FramePointerPatch(pointed, f), {position, FrameBytes(plan.frame)}};
    return plan;
}

ChangePlanner FrameSavePlanner(int t, int f, const ArtFrame& placement, const PixelGrid& pixels, int32_t position,
                               FrameSaveOutcome& outcome)
{
    return [=, &outcome](const RomDocument& document, QString& errorText) -> std::optional<PlannedChange> {
        const std::optional<int32_t> at = position == kAtTheEnd ? AppendPosition(RomLength(document.file), errorText) : position;
        if (at && t >= 0 && t < kArtTableCount) {
            outcome.position = *at;
            outcome.plan = PlanFrameSave(document.tables[size_t(t)], f, placement, pixels, *at, errorText);
        }
        outcome.refused = !outcome.plan;
        return outcome.plan ? std::optional<PlannedChange>({outcome.plan->patches, -1}) : std::nullopt;
    };
}
