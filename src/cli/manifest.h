#pragma once
// What rip records in manifest.json, read back for insert.
#include <QPoint>
#include <QString>
#include <optional>

// The origin recorded for a picture in the nearest manifest.json: in the picture's folder
// or up to three folders above it, as rip lays them out. None when that manifest does not
// list the picture or is no regular file.
std::optional<QPoint> RecordedOrigin(const QString& picturePath);
