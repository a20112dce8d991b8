#include "rom/rom_patch.h"

namespace {
// What a range held before: the bytes there, as far as the file reached.
QByteArray OldBytes(const RomFile& rom, const RomPatch& patch)
{
    QByteArray old(patch.bytes.size(), '\0');
    old.truncate(int(ReadRomBytes(rom, patch.position, old.data(), old.size())));
    return old;
}

bool Restore(RomFile& rom, const std::vector<RomPatch>& touched, int64_t oldLength, QString& errorText)
{
    bool restored = true;
    for (auto patch = touched.rbegin(); patch != touched.rend(); ++patch)
        restored = WriteRomBytes(rom, patch->position, patch->bytes.constData(), patch->bytes.size(), errorText)
                   && restored;
    if (RomLength(rom) > oldLength)
        restored = TruncateRom(rom, oldLength, errorText) && restored;
    return restored;
}
}

bool WriteOrRestore(RomFile& rom, const std::vector<RomPatch>& patches, QString& errorText)
{
    const int64_t oldLength = RomLength(rom);
    std::vector<RomPatch> touched;
    for (const RomPatch& patch : patches) {
        touched.push_back({patch.position, OldBytes(rom, patch)});
        QString writeError;
        if (WriteRomBytes(rom, patch.position, patch.bytes.constData(), patch.bytes.size(), writeError))
            continue;
        QString restoreError;
        errorText = Restore(rom, touched, oldLength, restoreError)
                        ? QStringLiteral("%1\nThe image was left as it was.").arg(writeError)
                        : QStringLiteral("%1\nThe image could not be put back either: %2").arg(writeError, restoreError);
        return false;
    }
    return true;
}
