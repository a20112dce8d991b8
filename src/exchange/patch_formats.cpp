#include "exchange/patch_formats.h"

#include <QFileInfo>
#include <algorithm>

namespace {
// The first position from at on where target differs from source or has no source byte.
int64_t NextDifference(const QByteArray& source, const QByteArray& target, int64_t at)
{
    const int64_t common = std::min(source.size(), target.size());
    if (at >= common)
        return at;
    return std::mismatch(target.begin() + at, target.begin() + common, source.begin() + at).first - target.begin();
}

// The first position from at on where target equals source again, or target's end.
int64_t NextSame(const QByteArray& source, const QByteArray& target, int64_t at)
{
    const int64_t common = std::min(source.size(), target.size());
    const char *from = source.constData(), *to = target.constData();
    while (at < common && to[at] != from[at])
        ++at;
    return at < common ? at : target.size();
}
}

std::optional<PatchFormat> PatchFormatOf(const QString& fileName)
{
    const QString extension = QFileInfo(fileName).suffix().toLower();
    if (extension == QLatin1String("bps"))
        return PatchFormat::Bps;
    if (extension == QLatin1String("ips"))
        return PatchFormat::Ips;
    return std::nullopt;
}

std::optional<QByteArray> CreatePatch(PatchFormat format, const QByteArray& source, const QByteArray& target,
                                      QString& errorText)
{
    return format == PatchFormat::Bps ? CreateBps(source, target) : CreateIps(source, target, errorText);
}

std::optional<QByteArray> ApplyPatch(PatchFormat format, const QByteArray& patch, const QByteArray& source,
                                     QString& errorText)
{
    return format == PatchFormat::Bps ? ApplyBps(patch, source, errorText) : ApplyIps(patch, source, errorText);
}

std::vector<ChangedRun> ChangedRuns(const QByteArray& source, const QByteArray& target, int64_t joinGap)
{
    std::vector<ChangedRun> runs;
    const int64_t end = target.size();
    for (int64_t at = NextDifference(source, target, 0); at < end; ) {
        int64_t stop = NextSame(source, target, at);
        for (int64_t next; stop < end && (next = NextDifference(source, target, stop)) < end && next - stop < joinGap; )
            stop = NextSame(source, target, next);
        runs.push_back({at, stop});
        at = NextDifference(source, target, stop);
    }
    return runs;
}
