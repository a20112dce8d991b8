// BPS: "BPS1", the source's size, the target's size and the metadata's (with the
// metadata), then actions that build the target from the front, each a number holding
// its length and kind; then the CRC-32s of the source, the target and the patch before
// its last four bytes, little-endian. Numbers take seven bits a byte, low bits first,
// the last byte marked by its high bit.
#include "exchange/patch_formats.h"
#include "rom/journal_format.h"

#include <QtEndian>

namespace {
enum BpsAction : uint64_t { SourceRead, TargetRead, SourceCopy, TargetCopy };
constexpr qsizetype kFooter = 12;
// A gap of two equal bytes costs what ending one TargetRead and starting the next costs.
constexpr int64_t kJoinGap = 3;
// Eight bytes of a number hold more than any image; a ninth is damage.
constexpr uint64_t kLastShift = uint64_t(1) << 56;

void AppendNumber(QByteArray& patch, uint64_t value)
{
    for (;; --value) {
        const char low = char(value & 0x7F);
        value >>= 7;
        if (value == 0) {
            patch.append(char(low | 0x80));
            return;
        }
        patch.append(low);
    }
}

void AppendAction(QByteArray& patch, BpsAction action, int64_t length)
{
    AppendNumber(patch, (uint64_t(length - 1) << 2) | action);
}

void AppendCrc(QByteArray& patch, uint32_t crc)
{
    char bytes[4];
    qToLittleEndian(crc, bytes);
    patch.append(bytes, 4);
}

struct Reader {
    const QByteArray& patch;
    qsizetype at, end;

    std::optional<uint64_t> Number()
    {
        uint64_t value = 0;
        for (uint64_t shift = 1; at < end && shift < kLastShift; shift <<= 7, value += shift) {
            const uint8_t byte = uint8_t(patch[at++]);
            value += (byte & 0x7F) * shift;
            if (byte & 0x80)
                return value;
        }
        return std::nullopt;
    }

    // Moves a relative position by the signed offset that follows (its low bit the sign),
    // keeping it within [0, limit].
    bool Move(int64_t& position, int64_t limit)
    {
        const std::optional<uint64_t> offset = Number();
        if (!offset)
            return false;
        const int64_t moved = position + ((*offset & 1) ? -int64_t(*offset >> 1) : int64_t(*offset >> 1));
        position = moved;
        return moved >= 0 && moved <= limit;
    }
};

struct Build {
    Reader in;
    const QByteArray& source;
    int64_t targetSize;
    QByteArray target;
    int64_t sourceAt = 0, targetAt = 0;
};

bool Step(Build& b)
{
    const std::optional<uint64_t> action = b.in.Number();
    const int64_t length = action ? int64_t(*action >> 2) + 1 : 0, done = b.target.size();
    if (!action || length > b.targetSize - done)
        return false;
    switch (BpsAction(*action & 3)) {
    case SourceRead:
        if (length > b.source.size() - done)
            return false;
        b.target.append(b.source.constData() + done, qsizetype(length));
        return true;
    case TargetRead:
        if (length > b.in.end - b.in.at)
            return false;
        b.target.append(b.in.patch.constData() + b.in.at, qsizetype(length));
        b.in.at += qsizetype(length);
        return true;
    case SourceCopy:
        if (!b.in.Move(b.sourceAt, b.source.size() - length))
            return false;
        b.target.append(b.source.constData() + b.sourceAt, qsizetype(length));
        b.sourceAt += length;
        return true;
    case TargetCopy: {
        if (!b.in.Move(b.targetAt, done - 1))
            return false;
        // Byte by byte: the copy may read what it has just written, repeating a pattern.
        b.target.resize(qsizetype(done + length));
        char* out = b.target.data();
        for (int64_t i = 0; i < length; ++i)
            out[done + i] = out[b.targetAt + i];
        b.targetAt += length;
        return true;
    }
    }
    return false;
}

QString OtherImageText(int64_t size, uint32_t crc, const QByteArray& source)
{
    const auto hex = [](uint32_t value) { return QStringLiteral("%1").arg(value, 8, 16, QLatin1Char('0')).toUpper(); };
    return QStringLiteral("the patch was made for another image: one of %1 bytes with CRC-32 %2; this one has %3 bytes "
                          "with CRC-32 %4").arg(size).arg(hex(crc)).arg(source.size()).arg(hex(Crc32(source)));
}
}

QByteArray CreateBps(const QByteArray& source, const QByteArray& target)
{
    QByteArray patch("BPS1");
    AppendNumber(patch, uint64_t(source.size()));
    AppendNumber(patch, uint64_t(target.size()));
    AppendNumber(patch, 0);
    int64_t done = 0;
    for (const ChangedRun& run : ChangedRuns(source, target, kJoinGap)) {
        if (run.start > done)
            AppendAction(patch, SourceRead, run.start - done);
        AppendAction(patch, TargetRead, run.end - run.start);
        patch.append(target.constData() + run.start, qsizetype(run.end - run.start));
        done = run.end;
    }
    if (done < target.size())
        AppendAction(patch, SourceRead, target.size() - done);
    AppendCrc(patch, Crc32(source));
    AppendCrc(patch, Crc32(target));
    AppendCrc(patch, Crc32(patch));
    return patch;
}

std::optional<QByteArray> ApplyBps(const QByteArray& patch, const QByteArray& source, QString& errorText)
{
    if (patch.size() < 4 + 3 + kFooter || !patch.startsWith("BPS1")) {
        errorText = QStringLiteral("not a BPS patch");
        return std::nullopt;
    }
    const qsizetype end = patch.size() - kFooter;
    const uint8_t* footer = reinterpret_cast<const uint8_t*>(patch.constData() + end);
    Reader in{patch, 4, end};
    const std::optional<uint64_t> sourceSize = in.Number(), targetSize = in.Number(), metadata = in.Number();
    if (Crc32(QByteArray::fromRawData(patch.constData(), end + 8)) != qFromLittleEndian<uint32_t>(footer + 8)
        || !sourceSize || !targetSize || !metadata || *metadata > uint64_t(end - in.at)) {
        errorText = QStringLiteral("the patch is damaged: its bytes fail its own check");
        return std::nullopt;
    }
    in.at += qsizetype(*metadata);
    if (*sourceSize != uint64_t(source.size()) || Crc32(source) != qFromLittleEndian<uint32_t>(footer)) {
        errorText = OtherImageText(int64_t(*sourceSize), qFromLittleEndian<uint32_t>(footer), source);
        return std::nullopt;
    }
    if (*targetSize > uint64_t(kMaxPatchedImage)) {
        errorText = QStringLiteral("the patch would make an image of %1 bytes, more than 1 GiB").arg(*targetSize);
        return std::nullopt;
    }
    // Most of a target is read from the source or the patch; copies grow it as they go.
    Build build{in, source, int64_t(*targetSize), {}};
    build.target.reserve(qsizetype(std::min<int64_t>(build.targetSize, source.size() + patch.size())));
    while (build.in.at < end)
        if (!Step(build)) {
            errorText = QStringLiteral("the patch is damaged: an action at byte %1 reaches outside the images").arg(build.in.at);
            return std::nullopt;
        }
    if (build.target.size() != build.targetSize || Crc32(build.target) != qFromLittleEndian<uint32_t>(footer + 4)) {
        errorText = QStringLiteral("the patch is damaged: the image it makes fails its check");
        return std::nullopt;
    }
    return build.target;
}
