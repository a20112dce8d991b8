#pragma once
// Patches as ROM hacks are shared: BPS, which names the image it was made for and the
// one it makes by their sizes and CRC-32s, and IPS, which names neither and reaches
// only the first 16 MiB. Pure functions on bytes in memory; the readers never look
// outside the bytes they are given, whatever those hold.
#include <QByteArray>
#include <QString>
#include <cstdint>
#include <optional>
#include <vector>

enum class PatchFormat { Bps, Ips };

// Far beyond any cartridge: no patch may make, or ask for, a larger image.
constexpr int64_t kMaxPatchedImage = int64_t(1) << 30;
// IPS offsets have 24 bits.
constexpr int64_t kMaxIpsImage = int64_t(1) << 24;

// The format a file name's extension names: .bps or .ips, in any case.
std::optional<PatchFormat> PatchFormatOf(const QString& fileName);

// A patch that turns source into target, holding only what changed; nothing, with
// errorText, when the format cannot hold the images.
std::optional<QByteArray> CreatePatch(PatchFormat format, const QByteArray& source, const QByteArray& target,
                                      QString& errorText);
// What the patch makes of source; nothing, with errorText, for a damaged patch or (for
// BPS) one made for another image.
std::optional<QByteArray> ApplyPatch(PatchFormat format, const QByteArray& patch, const QByteArray& source,
                                     QString& errorText);

// The stretches [start, end) of target that differ from source or lie past its end, in
// order. Stretches fewer than joinGap equal bytes apart are one: a short gap costs a
// patch less as data than as the end of one record and the start of the next.
struct ChangedRun {
    int64_t start = 0, end = 0;
};
std::vector<ChangedRun> ChangedRuns(const QByteArray& source, const QByteArray& target, int64_t joinGap);

QByteArray CreateBps(const QByteArray& source, const QByteArray& target);
std::optional<QByteArray> ApplyBps(const QByteArray& patch, const QByteArray& source, QString& errorText);
std::optional<QByteArray> CreateIps(const QByteArray& source, const QByteArray& target, QString& errorText);
std::optional<QByteArray> ApplyIps(const QByteArray& patch, const QByteArray& source, QString& errorText);
