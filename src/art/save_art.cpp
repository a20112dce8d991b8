#include "art/save_art.h"

#include "rom/hex_answer.h"

void SetFramePointer(ArtTable& table, int f, int32_t position)
{
    if (f >= 0 && f < kTableSlots)
        table.pointers[size_t(f)] = position;
}

bool WriteFramePointer(RomFile& rom, int32_t& readPosition, const ArtTable& table, int f, QString& errorText)
{
    if (f < 0 || f >= kTableSlots) {
        errorText = QStringLiteral("There is no frame %1 in this table.").arg(f);
        return false;
    }
    const int64_t at = int64_t(table.position) + 4 * int64_t(f);
    uint8_t bytes[4];
    PutBigEndian32(bytes, uint32_t(table.pointers[size_t(f)]) + kCartridgeBase);
    readPosition = int32_t(at);
    if (!WriteRomBytes(rom, at, bytes, sizeof bytes, errorText))
        return false;
    readPosition = int32_t(at + 4);
    return true;
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

bool SaveFrameAt(RomFile& rom, int32_t& readPosition, const FrameSave& save, int32_t position, QString& errorText)
{
    if (!rom.writable) {
        errorText = QStringLiteral("The ROM image %1 is read-only, so the art cannot be saved.").arg(rom.fileName);
        return false;
    }
    if (save.f < 0 || save.f >= kTableSlots) {
        errorText = QStringLiteral("There is no frame %1 in this table.").arg(save.f);
        return false;
    }
    ArtFrame encoded = save.frame;
    const FrameFit fit = EncodeFrame(encoded, save.image, save.palette, save.transparentColor);
    if (fit != FrameFit::Fits) {
        errorText = FrameFitText(fit) + QStringLiteral(" Nothing was saved.");
        return false;
    }
    const int32_t oldEntry = save.table.pointers[size_t(save.f)];
    SetFramePointer(save.table, save.f, position);
    if (!WriteFramePointer(rom, readPosition, save.table, save.f, errorText)) {
        SetFramePointer(save.table, save.f, oldEntry);
        return false;
    }
    save.frame = encoded;
    if (WriteFrame(rom, readPosition, save.frame, position, errorText))
        return true;
    // Never leave the entry pointing at a frame that was not written whole.
    SetFramePointer(save.table, save.f, oldEntry);
    int32_t ignored = 0;
    QString restoreError;
    if (!WriteFramePointer(rom, ignored, save.table, save.f, restoreError))
        errorText += QStringLiteral("\nThe old table entry could not be restored either: ") + restoreError;
    return false;
}
