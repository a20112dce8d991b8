#include "cli/manifest.h"

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

std::optional<QPoint> OriginIn(const QDir& dir, const QString& picture)
{
    const QJsonArray frames =
        QJsonDocument::fromJson(RegularFileBytes(dir.filePath(QStringLiteral("manifest.json")))).object().value("frames").toArray();
    for (const QJsonValue& value : frames) {
        const QJsonObject frame = value.toObject();
        const QJsonArray origin = frame.value("origin").toArray();
        if (frame.value("file").isString() && QFileInfo(dir.filePath(frame.value("file").toString())).absoluteFilePath() == picture
            && origin.size() == 2)
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
