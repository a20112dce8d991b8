#include "palette/palette_change.h"

ChangePlanner PalettePlanner(const Palette& edited)
{
    return [edited](const RomDocument& document, QString& errorText) -> std::optional<PlannedChange> {
        if (edited.position + kPaletteBytes <= RomLength(document.file))
            return PlannedChange{{PalettePatch(edited)}, -1};
        errorText = QStringLiteral("the palette at %1 lies beyond the end of the file, which is not made longer for it.")
                        .arg(QString::number(edited.position, 16).toUpper());
        return std::nullopt;
    };
}
