#include "cli/manifest.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <climits>

namespace {
// A number beyond int keeps its side rather than reading as 0, so insert refuses it as out of reach.
int Coordinate(const QJsonValue& value)
{
    return int(std::clamp(value.toDouble(), double(INT_MIN), double(INT_MAX)));
}

std::optional<QPoint> OriginIn(const QDir& dir, const QString& picture)
{
    QFile file(dir.filePath(QStringLiteral("manifest.json")));
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QJsonArray frames = QJsonDocument::fromJson(file.read(64 << 20)).object().value("frames").toArray();
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
    for (QDir dir = picture.absoluteDir();; ) {
        if (const std::optional<QPoint> origin = OriginIn(dir, picture.absoluteFilePath()))
            return origin;
        if (!dir.cdUp())
            return std::nullopt;
    }
}
