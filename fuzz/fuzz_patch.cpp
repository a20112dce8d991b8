// The patch readers on arbitrary bytes, and a round trip: a patch of either format made
// between two images cut from the input makes exactly the second of the first.
#include "exchange/patch_formats.h"
#include "rom/journal_format.h"

#include <QtEndian>
#include <cstdlib>

namespace {
// body as a BPS patch for source (of under 128 bytes), sealed with the checks a reader
// makes first, so that the fuzzer reaches the actions behind them.
QByteArray SealedBps(const QByteArray& body, const QByteArray& source)
{
    QByteArray patch = "BPS1" + QByteArray(1, char(0x80 | source.size())) + body;
    char crc[4];
    for (const uint32_t value : {Crc32(source), Crc32(body)}) {
        qToLittleEndian(value, crc);
        patch.append(crc, 4);
    }
    qToLittleEndian(Crc32(patch), crc);
    return patch.append(crc, 4);
}
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char*>(data) + 1, qsizetype(size - 1));
    const QByteArray source = bytes.left(bytes.size() * data[0] / 256), target = bytes.mid(source.size());
    QString errorText;
    ApplyBps(bytes, source, errorText);
    ApplyBps(SealedBps(target, source.left(127)), source.left(127), errorText);
    ApplyIps(target, source, errorText);
    for (const PatchFormat format : {PatchFormat::Bps, PatchFormat::Ips}) {
        const std::optional<QByteArray> patch = CreatePatch(format, source, target, errorText);
        if (!patch || ApplyPatch(format, *patch, source, errorText) != target)
            std::abort();
    }
    return 0;
}
