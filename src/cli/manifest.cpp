#include "cli/manifest.h"

#include "exchange/whole_file.h"
#include "rom/journal_format.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <climits>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
// rip puts its manifest one folder above each picture; a few more allow for folders moved in.
constexpr int kFoldersAbove = 3;

// A number beyond int keeps its side rather than reading as 0, so insert refuses it as out of reach.
int Coordinate(const QJsonValue& value)
{
    return int(std::clamp(value.toDouble(), double(INT_MIN), double(INT_MAX)));
}

// Only a regular file is read; opened without waiting, so a FIFO of that name cannot hold insert up.
QByteArray RegularFileBytes(const QString& path)
{
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    struct stat status {};
    QFile file;
    if (fd >= 0 && ::fstat(fd, &status) == 0 && S_ISREG(status.st_mode)
        && file.open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return file.read(64 << 20);
    if (fd >= 0)
        ::close(fd);
    return {};
}

ManifestFrame FrameLine(const QJsonObject& line)
{
    ManifestFrame frame;
    frame.table = line.value("table").toInt(-1);
    frame.slot = line.value("slot").toInt(-1);
    frame.offset = int64_t(line.value("offset").toDouble(-1));
    frame.file = line.value("file").toString();
    const QJsonArray origin = line.value("origin").toArray(), rect = line.value("rect").toArray();
    frame.origin = QPoint(Coordinate(origin.at(0)), Coordinate(origin.at(1)));
    if (rect.size() == 4)
        frame.rect = QRect(Coordinate(rect[0]), Coordinate(rect[1]), Coordinate(rect[2]), Coordinate(rect[3]));
    if (line.value("crc32").isString())
        frame.crc32 = line.value("crc32").toString();
    frame.line = line;
    return frame;
}

std::optional<QPoint> OriginIn(const QDir& dir, const QString& picture)
{
    const QJsonArray frames =
        QJsonDocument::fromJson(RegularFileBytes(dir.filePath(QStringLiteral("manifest.json")))).object().value("frames").toArray();
    for (const QJsonValue& value : frames) {
        const QJsonObject frame = value.toObject();
        const QJsonArray origin = frame.value("origin").toArray();
        if (frame.value("file").isString() && QFileInfo(dir.filePath(frame.value("file").toString())).absoluteFilePath() == picture
            && origin.size() == 2 && !frame.contains("rect")) // a sheet holds many frames
            return QPoint(Coordinate(origin[0]), Coordinate(origin[1]));
    }
    return std::nullopt;
}
}

std::optional<QPoint> RecordedOrigin(const QString& picturePath)
{
    const QFileInfo picture(picturePath);
    QDir dir = picture.absoluteDir();
    for (int up = 0; up <= kFoldersAbove; ++up) {
        // The nearest manifest speaks for the picture, whether or not it lists it.
        if (QFileInfo::exists(dir.filePath(QStringLiteral("manifest.json"))))
            return OriginIn(dir, picture.absoluteFilePath());
        if (!dir.cdUp())
            break;
    }
    return std::nullopt;
}

std::optional<std::vector<ManifestFrame>> ReadManifest(const QString& dirPath, QString& errorText)
{
    const QString path = QDir(dirPath).filePath(QStringLiteral("manifest.json"));
    QJsonParseError parsed;
    const QJsonDocument manifest = QJsonDocument::fromJson(RegularFileBytes(path), &parsed);
    if (parsed.error != QJsonParseError::NoError || !manifest.object().value("frames").isArray()) {
        errorText = QStringLiteral("%1: no manifest that rip wrote can be read there").arg(QDir::toNativeSeparators(path));
        return std::nullopt;
    }
    std::vector<ManifestFrame> frames;
    for (const QJsonValue& line : manifest.object().value("frames").toArray())
        frames.push_back(FrameLine(line.toObject()));
    return frames;
}

bool WriteManifest(const QString& dirPath, const std::vector<ManifestFrame>& frames, QString& errorText)
{
    QJsonArray lines;
    for (const ManifestFrame& frame : frames) {
        QJsonObject line = frame.line;
        line["offset"] = double(frame.offset);
        lines.append(line);
    }
    return WriteWholeFile(QDir(dirPath).filePath(QStringLiteral("manifest.json")),
                          QJsonDocument(QJsonObject{{"frames", lines}}).toJson(QJsonDocument::Indented), errorText);
}

QString ChecksumText(const QByteArray& bytes) { return QStringLiteral("%1").arg(Crc32(bytes), 8, 16, QChar(u'0')); }
