// IPS: "PATCH", records of a 3-byte offset, a 2-byte size and that many bytes (or, for
// size 0, a 2-byte count and one byte to repeat), then "EOF" and, when the image gets
// shorter, its new 3-byte length. Numbers are big-endian.
#include "exchange/patch_formats.h"

#include <algorithm>

namespace {
// The offset that reads as "EOF": no record may start there.
constexpr int64_t kEofOffset = 0x454F46;
constexpr int64_t kMaxRecord = 0xFFFF;
// Four equal bytes cost what ending one record and starting the next costs.
constexpr int64_t kJoinGap = 5;

void AppendBigEndian(QByteArray& patch, int64_t value, int width)
{
    while (width-- > 0)
        patch.append(char(value >> (8 * width)));
}

struct Reader {
    const QByteArray& patch;
    qsizetype at = 5;

    std::optional<int64_t> Number(int width)
    {
        if (patch.size() - at < width)
            return std::nullopt;
        int64_t value = 0;
        while (width-- > 0)
            value = value << 8 | uint8_t(patch[at++]);
        return value;
    }
};

// Writes count bytes at offset, from data or (without) all of value; the image grows
// with zeros up to the offset.
void Put(QByteArray& image, int64_t offset, int64_t count, const char* data, char value)
{
    if (image.size() < offset + count)
        image.append(qsizetype(offset + count - image.size()), '\0');
    if (data)
        std::copy_n(data, count, image.data() + offset);
    else
        std::fill_n(image.data() + offset, count, value);
}

// Reads one record and writes it; false when the patch ends inside it.
bool ApplyRecord(Reader& in, int64_t offset, QByteArray& image)
{
    const std::optional<int64_t> size = in.Number(2);
    if (size && *size > 0 && *size <= in.patch.size() - in.at) {
        Put(image, offset, *size, in.patch.constData() + in.at, 0);
        in.at += qsizetype(*size);
        return true;
    }
    const std::optional<int64_t> count = size == 0 ? in.Number(2) : std::nullopt;
    const std::optional<int64_t> value = count ? in.Number(1) : std::nullopt;
    if (value)
        Put(image, offset, *count, nullptr, char(*value));
    return value.has_value();
}
}

std::optional<QByteArray> CreateIps(const QByteArray& source, const QByteArray& target, QString& errorText)
{
    if (source.size() > kMaxIpsImage || target.size() > kMaxIpsImage) {
        errorText = QStringLiteral("IPS reaches only the first 16 MiB of an image, and these images are longer; "
                                   "make a .bps patch instead");
        return std::nullopt;
    }
    QByteArray patch("PATCH");
    for (const ChangedRun& run : ChangedRuns(source, target, kJoinGap))
        for (int64_t at = run.start; at < run.end; ) {
            const int64_t start = at == kEofOffset ? at - 1 : at; // rewriting the byte before costs nothing
            const int64_t size = std::min(run.end - start, kMaxRecord);
            AppendBigEndian(patch, start, 3);
            AppendBigEndian(patch, size, 2);
            patch.append(target.constData() + start, qsizetype(size));
            at = start + size;
        }
    patch.append("EOF");
    if (target.size() < source.size())
        AppendBigEndian(patch, target.size(), 3);
    return patch;
}

std::optional<QByteArray> ApplyIps(const QByteArray& patch, const QByteArray& source, QString& errorText)
{
    if (!patch.startsWith("PATCH")) {
        errorText = QStringLiteral("not an IPS patch");
        return std::nullopt;
    }
    QByteArray image = source;
    Reader in{patch};
    for (std::optional<int64_t> offset; (offset = in.Number(3)) != kEofOffset; )
        if (!offset || !ApplyRecord(in, *offset, image)) {
            errorText = QStringLiteral("the patch is damaged: it ends inside a record, before its EOF");
            return std::nullopt;
        }
    const std::optional<int64_t> length = in.Number(3);
    if (in.at != patch.size() || (length && *length > image.size())) {
        errorText = QStringLiteral("the patch is damaged: what follows its EOF is no length the image can be cut to");
        return std::nullopt;
    }
    if (length)
        image.truncate(qsizetype(*length));
    return image;
}
